#include "rules/page_header.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <optional>
#include <string>

#include "made_rules.h"

namespace korv::tools {

namespace {

/// What a page of some rules of the Titanic tells. Members can be changed before the header is made.
class PageHeaderTest : public testing::Test {
protected:
    PageHeaderTest() {
        found_.rules = {known_rule(made_.any({6}), made_.any({10}), {470, 711, 344})};
        found_.accounting.classes = 96;
        found_.accounting.transactions = 2201;
        found_.accounting.derived = 4;
        found_.accounting[Step::reading] = 3;
        found_.accounting.prune = Prune::full;
        request_.page_limit = 200'000;
    }

    const rapidjson::Document& header() {
        const PageSides sides(found_.rules, made_.pool());
        const PageOrigin origin = {input_,   "titanic.csv", options_, {"items               10"},
                                   request_, exclusions_};
        header_.Parse(
            page_header({found_, book_, origin, sides, items_, 3, classes_shown_, arrays_}).c_str());
        EXPECT_FALSE(header_.HasParseError());
        return header_;
    }

    std::string text_at(const char* key, const char* member) { return header()[key][member].GetString(); }

    /// The value of a setting; "none" where there is none of this option.
    std::string setting(const std::string& option) {
        for (const auto& each : header()["run"]["settings"].GetArray()) {
            if (each["option"].GetString() == option) {
                return each["value"].GetString();
            }
        }
        return "none";
    }

