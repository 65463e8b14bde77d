#include "mine/mining_request.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

constexpr Threshold ten_per_cent = {10, true};

TEST(MiningOptions, AreInTransactions) {
    const MiningOptions options = mining_options({.min_joint = Threshold{1.5, true},
                                                  .min_own = Threshold{7, false},
                                                  .max_size = 3,
                                                  .closure_over_all = true,
                                                  .max_classes = 99},
                                                 ten_per_cent, 200);
    EXPECT_EQ(options.min_support, 20U);
    EXPECT_EQ(options.min_joint, Count{3});
    EXPECT_EQ(options.min_own, 7U);
    EXPECT_EQ(options.max_size, 3U);
    EXPECT_TRUE(options.closure_over_all);
    EXPECT_EQ(options.max_classes, 99U);
}

TEST(MiningOptions, AskForNoMoreThanTheSupportByDefault) {
    const MiningOptions options = mining_options({}, ten_per_cent, 200);
    EXPECT_EQ(options.min_joint, std::nullopt);
    EXPECT_EQ(options.min_own, 1U);
    EXPECT_EQ(options.max_size, std::numeric_limits<std::size_t>::max());
    EXPECT_FALSE(options.closure_over_all);
}

TEST(MiningOptions, NameTheThresholdThatIsOutOfRange) {
    const auto complaint = [](const MiningRequest& request, const Threshold& min_support) {
        return complaint_of([&] { mining_options(request, min_support, 100); });
    };
    EXPECT_EQ(complaint({}, {0, false}),
              "--min-support: found 0 transactions; expected at least 1 and at most 100, the number of "
              "transactions in the input");
    EXPECT_EQ(complaint({.min_joint = Threshold{101, false}, .max_size = 2}, ten_per_cent),
              "--min-joint: found 101 transactions; expected at least 0 and at most 100, the number of "
              "transactions in the input");
    EXPECT_EQ(complaint({.min_own = Threshold{0, true}}, ten_per_cent),
              "--min-own: found 0 transactions; expected at least 1 and at most 100, the number of "
              "transactions in the input");
}

TEST(MiningOptions, WantALimitOfTheSizeWhereItemsNeedNotMeetOften) {
    const auto complaint = [](Count min_joint, std::optional<std::size_t> max_size) {
        return complaint_of([&] {
            mining_options(
                {.min_joint = Threshold{static_cast<double>(min_joint), false}, .max_size = max_size},
                ten_per_cent, 100);
        });
    };
    EXPECT_EQ(
        complaint(9, std::nullopt),
        "--min-joint: found 9, which is less than --min-support 10; expected --max-size, too, since "
        "itemsets whose items hardly meet are too many to be listed without it: --max-size 2 finds pairs, "
        "3 triples as well");
    EXPECT_EQ(complaint(9, 2), "");
    EXPECT_EQ(complaint(0, 3), "");
    EXPECT_EQ(complaint(10, std::nullopt), "");
}

TEST(RequireClasses, SaysWhyThereAreNone) {
    Database database;
    database.items = {{1, {0, 1}}, {2, {1}}};
    database.lines = database.transactions = 4;
    MiningOptions options;
    options.min_support = 3;
    const ClassFigures none;
    EXPECT_THROW(require_classes(none, database, options), NoClasses);
    EXPECT_EQ(complaint_of([&] { require_classes(none, database, options); }),
              "--min-support: no item is in 3 transactions; the most frequent one is in 2");
}

TEST(MiningOptions, OutOfRangeAreWrongUsage) {
    MiningRequest request;
    EXPECT_THROW(mining_options(request, {5, false}, 4), UsageError);
}

}  // namespace
}  // namespace korv::tools
