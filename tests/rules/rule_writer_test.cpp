#include "rules/rule_writer.h"

#include <gtest/gtest.h>

#include "made_rules.h"

namespace korv::tools {

namespace {

TEST(RuleWriter, IsThatOfTheFormat) {
    MadeRules rules({{1, "bread"}, {2, "butter"}});
    const std::vector<FoundRule> one = {known_rule(rules.any({1}), rules.any({2}), {4, 5, 4})};
    const RuleBook book = rules.book(10);
    EXPECT_TRUE(written(RuleFormat::words, book, one).starts_with("1. If bread, then always: butter\n"));
    EXPECT_TRUE(written(RuleFormat::table, book, one).starts_with("#  rule "));
    EXPECT_TRUE(written(RuleFormat::csv, book, one).starts_with("id,form,"));
    EXPECT_TRUE(written(RuleFormat::tsv, book, one).starts_with("id\tform\t"));
    EXPECT_TRUE(written(RuleFormat::jsonl, book, one).starts_with("{\"id\":1,\"form\":"));
}

}  // namespace

}  // namespace korv::tools
