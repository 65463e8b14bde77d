#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/lattice.h"
#include "support/bits.h"
#include "support/lattice_fixture.h"
#include "support/random_classes.h"

namespace korv {
namespace {

using Itemsets = std::vector<Itemset>;
using test::itemsets;

class LatticeBuilding : public test::LatticeFixture {
protected:
    /// The lattice of these closed itemsets, with successors linked.
    Lattice& build_of(const Itemsets& closed_itemsets) {
        Lattice& lattice = file_of(closed_itemsets);
        lattice.build_lattice();
        return lattice;
    }

    /// The same, linked by the plain walk, which alone leaves its working containers behind.
    Lattice& walk_of(const Itemsets& closed_itemsets) {
        Lattice& lattice = file_of(closed_itemsets);
        lattice.walk_frontier();
        return lattice;
    }

    /// The lattice of these closed itemsets, without successors.
    Lattice& file_of(const Itemsets& closed_itemsets) {
        Lattice& lattice = make_lattice("");
        refill(lattice, closed_itemsets);
        return lattice;
    }

    static void refill(Lattice& lattice, const Itemsets& closed_itemsets) {
        lattice.hash_table.clear();
        lattice.dci_map.clear();
        for (const Itemset& itemset : closed_itemsets) {
            lattice.dci_map[itemset];
        }
        lattice.Load_Hash_table();
    }

