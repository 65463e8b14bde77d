#include "index/hasse_diagram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <functional>
#include <iterator>
#include <set>
#include <string>

#include "support/bits.h"
#include "support/itemset_tables.h"

namespace korv {
namespace {

using test::Bits;
using test::random_below;

/// For each itemset of a family, positions of others.
using Neighbours = std::vector<std::vector<Column>>;

/// A member of a family, and the itemset by which its supersets are looked up.
struct Member {
    Itemset itemset;
    Itemset seed;
};

/// Distinct itemsets of items below a bound, by ascending size.
struct Family {
    std::vector<Member> members;
    Item items;
};

// The plain diagram, by definition.

/// The maximal ones among the proper subsets of each itemset, ascending.
Neighbours maximal_proper_subsets(const Family& family) {
    Neighbours lowers;
    for (const Member& whole : family.members) {
        std::vector<Column> subsets;
        for (Column column = 0; column < family.members.size(); ++column) {
            const Itemset& itemset = family.members[column].itemset;
            if (itemset != whole.itemset && is_contained(itemset, whole.itemset)) {
                subsets.push_back(column);
            }
        }
        lowers.emplace_back();
        std::ranges::copy_if(subsets, std::back_inserter(lowers.back()), [&](Column subset) {
            return std::ranges::none_of(subsets, [&](Column other) {
                return other != subset &&
                       is_contained(family.members[subset].itemset, family.members[other].itemset);
            });
        });
    }
    return lowers;
}

/// Appends `top` and all that a depth-first walk along `lowers` meets below it, each once.
void walk(Column top, const Neighbours& lowers, std::vector<char>& is_met, std::vector<Column>& met) {
    if (is_met[top] != 0) {
        return;
    }
    is_met[top] = 1;
    met.push_back(top);
    for (const Column lower : lowers[top]) {
        walk(lower, lowers, is_met, met);
    }
}

/// The maximal proper subsets of each itemset, in the order in which a walk over the frontier meets them.
Neighbours plain_diagram(const Family& family) {
    Neighbours lowers = maximal_proper_subsets(family);
    // On the frontier is what no itemset so far contains.
    std::vector<char> is_on_frontier(lowers.size());
    for (Column position = 0; position < lowers.size(); ++position) {
        std::vector<char> is_met(position);
        std::vector<Column> met;
        for (Column top = 0; top < position; ++top) {
            if (is_on_frontier[top] != 0) {
                walk(top, lowers, is_met, met);
            }
        }
        std::vector<Column> in_order;
        std::ranges::copy_if(met, std::back_inserter(in_order), [&](Column column) {
            return std::ranges::count(lowers[position], column) != 0;
        });
        lowers[position] = in_order;
        for (const Column lower : in_order) {
            is_on_frontier[lower] = 0;
        }
        is_on_frontier[position] = 1;
    }
    return lowers;
}

// The diagram itself.

Neighbours built_diagram(const Family& family, const WorkSharing& sharing = {}) {
    std::vector<Itemset> itemsets;
    for (const Member& member : family.members) {
        itemsets.push_back(member.itemset);
    }
    const std::vector<Item> numbers = test::numbers_rarest_first(itemsets, family.items);
    ItemsetTable numbered;
    ItemsetTable seeds;
    for (const Member& member : family.members) {
        numbered.push_back(test::renumbered(member.itemset, numbers));
        seeds.push_back(test::renumbered(member.seed, numbers));
    }
    const HasseDiagram diagram(numbered, seeds, family.items, sharing);
    Neighbours lowers;
    for (Column position = 0; position < family.members.size(); ++position) {
        const std::span<const Column> below = diagram.lower_neighbours(position);
        lowers.emplace_back(below.begin(), below.end());
    }
    return lowers;
}

/// Three parts, the last one first.
WorkSharing backwards() {
    return {3, [](std::size_t parts, const WorkSharing::DoPart& do_part) {
                while (parts-- > 0) {
                    do_part(parts);
                }
            }};
}

// By hand.

/// The lower neighbours in a family whose members are their own seeds.
Neighbours diagram_of(const std::vector<Itemset>& itemsets) {
    Family family = {{}, 10};
    for (const Itemset& itemset : itemsets) {
        family.members.push_back({itemset, itemset});
    }
    EXPECT_EQ(plain_diagram(family), built_diagram(family));
    EXPECT_EQ(plain_diagram(family), built_diagram(family, backwards()));
    return built_diagram(family);
}

TEST(HasseDiagram, OfNoItemsetIsEmpty) {
    EXPECT_EQ(diagram_of({}), Neighbours{});
}

TEST(HasseDiagram, HasTheMaximalProperSubsetsOnly) {
    EXPECT_EQ(diagram_of({{1}, {1, 2}, {1, 2, 3}}), (Neighbours{{}, {0}, {1}}));
    EXPECT_EQ(diagram_of({{1}, {2}, {3}, {1, 2, 4}}), (Neighbours{{}, {}, {}, {0, 1}}));
}

TEST(HasseDiagram, HasNoEdgesBetweenItemsetsOfOneSize) {
    EXPECT_EQ(diagram_of({{1, 2}, {1, 3}, {2, 3}}), (Neighbours{{}, {}, {}}));
}

TEST(HasseDiagram, MaySkipSizes) {
    EXPECT_EQ(diagram_of({{1}, {1, 2, 3, 4}}), (Neighbours{{}, {0}}));
}

TEST(HasseDiagram, ListsNeighboursOnTheFrontierInTheOrderOfTheFamily) {
    EXPECT_EQ(diagram_of({{2}, {1}, {1, 2}}), (Neighbours{{}, {}, {0, 1}}));
}

TEST(HasseDiagram, ListsANeighbourWhereTheFirstItemsetOnTheFrontierContainsIt) {
    // {1} went off the frontier when {1 2} came, behind {3}.
    EXPECT_EQ(diagram_of({{1}, {3}, {1, 2}, {1, 3, 4}}), (Neighbours{{}, {}, {0}, {1, 0}}));
}

TEST(HasseDiagram, ListsNeighboursBelowOneItemsetInTheOrderOfADescent) {
    // Below {1 2 3 4} stand {3 4}, on the frontier since before, and {1 2}, and below that {1}.
    EXPECT_EQ(diagram_of({{1}, {3, 4}, {1, 2}, {1, 2, 3, 4}, {1, 3, 4, 5, 6}}),
              (Neighbours{{}, {}, {0}, {1, 2}, {1, 0}}));
    // The same with {1 2} before {3 4}.
    EXPECT_EQ(diagram_of({{1}, {1, 2}, {3, 4}, {1, 2, 3, 4}, {1, 3, 4, 5, 6}}),
              (Neighbours{{}, {0}, {}, {1, 2}, {0, 2}}));
}

// Any family.

std::string text_of(const Family& family) {
    std::string text;
    for (const Member& member : family.members) {
        text += ' ' + testing::PrintToString(member.itemset) + " by " + testing::PrintToString(member.seed);
    }
    return text;
}

bool is_right(const Family& family) {
    const Neighbours lowers = plain_diagram(family);
    return built_diagram(family) == lowers && built_diagram(family, backwards()) == lowers;
}

/// The family without the members that are not needed for the failure; many are tried at a time at first.
Family shrunk(Family family) {
    for (std::size_t count = std::bit_floor(family.members.size()); count > 0; count /= 2) {
        for (std::size_t i = 0; i < family.members.size();) {
            Family smaller = family;
            const auto first = smaller.members.begin() + static_cast<std::ptrdiff_t>(i);
            smaller.members.erase(
                first, first + static_cast<std::ptrdiff_t>(std::min(count, smaller.members.size() - i)));
            if (is_right(smaller)) {
                i += count;
            } else {
                family = std::move(smaller);
            }
        }
    }
    return family;
}

void expect_right(const Family& family) {
    if (!is_right(family)) {
        const Family least = shrunk(family);
        FAIL() << "wrong neighbours in the family" << text_of(least) << "\nexpected "
               << testing::PrintToString(plain_diagram(least)) << "\nfound    "
               << testing::PrintToString(built_diagram(least)) << "\nin parts "
               << testing::PrintToString(built_diagram(least, backwards()));
    }
}

/// The members of a set of sets of items, in the order of the family.
std::vector<Bits> by_size(std::vector<Bits> itemsets) {
    std::ranges::stable_sort(itemsets, {}, [](Bits bits) { return std::popcount(bits); });
    return itemsets;
}

/// All families of sets of items below `items`: family k holds the set s if k has the bit s - 1.
template <typename Visit>
void for_each_family(Bits items, Visit visit) {
    const Bits itemsets = (Bits{1} << items) - 1;
    for (Bits chosen = 0; chosen < Bits{1} << itemsets; ++chosen) {
        std::vector<Bits> family;
        for (Bits bits = 1; bits <= itemsets; ++bits) {
            if ((chosen >> (bits - 1) & 1U) != 0) {
                family.push_back(bits);
            }
        }
        ASSERT_NO_FATAL_FAILURE(visit(by_size(family)));
    }
}

constexpr Item number_of_items(Bits items) {
    return items + 1;  // itemset_of begins with item 1
}

TEST(AnyFamilyOfItemsets, OverThreeItemsHasItsDiagramByAnySeeds) {
    std::size_t tried = 0;
    for_each_family(3, [&tried](const std::vector<Bits>& itemsets) {
        std::vector<Bits> seeds = itemsets;
        // Counts through the choices of seeds: each from its itemset down to its last subset that is not
        // empty, then from its itemset again and the next one goes on.
        for (std::size_t i = 0; i <= seeds.size();) {
            Family family = {{}, number_of_items(3)};
            for (std::size_t j = 0; j < seeds.size(); ++j) {
                family.members.push_back({test::itemset_of(itemsets[j]), test::itemset_of(seeds[j])});
            }
            ++tried;
            ASSERT_NO_FATAL_FAILURE(expect_right(family));
            for (i = 0; i < seeds.size(); ++i) {
                seeds[i] = (seeds[i] - 1) & itemsets[i];
                if (seeds[i] != 0) {
                    break;
                }
                seeds[i] = itemsets[i];
            }
            if (i == seeds.size()) {
                break;
            }
        }
    });
    // Each itemset is missing or has one of its subsets: three have 1, three have 3, one has 7.
    EXPECT_EQ(tried, 2U * 2 * 2 * 4 * 4 * 4 * 8);
}

Itemset random_part(const Itemset& itemset, std::mt19937& random) {
    Itemset part;
    std::ranges::copy_if(itemset, std::back_inserter(part), [&](Item) { return random() % 2 == 0; });
    return part.empty() ? Itemset{itemset[random() % itemset.size()]} : part;
}

/// Members in a random order within each size; one in two families has its itemsets as seeds, the others
/// random parts of them.
Family with_seeds(std::vector<Itemset> itemsets, Item items, std::mt19937& random) {
    std::ranges::shuffle(itemsets, random);
    std::ranges::stable_sort(itemsets, {}, &Itemset::size);
    const bool by_itself = random() % 2 == 0;
    Family family = {{}, items};
    for (const Itemset& itemset : itemsets) {
        family.members.push_back({itemset, by_itself ? itemset : random_part(itemset, random)});
    }
    return family;
}

std::vector<Itemset> itemsets_of(const std::vector<Bits>& family) {
    std::vector<Itemset> itemsets;
    std::ranges::transform(family, std::back_inserter(itemsets), test::itemset_of);
    return itemsets;
}

TEST(AnyFamilyOfItemsets, OverFourItemsHasItsDiagram) {
    constexpr std::uint32_t seed = 6;
    std::mt19937 random(seed);
    for_each_family(4, [&random](const std::vector<Bits>& itemsets) {
        Family family = {{}, number_of_items(4)};
        for (const Itemset& itemset : itemsets_of(itemsets)) {
            family.members.push_back({itemset, itemset});
        }
        ASSERT_NO_FATAL_FAILURE(expect_right(family));
        ASSERT_NO_FATAL_FAILURE(expect_right(with_seeds(itemsets_of(itemsets), family.items, random)));
    });
}

/// With all intersections that are not empty.
std::set<Bits> closed_under_intersection(std::set<Bits> family) {
    for (bool grows = true; grows;) {
        std::set<Bits> larger = family;
        for (const Bits one : family) {
            for (const Bits other : family) {
                if ((one & other) != 0) {
                    larger.insert(one & other);
                }
            }
        }
        grows = larger.size() > family.size();
        family = std::move(larger);
    }
    return family;
}

TEST(AnyFamilyOfItemsets, OverFiveToTwelveItemsHasItsDiagram) {
    constexpr std::uint32_t seed = 7;
    std::mt19937 random(seed);
    std::size_t closed = 0;
    std::size_t not_closed = 0;
    for (int round = 0; round < 4000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const Bits items = 5 + random_below(8, random);
        const bool is_to_be_closed = random() % 2 == 0;
        const std::set<Bits> drawn =
            test::random_family(items, 1 + random_below(is_to_be_closed ? 12 : 40, random), random);
        const std::set<Bits> family = is_to_be_closed ? closed_under_intersection(drawn) : drawn;
        ++(closed_under_intersection(family) == family ? closed : not_closed);
        ASSERT_NO_FATAL_FAILURE(expect_right(
            with_seeds(itemsets_of({family.begin(), family.end()}), number_of_items(items), random)));
    }
    EXPECT_GT(closed, 1000U);
    EXPECT_GT(not_closed, 1000U);
}

/// Distinct itemsets of many items, most of which few itemsets hold; every other one is a larger part of one
/// before it and a few items more.
std::vector<Itemset> sparse_itemsets(std::size_t count, Item items, std::mt19937& random) {
    std::vector<Itemset> drawn;
    for (std::size_t i = 0; i < count; ++i) {
        std::set<Item> chosen;
        for (std::size_t j = 1 + random() % 3; j > 0; --j) {
            // The smaller ones come up more often.
            chosen.insert(static_cast<Item>(random() % (1 + random() % (1 + random() % items))));
        }
        if (i % 2 == 1) {
            const Itemset& earlier = drawn[random() % drawn.size()];
            std::ranges::copy_if(earlier, std::inserter(chosen, chosen.end()),
                                 [&](Item) { return random() % 8 != 0; });
        }
        drawn.emplace_back(chosen.begin(), chosen.end());
    }
    const std::set<Itemset> distinct(drawn.begin(), drawn.end());
    return {distinct.begin(), distinct.end()};
}

TEST(AnyFamilyOfItemsets, OfManyItemsHasItsDiagram) {
    constexpr std::uint32_t seed = 8;
    std::mt19937 random(seed);
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        constexpr Item items = 400;
        const std::vector<Itemset> itemsets = sparse_itemsets(1500, items, random);
        // Items with lists: those that less than one itemset in 512 holds.
        std::vector<std::size_t> frequencies(items);
        for (const Itemset& itemset : itemsets) {
            for (const Item item : itemset) {
                ++frequencies[item];
            }
        }
        const auto is_listed = [&](std::size_t frequency) {
            return frequency > 0 && frequency * 512 < itemsets.size();
        };
        EXPECT_GT(std::ranges::count_if(frequencies, is_listed), 30);
        EXPECT_GT(std::ranges::count_if(frequencies, std::not_fn(is_listed)), 30);
        ASSERT_NO_FATAL_FAILURE(expect_right(with_seeds(itemsets, items, random)));
    }
}

}  // namespace
}  // namespace korv
