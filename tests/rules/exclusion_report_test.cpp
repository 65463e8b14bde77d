#include "rules/exclusion_report.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

ExclusionAccounting accounting_of(std::uint64_t pairs, std::uint64_t triples) {
    ExclusionAccounting accounting;
    accounting.items = 1200;
    accounting.transactions = 9835;
    accounting.pairs = pairs;
    accounting.triples = triples;
    return accounting;
}

TEST(ExclusionReport, AccountsForEachStep) {
    ExclusionAccounting accounting = accounting_of(3000, 40);
    accounting[ExclusionStep::columns] = 30;
    accounting[ExclusionStep::chance] = 2000;
    accounting[ExclusionStep::uncertain] = 900;
    accounting[ExclusionStep::items] = 50;
    accounting[ExclusionStep::top] = 40;
    RuleRequest request;
    request.patterns = {{"--without", "a", PatternPlace::either, false}};
    EXPECT_EQ(exclusion_report(accounting, request),
              "3,000 pairs and 40 triples of 1,200 items, 9,835 transactions\n"
              "   30 of two values of a column\n"
              "2,000 together as often as by chance\n"
              "  900 could be chance                       --alpha 1 keeps them\n"
              "   50 without the items asked for           without --without\n"
              "   20 shown, by how surprising they are     --top 0 shows all 60\n");
}

TEST(ExclusionReport, SaysWhichStepTookTheLast) {
    ExclusionAccounting accounting = accounting_of(3, 0);
    accounting[ExclusionStep::chance] = 2;
    accounting[ExclusionStep::uncertain] = 1;
    EXPECT_EQ(exclusion_report(accounting, {}),
              "3 pairs of 1,200 items, 9,835 transactions\n"
              "2 together as often as by chance\n"
              "1 could be chance                    --alpha 1 keeps it\n"
              "No exclusion is left: the last one was such as chance could give; --alpha 1 keeps it.\n");
    accounting[ExclusionStep::chance] = 3;
    accounting[ExclusionStep::uncertain] = 0;
    EXPECT_TRUE(exclusion_report(accounting, {})
                    .ends_with("No exclusion is left: the last 3 were together as often as by chance.\n"));
    accounting[ExclusionStep::chance] = 0;
    accounting[ExclusionStep::items] = 3;
    RuleRequest request;
    request.patterns = {{"--with", "a", PatternPlace::either, true}};
    EXPECT_TRUE(exclusion_report(accounting, request)
                    .ends_with("No exclusion is left: the last 3 were without the items asked for; they are "
                               "kept without --with.\n"));
}

TEST(ExclusionReport, SaysThatNoItemIsFrequent) {
    EXPECT_EQ(
        exclusion_report({.items = 1, .transactions = 5}, {}),
        "0 pairs of 1 item, 5 transactions\n"
        "No exclusion is left: fewer than two items reach the minimum support of 1% (at least 3); a lower "
        "--min-support brings more.\n");
}

TEST(ExclusionReport, SaysThatTriplesAreLeftOut) {
    ExclusionAccounting accounting = accounting_of(1, 0);
    accounting.has_too_many_triples = true;
    EXPECT_EQ(
        exclusion_report(accounting, {}),
        "1 pair of 1,200 items, 9,835 transactions\n"
        "1 shown, by how surprising they are\n"
        "Triples would take more than seconds, so these are pairs; --max-items 3 looks at triples, too.\n");
}

}  // namespace
}  // namespace korv::tools