    /// The entry of a closed itemset, to be changed.
    LatticeEntry& entry(Lattice& lattice, const Itemset& itemset) const {
        const auto position = lattice.find_dci_node(node(itemset)) - lattice.hash_table.cbegin();
        return lattice.hash_table.at(static_cast<std::size_t>(position));
    }
};

Itemsets visited(const Lattice& lattice) {
    return itemsets({lattice.visited.begin(), lattice.visited.end()});
}

Itemsets frontier(const Lattice& lattice) {
    Itemsets result;
    for (const auto position : lattice.frontier) {
        result.push_back(position->itemset());
    }
    return result;
}

// Without classes.

class EmptyLattice : public LatticeBuilding {
protected:
    void build_without_classes() { build(""); }
};

TEST_F(EmptyLattice, EndsWithStatus2AndTwoMessagesWithoutLineEnds) {
    EXPECT_EXIT(build_without_classes(), testing::ExitedWithCode(2),
                testing::Eq("Erreur: le nombre de classes doit \xEF\xBF\xBDtre non null"
                            "Arr\xEF\xBF\xBDt du programme"));
}

TEST_F(EmptyLattice, PrintsNothingOnStandardOutput) {
    const auto build_with_errors_discarded = [this] {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        close(STDERR_FILENO);
        build_without_classes();
    };
    EXPECT_EXIT(build_with_errors_discarded(), testing::ExitedWithCode(2), testing::Eq(""));
}

// Who is a successor of whom, and in which order.

TEST_F(LatticeBuilding, SingleClassHasNoSuccessor) {
    build_of({{1, 2}});
    EXPECT_EQ(successors({1, 2}), Itemsets{});
}

TEST_F(LatticeBuilding, ClassesOfOneCardinalityHaveNoSuccessors) {
    build_of({{1, 2}, {1, 3}, {2, 3}});
    EXPECT_EQ(successors({1, 2}), Itemsets{});
    EXPECT_EQ(successors({1, 3}), Itemsets{});
    EXPECT_EQ(successors({2, 3}), Itemsets{});
}

TEST_F(LatticeBuilding, SubsetOfASuccessorIsNoSuccessor) {
    build_of({{1}, {1, 2}, {1, 2, 3}});
    EXPECT_EQ(successors({1}), Itemsets{});
    EXPECT_EQ(successors({1, 2}), Itemsets{{1}});
    EXPECT_EQ(successors({1, 2, 3}), (Itemsets{{1, 2}}));
}

TEST_F(LatticeBuilding, SuccessorsComeInTheOrderOfTheFrontier) {
    build_of({{1}, {2}, {1, 2}});
    EXPECT_EQ(successors({1, 2}), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeBuilding, SuccessorsMayShareItems) {
    build_of({{1}, {2}, {1, 2}, {2, 3, 4}, {1, 2, 3, 4}});
    EXPECT_EQ(successors({2, 3, 4}), Itemsets{{2}});
    EXPECT_EQ(successors({1, 2, 3, 4}), (Itemsets{{1, 2}, {2, 3, 4}}));
}

TEST_F(LatticeBuilding, ClassWithoutCommonItemsHasNoSuccessor) {
    build_of({{1}, {2}, {3, 4}});
    EXPECT_EQ(successors({3, 4}), Itemsets{});
}

TEST_F(LatticeBuilding, ReadsTheClassesOfAFile) {
    build("1 2\t5\t 1, 2,\n2\t4\t 2,\n1\t3\t 1,\n");
    EXPECT_EQ(successors({1, 2}), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeBuilding, RemovalKeepsTheOrderOfTheFrontier) {
    // {1 5} takes {1} from the head of the frontier and comes last itself.
    build_of({{1}, {2}, {3}, {4}, {1, 5}, {1, 2, 3, 4, 5}});
    EXPECT_EQ(successors({1, 2, 3, 4, 5}), (Itemsets{{2}, {3}, {4}, {1, 5}}));
}

TEST_F(LatticeBuilding, ExaminesTheElementThatFollowsARemovedOne) {
    build_of({{1}, {2}, {3}, {1, 2, 3}});
    EXPECT_EQ(successors({1, 2, 3}), (Itemsets{{1}, {2}, {3}}));
}

TEST_F(LatticeBuilding, FrontierEndsWithTheItemsetsContainedInNoOther) {
    const Lattice& lattice = walk_of({{1}, {2}, {3, 4}, {1, 5}});
    EXPECT_EQ(frontier(lattice), (Itemsets{{2}, {1, 5}, {3, 4}}));
}

TEST_F(LatticeBuilding, BuildingAgainStartsWithAnEmptyFrontier) {
    Lattice& lattice = walk_of({{1}, {2}, {1, 2}});
    refill(lattice, {{1}, {3}, {1, 3}});
    lattice.walk_frontier();
    EXPECT_EQ(frontier(lattice), (Itemsets{{1, 3}}));
    EXPECT_EQ(successors({1, 3}), (Itemsets{{1}, {3}}));
}

TEST_F(LatticeBuilding, RepeatedItemsCount) {
    build_of({{1, 2}, {2, 2}, {1, 2, 2}, {1, 2, 3}});
    EXPECT_EQ(successors({1, 2, 2}), (Itemsets{{1, 2}, {2, 2}}));
    EXPECT_EQ(successors({1, 2, 3}), (Itemsets{{1, 2}}));
}

// The descent.

TEST_F(LatticeBuilding, FindsSuccessorsBelowAnOverlappingClass) {
    build_of({{2}, {1, 2}, {2, 3}});
    EXPECT_EQ(successors({2, 3}), Itemsets{{2}});
}

TEST_F(LatticeBuilding, DescendsAsDeepAsNeeded) {
    const Lattice& lattice = walk_of({{3}, {3, 4}, {2, 3, 4}, {3, 5, 6, 7}});
    EXPECT_EQ(successors({3, 5, 6, 7}), Itemsets{{3}});
    EXPECT_EQ(visited(lattice), (Itemsets{{3}, {3, 4}}));
}

TEST_F(LatticeBuilding, DescendsNoFurtherBelowAContainedClass) {
    const Lattice& lattice = walk_of({{1}, {1, 2}, {1, 2, 3}, {1, 2, 4}});
    EXPECT_EQ(successors({1, 2, 4}), (Itemsets{{1, 2}}));
    EXPECT_EQ(visited(lattice), (Itemsets{{1, 2}}));
}

TEST_F(LatticeBuilding, DescentFollowsTheFrontierNotTheNumbers) {
    // {1 2} came to the frontier after {3}, so {1}, below it, is found after {3}.
    build_of({{1}, {3}, {1, 2}, {1, 3, 4}});
    EXPECT_EQ(successors({1, 3, 4}), (Itemsets{{3}, {1}}));
}

TEST_F(LatticeBuilding, DescendsBelowASuccessorBeforeGoingOnToTheNext) {
    // Below {1 2 3 4}: {1 2} overlaps and leads to {1}, then {3 4} is contained.
    build_of({{1}, {1, 2}, {3, 4}, {1, 2, 3, 4}, {1, 3, 4, 5, 6}});
    EXPECT_EQ(successors({1, 3, 4, 5, 6}), (Itemsets{{1}, {3, 4}}));
}

TEST_F(LatticeBuilding, LargerClassFoundLaterReplacesItsSubset) {
    // {1} is found below {1 2}, then {1 3} on the frontier.
    build_of({{1}, {1, 2}, {1, 3}, {1, 3, 4}});
    EXPECT_EQ(successors({1, 3, 4}), (Itemsets{{1, 3}}));
}

TEST_F(LatticeBuilding, VisitedHoldsContainedOverlappingAndForeignNodes) {
    const Lattice& lattice = walk_of({{1}, {2, 3}, {4, 5}, {1, 2, 3, 4, 5}, {1, 2, 6, 7, 8}});
    EXPECT_EQ(successors({1, 2, 6, 7, 8}), Itemsets{{1}});
    EXPECT_EQ(visited(lattice), (Itemsets{{1}, {2, 3}, {4, 5}}));
}

TEST_F(LatticeBuilding, ANodeVisitedForOneClassIsExaminedAgainForTheNext) {
    build_of({{2}, {1, 2}, {2, 3}, {2, 4}});
    EXPECT_EQ(successors({2, 3}), Itemsets{{2}});
    EXPECT_EQ(successors({2, 4}), Itemsets{{2}});
}

TEST_F(LatticeBuilding, ProcessingSuccSkipsVisitedNodes) {
    Lattice& lattice = file_of({{2}, {3}, {2, 3, 4}, {2, 3, 5}});
    entry(lattice, {2, 3, 4}).successors = {node({2}), node({3})};
    lattice.visited.insert(node({2}));
    lattice.processing_succ(entry(lattice, {2, 3, 4}), entry(lattice, {2, 3, 5}));
    EXPECT_EQ(successors({2, 3, 5}), Itemsets{{3}});
}

TEST_F(LatticeBuilding, ProcessingSuccDoesNotDescendBelowAVisitedNode) {
    Lattice& lattice = file_of({{2}, {1, 2}, {1, 2, 4}, {2, 3, 5}});
    entry(lattice, {1, 2}).successors = {node({2})};
    entry(lattice, {1, 2, 4}).successors = {node({1, 2})};
    lattice.visited.insert(node({1, 2}));
    lattice.processing_succ(entry(lattice, {1, 2, 4}), entry(lattice, {2, 3, 5}));
    EXPECT_EQ(successors({2, 3, 5}), Itemsets{});
}

// The empty closed itemset.

TEST_F(LatticeBuilding, EmptyItemsetIsASuccessorOfTheFirstClassOnly) {
    build_of({{}, {1}, {2}, {1, 2}});
    EXPECT_EQ(successors({1}), Itemsets{{}});
    EXPECT_EQ(successors({2}), Itemsets{});
    EXPECT_EQ(successors({1, 2}), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeBuilding, EmptyItemsetIsReachedThroughAnOverlappingClass) {
    build_of({{}, {1, 2}, {2, 3}, {4, 5}});
    EXPECT_EQ(successors({1, 2}), Itemsets{{}});
    EXPECT_EQ(successors({2, 3}), Itemsets{{}});
    EXPECT_EQ(successors({4, 5}), Itemsets{});
}

TEST_F(LatticeBuilding, EmptyItemsetIsNotReachedThroughAClassWithoutCommonItems) {
    // {1 2 3} overlaps, but {1 2}, between it and the empty itemset, does not.
    build_of({{}, {1, 2}, {1, 2, 3}, {3, 4, 5}});
    EXPECT_EQ(successors({3, 4, 5}), Itemsets{});
}

TEST_F(LatticeBuilding, EmptyItemsetIsRefusedOnceThereIsAnotherSuccessor) {
    // {3 4} is on the frontier before {1 2 9}, below which {1 2} leads to the empty itemset.
    const Lattice& lattice = walk_of({{}, {1, 2}, {3, 4}, {1, 2, 9}, {2, 3, 4, 7}});
    EXPECT_EQ(successors({2, 3, 4, 7}), (Itemsets{{3, 4}}));
    EXPECT_EQ(visited(lattice), (Itemsets{{}, {1, 2}}));
}

TEST_F(LatticeBuilding, EmptyItemsetGivesWayToAnotherSuccessor) {
    // Found below {1 2}, then {3 4} is contained.
    build_of({{}, {1, 2}, {3, 4}, {2, 3, 4}});
    EXPECT_EQ(successors({2, 3, 4}), (Itemsets{{3, 4}}));
}

// insert_succ.

struct Offer {
    bool accepted;
    Itemsets list;

    bool operator==(const Offer&) const = default;
};

/// What an offer of `x` makes of a list.
Offer offer(const Itemset& x, const Itemsets& listed) {
    std::map<Itemset, data> classes;
    SuccessorList list;
    for (const Itemset& itemset : listed) {
        list.push_back(classes.try_emplace(itemset).first);
    }
    const bool accepted = Lattice::insert_succ(classes.try_emplace(x).first, list);
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

// Any family of classes.

using test::Bits;
using test::itemset_of;
using test::random_below;

/// The largest classes that are proper subsets of `whole`.
std::set<Itemset> maximal_proper_subsets(Bits whole, const std::vector<Bits>& family) {
    const auto lies_in = [](Bits inner, Bits outer) { return inner != outer && (inner & outer) == inner; };
    std::set<Itemset> result;
    for (const Bits subset : family) {
        const bool immediate = lies_in(subset, whole) && std::ranges::none_of(family, [&](Bits between) {
                                   return lies_in(subset, between) && lies_in(between, whole);
                               });
        if (immediate) {
            result.insert(itemset_of(subset));
        }
    }
    return result;
}

class AnyFamily : public LatticeBuilding {
protected:
    AnyFamily() : lattice_(make_lattice("")) {}

    /// Whether the successors of all classes are the maximal proper subsets among the classes, each listed
    /// once, in the order in which the plain walk finds them.
    bool is_linked_well(const std::vector<Bits>& family) {
        fill(family);
        lattice_.build_lattice();
        const std::vector<Itemsets> built = all_successors(family);
        fill(family);
        lattice_.walk_frontier();
        if (all_successors(family) != built) {
            return false;
        }
        return std::ranges::all_of(family, [&](Bits bits) {
            const Itemsets listed = successors(itemset_of(bits));
            const std::set<Itemset> expected = maximal_proper_subsets(bits, family);
            return listed.size() == expected.size() && std::set(listed.begin(), listed.end()) == expected;
        });
    }

    /// Classes of one essential itemset each, the smallest item. Most others that hold it do not hold the
    /// class.
    void fill(const std::vector<Bits>& family) {
        Itemsets closed_itemsets;
        std::ranges::transform(family, std::back_inserter(closed_itemsets), itemset_of);
        refill(lattice_, closed_itemsets);
        for (auto& [itemset, of_class] : lattice_.dci_map) {
            of_class.essentials = {{itemset.front()}};
        }
    }

    std::vector<Itemsets> all_successors(const std::vector<Bits>& family) const {
        std::vector<Itemsets> lists;
        for (const Bits bits : family) {
            lists.push_back(successors(itemset_of(bits)));
        }
        return lists;
    }

    /// The family without the classes that are not needed for the failure.
    std::vector<Bits> shrunk(std::vector<Bits> family) {
        for (std::size_t i = 0; i < family.size() && family.size() > 1;) {
            std::vector<Bits> smaller = family;
            smaller.erase(smaller.begin() + static_cast<std::ptrdiff_t>(i));
            if (is_linked_well(smaller)) {
                ++i;
            } else {
                family = std::move(smaller);
                i = 0;
            }
        }
        return family;
    }

    void expect_linked_well(const std::vector<Bits>& family) {
        if (!is_linked_well(family)) {
            std::string classes;
            for (const Bits bits : shrunk(family)) {
                classes += ' ' + testing::PrintToString(itemset_of(bits));
            }
            FAIL() << "wrong successors in the family" << classes;
        }
    }

private:
    Lattice& lattice_;
};

TEST_F(AnyFamily, OverFourItemsHasItsMaximalProperSubsetsAsSuccessors) {
    constexpr Bits itemsets_over_four = 15;
    for (Bits chosen = 1; chosen < Bits{1} << itemsets_over_four; ++chosen) {
        std::vector<Bits> family;
        for (Bits bits = 1; bits <= itemsets_over_four; ++bits) {
            if ((chosen >> (bits - 1) & 1U) != 0) {
                family.push_back(bits);
            }
        }
        ASSERT_NO_FATAL_FAILURE(expect_linked_well(family));
    }
}

TEST_F(AnyFamily, OverManyItemsHasItsMaximalProperSubsetsAsSuccessors) {
    constexpr unsigned seed = 20'240'601;
    std::mt19937 random(seed);
    for (int round = 0; round < 8000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const Bits items = 5 + random_below(8, random);
        const Bits draws = 1 + random_below(40, random);
        std::set<Bits> family;
        for (Bits i = 0; i < draws; ++i) {
            Bits bits = 1 + random_below((Bits{1} << items) - 1, random);
            // Unions and intersections make deeper lattices than chance.
            if (!family.empty() && random_below(2, random) == 0) {
                const Bits earlier =
                    *std::next(family.begin(), random_below(static_cast<Bits>(family.size()), random));
                bits = random_below(2, random) == 0 ? (bits | earlier) : (bits & earlier);
            }
            if (bits != 0) {
                family.insert(bits);
            }
        }
        ASSERT_NO_FATAL_FAILURE(expect_linked_well({family.begin(), family.end()}));
    }
}

/// Classes with essential itemsets and repeated items, whose supersets are looked up by other itemsets than
/// their own.
class AnyClasses : public LatticeBuilding {
protected:
    AnyClasses() : lattice_(make_lattice("")) {}

    void expect_linked_as_by_the_walk(const std::map<Itemset, data>& classes) {
        if (classes.empty()) {
            return;
        }
        fill(classes);
        lattice_.build_lattice();
        const std::vector<Itemsets> built = all_successors();
        fill(classes);
        lattice_.walk_frontier();
        ASSERT_EQ(built, all_successors()) << test::class_file(classes);
    }

private:
    void fill(const std::map<Itemset, data>& classes) {
        lattice_.dci_map = classes;
        lattice_.hash_table.clear();
        lattice_.Load_Hash_table();
    }

    std::vector<Itemsets> all_successors() const {
        std::vector<Itemsets> lists;
        for (const LatticeEntry& each : lattice_.hash_table) {
            lists.push_back(itemsets(each.successors));
        }
        return lists;
    }

    Lattice& lattice_;
};

TEST_F(AnyClasses, WithoutSenseAreLinkedAsByTheWalk) {
    constexpr unsigned seed = 4;
    std::mt19937 random(seed);
    for (int round = 0; round < 40'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(expect_linked_as_by_the_walk(test::contradictory_classes(random)));
    }
}

TEST_F(AnyClasses, OfADatabaseAreLinkedAsByTheWalk) {
    constexpr unsigned seed = 5;
    std::mt19937 random(seed);
    for (int round = 0; round < 30'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const Itemsets transactions = test::random_transactions(7, 15, random);
        ASSERT_NO_FATAL_FAILURE(
            expect_linked_as_by_the_walk(test::some_classes(transactions, 7, 12, random)));
    }
}

}  // namespace
}  // namespace korv
