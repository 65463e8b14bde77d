#include "rules/rule_counts_report.h"

#include <gtest/gtest.h>

#include "rules/made_rules.h"

namespace korv::tools {
namespace {

/// The line of a report that begins with a label; empty where there is none.
std::string line_of(const std::string& report, const std::string& label) {
    const std::size_t at = ('\n' + report).find('\n' + label + ' ');
    return at == std::string::npos ? "" : report.substr(at, report.find('\n', at) - at);
}

class RuleCountsReport : public testing::Test {
protected:
    std::string report() {
        const RuleBook book = {found_.itemsets, names_, 100};
        return rule_counts_report(found_, korv_, book, {});
    }

    std::size_t bytes(RuleFormat format) const {
        return written(format, {found_.itemsets, names_, 100}, found_.rules).size();
    }

    Side any(const Itemset& items) { return {found_.itemsets.intern(items), false}; }

    SearchResult found_;
    KorvOutput korv_;
    ItemNames names_{std::map<Item, std::string>{{1, "bread"}, {2, "butter, salted"}, {3, "tea"}}};
};

TEST_F(RuleCountsReport, CountsRulesByFormAndKind) {
    found_.rules = {known_rule(any({1}), any({2}), {40, 50, 40}, Form::R131),
                    known_rule(any({1}), any({3}), {40, 50, 30}, Form::R131),
                    known_rule(any({2}), any({3}), {40, 50, 30}, Form::R131),
                    {any({3}), any({1}), {40, 50, 30}, {40, 50, 35}, Form::R122}};
    const std::string text = report();
    EXPECT_TRUE(
        text.starts_with("form                     exact   approximative         bounded             all\n"
                         "R122                         0               0               1               1\n"
                         "R131                         1               2               0               3\n"
                         "all                          1               2               1               4\n"
                         "\n"
                         "format                   bytes\n"))
        << text;
}

TEST_F(RuleCountsReport, CountsTheBytesOfEachFormat) {
    found_.rules = {known_rule(any({1}), any({2}), {40, 50, 40}, Form::R131)};
    const std::string text = report();
    for (const auto& [name, format] : writer_formats) {
        const std::string number = line_of(text, std::string(name));
        EXPECT_TRUE(number.ends_with(' ' + std::to_string(bytes(format)))) << name << ": " << number;
    }
}

TEST_F(RuleCountsReport, CountsNoRulesAndTheirHeaders) {
    const std::string text = report();
    EXPECT_EQ(line_of(text, "all"),
              "all                          0               0               0               0");
    EXPECT_TRUE(line_of(text, "words").ends_with(" 0")) << text;
    EXPECT_TRUE(line_of(text, "jsonl").ends_with(" 0")) << text;
    // The header: 20 names of 192 bytes, 19 commas and the line end.
    EXPECT_TRUE(line_of(text, "csv").ends_with(" 212")) << text;
}

TEST_F(RuleCountsReport, TellsTheFilesOfKorv) {
    korv_.bytes_of_lattice = 1'234'567;
    const std::string text = report();
    EXPECT_EQ(line_of(text, "Lattice"), "Lattice              1,234,567");
    // Headers alone.
    EXPECT_EQ(line_of(text, "intra_exact"), "intra_exact                137");
    EXPECT_EQ(line_of(text, "intra_approx"), "intra_approx               138");
    EXPECT_EQ(line_of(text, "inter_exact"), "inter_exact                137");
    EXPECT_EQ(line_of(text, "inter_approx"), "inter_approx               138");
}

}  // namespace
}  // namespace korv::tools
