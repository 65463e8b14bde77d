#include "rules/json_writer.h"

#include <gtest/gtest.h>

#include "made_rules.h"

namespace korv::tools {

namespace {

TEST(JsonWriter, WritesNothingWithoutRules) {
    const MadeRules rules({});
    EXPECT_EQ(written(RuleFormat::jsonl, rules.book(10), {}), "");
}

TEST(JsonWriter, WritesAnObjectForEachRule) {
    MadeRules rules({{1, "bread"}, {2, "butter"}});
    FoundRule first = known_rule(rules.any({1, 3}), rules.none({2}), {4, 5, 4}, Form::R311);
    first.wordings = 3;
    FoundRule second = known_rule(rules.any({1}), rules.any({2}), {4, 5, 3});
    second.at_high = {4, 5, 2};
    EXPECT_EQ(
        written(RuleFormat::jsonl, rules.book(10), {first, second}),
        R"({"id":1,"form":"R311","kind":"exact","premise":{"any":["bread","3"],"items":[1,3]},)"
        R"("conclusion":{"none":["butter"],"items":[2]},"support":4,"support_max":4,)"
        R"("confidence":1,"confidence_max":1,"lift":2,"lift_max":2,"leverage":0.2,"leverage_max":0.2,)"
        R"("premise_count":4,"premise_count_max":4,"conclusion_count":5,"conclusion_count_max":5,)"
        R"("transactions":10,"items":3,"wordings":3})"
        "\n"
        R"({"id":2,"form":"R131","kind":"bounded","premise":{"any":["bread"],"items":[1]},)"
        R"("conclusion":{"any":["butter"],"items":[2]},"support":2,"support_max":3,)"
        R"("confidence":0.5,"confidence_max":0.75,"lift":1,"lift_max":1.5,"leverage":0,"leverage_max":0.1,)"
        R"("premise_count":4,"premise_count_max":4,"conclusion_count":5,"conclusion_count_max":5,)"
        R"("transactions":10,"items":2,"wordings":1})"
        "\n");
}

TEST(JsonWriter, WritesNullForWhatIsNotDefinedAndAStringForInfinity) {
    MadeRules rules({});
    const RuleBook book = rules.book(10, {Measure::conviction});
    const std::string exact =
        written(RuleFormat::jsonl, book, {known_rule(rules.any({1}), rules.any({2}), {4, 5, 4})});
    EXPECT_TRUE(exact.ends_with(R"("wordings":1,"conviction":"inf","conviction_max":"inf"})"
                                "\n"))
        << exact;
    const std::string empty =
        written(RuleFormat::jsonl, book, {known_rule(rules.any({1}), rules.any({2}), {0, 5, 0})});
    EXPECT_NE(empty.find(R"("confidence":null,"confidence_max":null,"lift":null)"), std::string::npos)
        << empty;
}

TEST(JsonWriter, AddsWhatOtherTransactionsSayAtTheEnd) {
    MadeRules rules({});
    const std::vector<HoldoutCounts> holdout = {{{8, 9, 6}, 2.5}};
    RuleBook book = rules.book(10);
    book.holdout = &holdout;
    const std::string text =
        written(RuleFormat::jsonl, book, {known_rule(rules.any({1}), rules.any({2}), {4, 5, 4})});
    EXPECT_TRUE(
        text.ends_with(R"("wordings":1,"holdout_support":6,"holdout_confidence":0.75,"holdout_p":2.5})"
                       "\n"))
        << text;
}

TEST(JsonWriter, KeepsUtf8AndEscapesWhatJsonMust) {
    MadeRules rules({{1, "a\"b\\c\n\x01"}, {2, "Käse 🍞 לחם"}, {3, "x\xFF"}});
    const std::string text = written(RuleFormat::jsonl, rules.book(10),
                                     {known_rule(rules.any({1}), rules.any({2, 3}), {4, 5, 4})});
    EXPECT_NE(text.find(R"({"any":["a\"b\\c\n\u0001"],"items":[1]})"), std::string::npos) << text;
    EXPECT_NE(text.find("{\"any\":[\"Käse 🍞 לחם\",\"x\xEF\xBF\xBD\"],\"items\":[2,3]}"), std::string::npos)
        << text;
}

}  // namespace

}  // namespace korv::tools