    MadeRules made_{titanic_names};
    ColumnFacts columns_;
    RuleBook book_ = {made_.pool(), made_.names(), 2201, {}, &columns_};
    SearchResult found_;
    RuleInput input_;
    RuleRequest request_;
    std::optional<ExclusionResult> exclusions_;
    PageItems items_{{5, 6, 10, 17}};
    PageArrays arrays_;
    std::size_t classes_shown_ = 0;
    std::string options_ = "--then 'survived=*'";

private:
    rapidjson::Document header_;
};

TEST_F(PageHeaderTest, TellsWhereTheRulesComeFrom) {
    EXPECT_EQ(header()["format"].GetUint(), 1U);
    EXPECT_STREQ(header()["title"].GetString(), "titanic.csv");
    EXPECT_EQ(header()["transactions"].GetUint(), 2201U);
    EXPECT_EQ(text_at("run", "options"), "--then 'survived=*'");
    ASSERT_EQ(header()["run"]["notes"].Size(), 1U);
    EXPECT_STREQ(header()["run"]["notes"][0].GetString(), "items               10");
    EXPECT_EQ(text_at("summary", "origin"), "96 classes, 2,201 transactions");
}

TEST_F(PageHeaderTest, TellsWhatEachStepLeftOut) {
    EXPECT_EQ(header()["summary"]["derived"].GetUint(), 4U);
    const auto& steps = header()["summary"]["left_out"];
    ASSERT_EQ(steps.Size(), 1U);
    EXPECT_EQ(steps[0]["count"].GetUint(), 3U);
    EXPECT_STREQ(steps[0]["what"].GetString(), "another reading of an association");
    EXPECT_STREQ(steps[0]["options"].GetString(), "--readings all");
    EXPECT_EQ(text_at("summary", "note"),
              "There are too many rules to compare them all in seconds, so this is --prune full; --prune "
              "productive goes on.");
}

TEST_F(PageHeaderTest, TellsWhatIsBeyondThePage) {
    EXPECT_EQ(header()["rules"]["count"].GetUint(), 1U);
    EXPECT_EQ(header()["rules"]["left"].GetUint(), 1U);
    EXPECT_EQ(header()["rules"]["min_support"].GetUint(), 23U);
    EXPECT_EQ(header()["rules"]["min_confidence"].GetDouble(), 0.8);
    EXPECT_EQ(text_at("rules", "sort"), "leverage");
    EXPECT_EQ(text_at("rules", "limit_option"), "");
    request_.page_limit = 1;
    found_.accounting.derived = 10;
    EXPECT_EQ(header()["rules"]["count"].GetUint(), 1U);
    EXPECT_EQ(header()["rules"]["limit"].GetUint(), 1U);
    found_.accounting[Step::top] = 6;
    EXPECT_EQ(header()["rules"]["left"].GetUint(), 7U);
    EXPECT_EQ(header()["rules"]["left_out_by_limit"].GetUint(), 6U);
    EXPECT_EQ(text_at("rules", "limit_option"), "--page-limit 7 shows all 7");
}

TEST_F(PageHeaderTest, TellsTheSettingsInWords) {
    EXPECT_EQ(setting("--min-support"), "1% (at least 3), which is 23 transactions");
    EXPECT_EQ(setting("--min-confidence"), "0.8");
    EXPECT_EQ(setting("--min-lift"), "more than 1");
    EXPECT_EQ(setting("--max-items"), "at most 6");
    EXPECT_EQ(setting("--max-if"), "any");
    EXPECT_EQ(setting("--wording"), "the fewest items that say the same");
    EXPECT_EQ(setting("--readings"), "the best one");
    EXPECT_EQ(setting("--prune"), "full");
    EXPECT_EQ(setting("--where"), "none");
    EXPECT_EQ(setting("--forms"), "none");
    request_.min_support = {25, false};
    request_.min_lift = 1.5;
    request_.where = "lift > 2";
    request_.forms = {Form::R111, Form::R121};
    request_.kinds = {Certainty::exact};
    request_.patterns = {{"--then-not", "age=*", PatternPlace::conclusion, false}};
    request_.wording = Wording::full;
    request_.readings = Readings::all;
    EXPECT_EQ(setting("--min-support"), "25");
    EXPECT_EQ(setting("--min-lift"), "at least 1.5");
    EXPECT_EQ(setting("--where"), "lift > 2");
    EXPECT_EQ(setting("--forms"), "R111, R121");
    EXPECT_EQ(setting("--kinds"), "exact");
    EXPECT_EQ(setting("--then-not"), "age=*");
    EXPECT_EQ(setting("--wording"), "all items as korv writes them");
    EXPECT_EQ(setting("--readings"), "all");
    request_.min_lift = 0;
    EXPECT_EQ(setting("--min-lift"), "any");
}

TEST_F(PageHeaderTest, ExplainsMeasuresAndForms) {
    const auto& measures = header()["measures"];
    ASSERT_EQ(measures.Size(), 23U);
    EXPECT_STREQ(measures[5]["name"].GetString(), "lift");
    EXPECT_STREQ(measures[5]["formula"].GetString(), "a n/(x y)");
    EXPECT_STREQ(measures[5]["explanation"].GetString(),
                 "how many times as often as by chance both sides hold together; 1 is chance");
    EXPECT_STREQ(measures[5]["turns"].GetString(), "");
    EXPECT_STREQ(measures[19]["turns"].GetString(), "equal_sides");
    EXPECT_STREQ(measures[21]["turns"].GetString(), "chance");
    const auto& forms = header()["forms"];
    ASSERT_EQ(forms.Size(), 24U);
    EXPECT_STREQ(forms[13]["label"].GetString(), "R312");
    EXPECT_EQ(forms[13]["group"].GetUint(), 3U);
    EXPECT_FALSE(forms[13]["premise_negated"].GetBool());
    EXPECT_TRUE(forms[13]["conclusion_negated"].GetBool());
    ASSERT_EQ(header()["groups"].Size(), 4U);
    EXPECT_STREQ(header()["groups"][2].GetString(), "or-none");
}

TEST_F(PageHeaderTest, ShowsTheUsualMeasuresAndThoseThatWereAskedFor) {
    book_.measures = {Measure::lift, Measure::phi};
    const auto& shown = header()["shown_measures"];
    ASSERT_EQ(shown.Size(), 4U);
    EXPECT_STREQ(shown[0].GetString(), "confidence");
    EXPECT_STREQ(shown[3].GetString(), "phi");
}

TEST_F(PageHeaderTest, NamesItemsThatHaveNames) {
    const auto& items = header()["items"];
    EXPECT_EQ(items["count"].GetUint(), 4U);
    EXPECT_EQ(items["left_out"].GetUint(), 3U);
    EXPECT_STREQ(items["names"][1].GetString(), "sex=female");
    EXPECT_TRUE(items["names"][3].IsNull());
}

TEST_F(PageHeaderTest, HasTheColumnsOfItsItems) {
    ClassMap classes = {{{5}, {1731, {}}}, {{6}, {470, {}}}, {{5, 6}, {2201, {}}}};
    columns_ = ColumnFacts(made_.names(), classes, 2201);
    const auto& columns = header()["columns"];
    ASSERT_EQ(columns.Size(), 2U);  // sex, and survived
    EXPECT_STREQ(columns[0]["name"].GetString(), "sex");
    EXPECT_EQ(columns[0]["items"].Size(), 2U);
    EXPECT_EQ(columns[0]["items"][1].GetUint(), 1U);
    EXPECT_TRUE(columns[0]["exclusive"].GetBool());
    EXPECT_TRUE(columns[0]["exhaustive"].GetBool());
    EXPECT_EQ(columns[1]["items"].Size(), 1U);
    EXPECT_FALSE(columns[1]["exhaustive"].GetBool());
}

TEST_F(PageHeaderTest, SaysWhyClassesAreMissing) {
    EXPECT_EQ(text_at("lattice", "why"), "");
    const ClassMap classes = {{{1}, {4, {}}}, {{2}, {5, {}}}};
    found_.lattice = lattice_entries(classes);
    classes_shown_ = 1;
    EXPECT_EQ(header()["lattice"]["classes"].GetUint(), 2U);
    EXPECT_EQ(text_at("lattice", "why"),
              "There is room for 1 of 2 classes: those of the first rules with their neighbours.");
    found_.lattice.clear();
    classes_shown_ = 0;
    found_.accounting.rule_files = 2;
    EXPECT_EQ(text_at("lattice", "why"), "The rules come from rule files, which do not hold the classes.");
}

TEST_F(PageHeaderTest, SaysWhyExclusionsAreMissing) {
    EXPECT_FALSE(header()["exclusions"]["known"].GetBool());
    EXPECT_EQ(text_at("exclusions", "why"),
              "How often two items are together is counted in the transactions, which were not at hand: "
              "--database FILE names them.");
    exclusions_.emplace();
    exclusions_->exclusions.resize(2);
    exclusions_->accounting[ExclusionStep::top] = 5;
    EXPECT_TRUE(header()["exclusions"]["known"].GetBool());
    EXPECT_EQ(header()["exclusions"]["shown"].GetUint(), 2U);
    EXPECT_EQ(header()["exclusions"]["left_out"].GetUint(), 5U);
    EXPECT_EQ(text_at("exclusions", "why"), "");
}

TEST_F(PageHeaderTest, TellsOfOtherTransactionsWhereTheyConfirmRules) {
    EXPECT_FALSE(header().HasMember("holdout"));
    input_.holdout.emplace();
    input_.holdout->transactions = 440;
    request_.alpha = 0.01;
    EXPECT_EQ(header()["holdout"]["transactions"].GetUint(), 440U);
    EXPECT_EQ(header()["holdout"]["alpha"].GetDouble(), 0.01);
}

TEST_F(PageHeaderTest, SaysWhereEachArrayIs) {
    arrays_.add("a", std::vector<std::uint32_t>{1, 2});
    arrays_.add("b", std::vector<std::uint32_t>{300, 2}, {.in_planes = true, .has_deltas = true});
    const auto& arrays = header()["arrays"];
    ASSERT_EQ(arrays.Size(), 2U);
    EXPECT_STREQ(arrays[0]["type"].GetString(), "u8");
    EXPECT_FALSE(arrays[0].HasMember("layout"));
    EXPECT_FALSE(arrays[0].HasMember("delta"));
    EXPECT_STREQ(arrays[1]["name"].GetString(), "b");
    EXPECT_EQ(arrays[1]["length"].GetUint(), 2U);
    EXPECT_EQ(arrays[1]["offset"].GetUint(), 8U);
    EXPECT_STREQ(arrays[1]["layout"].GetString(), "planes");
    EXPECT_TRUE(arrays[1]["delta"].GetBool());
}

TEST_F(PageHeaderTest, HasNoBytesThatAreNoText) {
    options_ = "--with '\xFF'";
    EXPECT_EQ(text_at("run", "options"), "--with '\xEF\xBF\xBD'");
}

}  // namespace

}  // namespace korv::tools
