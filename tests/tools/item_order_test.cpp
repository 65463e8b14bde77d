#include "mine/item_order.h"

#include <gtest/gtest.h>

#include <vector>

namespace korv::tools {
namespace {

using Places = std::vector<ItemOrder::Place>;

Places places_of(const ItemOrder& order, Rank rank) {
    return {order.places(rank).begin(), order.places(rank).end()};
}

TEST(ItemOrder, PutsTheItemsOfAllRanksInOrder) {
    const ItemOrder order({{50}, {2, 900}, {70}, {1, 60, 80}});
    EXPECT_EQ(order.size(), 7U);
    EXPECT_EQ(order.items(), (Itemset{1, 2, 50, 60, 70, 80, 900}));
}

TEST(ItemOrder, KnowsTheRankAtAPlaceAndThePlacesOfARank) {
    const ItemOrder order({{50}, {2, 900}, {70}, {1, 60, 80}});
    EXPECT_EQ(places_of(order, 0), Places{2});
    EXPECT_EQ(places_of(order, 1), (Places{1, 6}));
    EXPECT_EQ(places_of(order, 2), Places{4});
    EXPECT_EQ(places_of(order, 3), (Places{0, 3, 5}));
    for (Rank rank = 0; rank < 4; ++rank) {
        for (const ItemOrder::Place place : order.places(rank)) {
            EXPECT_EQ(order.rank(place), rank);
        }
    }
}

TEST(ItemOrder, CanBeOfNothing) {
    const ItemOrder order({});
    EXPECT_EQ(order.size(), 0U);
}

}  // namespace
}  // namespace korv::tools
