#include "engine/frontier_walk.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "support/loaded_classes.h"

namespace korv {
namespace {

using Itemsets = std::vector<Itemset>;
using test::itemsets;

class FrontierWalk : public ::testing::Test {
protected:
    /// Walks over these closed itemsets.
    void walk(const Itemsets& closed_itemsets) {
        file(closed_itemsets);
        walk_frontier(classes_->entries, frontier_, visited_);
    }

    /// Begins with these closed itemsets, without successors.
    test::LoadedClasses& file(const Itemsets& closed_itemsets) {
        return classes_.emplace(test::classes_of_itemsets(closed_itemsets));
    }

    void process(const Itemset& other, const Itemset& itemset) {
        processing_succ(classes_->entry(other), classes_->entry(itemset), classes_->entries, visited_);
    }

    void visit(const Itemset& itemset) { visited_.insert(classes_->node(itemset)); }

    Itemsets successors(const Itemset& itemset) const { return classes_->successors(itemset); }

    Itemsets visited() const { return itemsets({visited_.begin(), visited_.end()}); }

    Itemsets frontier() const {
        Itemsets result;
        for (const auto position : frontier_) {
            result.push_back(position->itemset());
        }
        return result;
    }

private:
    std::optional<test::LoadedClasses> classes_;
    Frontier frontier_;
    VisitedNodes visited_;
};

TEST_F(FrontierWalk, EndsWithTheItemsetsContainedInNoOtherOnTheFrontier) {
    walk({{1}, {2}, {3, 4}, {1, 5}});
    EXPECT_EQ(frontier(), (Itemsets{{2}, {1, 5}, {3, 4}}));
}

TEST_F(FrontierWalk, StartsWithAnEmptyFrontierAgain) {
    walk({{1}, {2}, {1, 2}});
    walk({{1}, {3}, {1, 3}});
    EXPECT_EQ(frontier(), (Itemsets{{1, 3}}));
    EXPECT_EQ(successors({1, 3}), (Itemsets{{1}, {3}}));
}

TEST_F(FrontierWalk, EmptiesTheFrontierWhenThereIsNoClass) {
    walk({{1}, {2}});
    walk({});
    EXPECT_EQ(frontier(), Itemsets{});
}

TEST_F(FrontierWalk, DescendsAsDeepAsNeeded) {
    walk({{3}, {3, 4}, {2, 3, 4}, {3, 5, 6, 7}});
    EXPECT_EQ(successors({3, 5, 6, 7}), Itemsets{{3}});
    EXPECT_EQ(visited(), (Itemsets{{3}, {3, 4}}));
}

TEST_F(FrontierWalk, DescendsNoFurtherBelowAContainedClass) {
    walk({{1}, {1, 2}, {1, 2, 3}, {1, 2, 4}});
    EXPECT_EQ(successors({1, 2, 4}), (Itemsets{{1, 2}}));
    EXPECT_EQ(visited(), (Itemsets{{1, 2}}));
}

TEST_F(FrontierWalk, VisitsContainedOverlappingAndForeignNodes) {
    walk({{1}, {2, 3}, {4, 5}, {1, 2, 3, 4, 5}, {1, 2, 6, 7, 8}});
    EXPECT_EQ(successors({1, 2, 6, 7, 8}), Itemsets{{1}});
    EXPECT_EQ(visited(), (Itemsets{{1}, {2, 3}, {4, 5}}));
}

TEST_F(FrontierWalk, RefusesTheEmptyItemsetOnceThereIsAnotherSuccessor) {
    // {3 4} is on the frontier before {1 2 9}, below which {1 2} leads to the empty itemset.
    walk({{}, {1, 2}, {3, 4}, {1, 2, 9}, {2, 3, 4, 7}});
    EXPECT_EQ(successors({2, 3, 4, 7}), (Itemsets{{3, 4}}));
    EXPECT_EQ(visited(), (Itemsets{{}, {1, 2}}));
}

// processing_succ.

using ProcessingSucc = FrontierWalk;

TEST_F(ProcessingSucc, SkipsVisitedNodes) {
    test::LoadedClasses& classes = file({{2}, {3}, {2, 3, 4}, {2, 3, 5}});
    classes.entry({2, 3, 4}).successors = {classes.node({2}), classes.node({3})};
    visit({2});
    process({2, 3, 4}, {2, 3, 5});
    EXPECT_EQ(successors({2, 3, 5}), Itemsets{{3}});
}

TEST_F(ProcessingSucc, DoesNotDescendBelowAVisitedNode) {
    test::LoadedClasses& classes = file({{2}, {1, 2}, {1, 2, 4}, {2, 3, 5}});
    classes.entry({1, 2}).successors = {classes.node({2})};
    classes.entry({1, 2, 4}).successors = {classes.node({1, 2})};
    visit({1, 2});
    process({1, 2, 4}, {2, 3, 5});
    EXPECT_EQ(successors({2, 3, 5}), Itemsets{});
}

// insert_succ.

struct Offer {
    bool accepted;
    Itemsets list;

    bool operator==(const Offer&) const = default;
};

/// What an offer of `x` makes of a list.
Offer offer(const Itemset& x, const Itemsets& listed) {
    ClassMap classes;
    SuccessorList list;
    for (const Itemset& itemset : listed) {
        list.push_back(classes.try_emplace(itemset).first);
    }
    const bool accepted = insert_succ(classes.try_emplace(x).first, list);
    return {accepted, itemsets(list)};
}

TEST(InsertSucc, AppendsToAnEmptyList) {
    EXPECT_EQ(offer({1}, {}), (Offer{true, {{1}}}));
}

TEST(InsertSucc, AppendsAtTheBack) {
    EXPECT_EQ(offer({1, 2}, {{2, 3}, {4}}), (Offer{true, {{2, 3}, {4}, {1, 2}}}));
}

TEST(InsertSucc, RefusesASubsetOfAListedItemset) {
    EXPECT_EQ(offer({2}, {{4}, {1, 2}}), (Offer{false, {{4}, {1, 2}}}));
}

TEST(InsertSucc, RefusesAListedItemset) {
    EXPECT_EQ(offer({1, 2}, {{1, 2}, {3}}), (Offer{false, {{1, 2}, {3}}}));
}

TEST(InsertSucc, RemovesSubsetsAndKeepsTheOrderOfTheOthers) {
    EXPECT_EQ(offer({1, 2, 3}, {{5}, {1}, {2, 3}, {3, 4}, {2}, {6}}),
              (Offer{true, {{5}, {3, 4}, {6}, {1, 2, 3}}}));
}

TEST(InsertSucc, RefusesTheEmptyItemsetUnlessTheListIsEmpty) {
    EXPECT_EQ(offer({}, {{1}}), (Offer{false, {{1}}}));
    EXPECT_EQ(offer({}, {}), (Offer{true, {{}}}));
}

TEST(InsertSucc, RemovesTheEmptyItemset) {
    EXPECT_EQ(offer({1}, {{}}), (Offer{true, {{1}}}));
}

TEST(InsertSucc, RepeatedItemsCount) {
    EXPECT_EQ(offer({2, 2}, {{1, 2}}), (Offer{true, {{1, 2}, {2, 2}}}));
    EXPECT_EQ(offer({2, 2}, {{1, 2, 2}}), (Offer{false, {{1, 2, 2}}}));
}

}  // namespace
}  // namespace korv
