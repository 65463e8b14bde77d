#include "rules/output_origin.h"

#include <gtest/gtest.h>

#include <vector>

#include "tools/random_database.h"

namespace korv::tools {

namespace {

/// What outputs tell of a run on two files. Members can be changed before they are asked.
class OutputOriginTest : public testing::Test {
protected:
    OutputOriginTest() {
        arguments_.input.paths = {"/data/shop/monday.dat", "tuesday.dat"};
        arguments_.decisive_options = "-c 0.9";
        request_.min_support = {1, false};
    }

    PageOrigin page() const {
        return page_origin(input_, arguments_, request_,
                           [](ExclusionPhase, const ExclusionAccounting&, std::uint64_t, std::uint64_t) {});
    }

    /// Items 10 and 11, each in three transactions, never together; 12 and 13 likewise, in the others.
    void add_transactions() {
        input_.database =
            database_of({0b0001, 0b0001, 0b0001, 0b0010, 0b0010, 0b0010, 0b0100, 0b0100, 0b1000, 0b1000});
        input_.transactions = 10;
    }

    RuleInput input_;
    RuleArguments arguments_;
    RuleRequest request_;
};

TEST_F(OutputOriginTest, DatabasesNameFilesWithoutTheirDirectories) {
    const RulesOrigin origin = database_origin(input_, arguments_);
    EXPECT_EQ(origin.names_of_inputs, "monday.dat, tuesday.dat");
    EXPECT_EQ(origin.options, "-c 0.9");
    EXPECT_EQ(&origin.input, &input_);
}

TEST_F(OutputOriginTest, PagesNameFilesWithoutTheirDirectories) {
    const PageOrigin origin = page();
    EXPECT_EQ(origin.names_of_inputs, "monday.dat, tuesday.dat");
    EXPECT_EQ(origin.options, "-c 0.9");
    EXPECT_EQ(&origin.request, &request_);
}

TEST_F(OutputOriginTest, NotesNameFilesWithoutTheirDirectories) {
    arguments_.input.database = "/data/all.dat";
    arguments_.input.holdout = "/data/later.dat";
    input_.names_path = "/data/shop/monday.names";
    input_.notes = {"input /data/shop/monday.dat, tuesday.dat, /data/shop/monday.dat",
                    "names /data/shop/monday.names", "database /data/all.dat", "holdout /data/later.dat",
                    "other /data/other.dat"};
    const std::vector<std::string> notes = {"input monday.dat, tuesday.dat, monday.dat", "names monday.names",
                                            "database all.dat", "holdout later.dat", "other /data/other.dat"};
    EXPECT_EQ(page().notes, notes);
}

TEST_F(OutputOriginTest, ExclusionsOfPagesNeedTransactions) {
    EXPECT_FALSE(page().exclusions.has_value());
    add_transactions();
    EXPECT_TRUE(page().exclusions.has_value());
}

TEST_F(OutputOriginTest, ExclusionsOfPagesArePairsAndNotCutByTheNumberOfRules) {
    // Each two of three items never meet, with ten transactions of each. Chance gives that of one pair in
    // 184,756 of 30,045,015 ways to choose ten transactions of thirty, and so of three pairs in less than 5
    // %.
    Transactions transactions;
    for (const Set items : {Set{0b001}, Set{0b010}, Set{0b100}}) {
        transactions.insert(transactions.end(), 10, items);
    }
    input_.database = database_of(transactions);
    request_.top = 1;
    const PageOrigin origin = page();
    ASSERT_EQ(origin.exclusions->exclusions.size(), 3U);
    for (const Exclusion& each : origin.exclusions->exclusions) {
        EXPECT_EQ(each.items().size(), 2U);
    }
}

TEST_F(OutputOriginTest, ExclusionsOfPagesHaveASmallestSupportWhereRulesHaveNone) {
    add_transactions();
    request_.min_support = {0, false};
    EXPECT_NO_THROW(page());
    request_.min_support = {11, false};
    EXPECT_THROW(page(), UsageError);
}

TEST_F(OutputOriginTest, SummariesSayWhereClassesAreLeftOutOfThePage) {
    EXPECT_EQ(note_on_classes(3, 3), "");
    EXPECT_EQ(note_on_classes(1'000, 2'000),
              "The page has room for 1,000 of 2,000 classes, those of the first rules with their neighbours; "
              "-o rules.db has all.\n");
}

}  // namespace

}  // namespace korv::tools
