#include "mine/rank_order.h"

#include <gtest/gtest.h>

#include <vector>

namespace korv::tools {
namespace {

TEST(RankOrder, IsThatOfFirstItems) {
    const RankOrder order({{50}, {2, 900}, {70}, {1, 60, 80}});
    EXPECT_EQ(order.ranks, (std::vector<Rank>{3, 1, 0, 2}));
    EXPECT_EQ(order.places, (std::vector<Rank>{2, 1, 3, 0}));
}

TEST(RankOrder, CanBeOfNothing) {
    const RankOrder order({});
    EXPECT_TRUE(order.ranks.empty());
    EXPECT_TRUE(order.places.empty());
}

}  // namespace
}  // namespace korv::tools
