// Whole runs by index and by plain walks give the same bytes for every family of closed itemsets over few
// items:
//
//   three items  all 127 families, each with the supports of all 127 sets of different transactions, and 20
//                times with supports at random
//   four items   all 32,767 families, one half with the supports of random transactions, the others with
//                supports at random
//
// The choice of essential itemsets goes round with transactions, and is random with random supports;
// thresholds and number of transactions are random.
//
// Supports of transactions let the run look up the supports of differences; those at random contradict each
// other as a rule, so that the plain walk has to answer.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>

#include "support/bits.h"
#include "support/compared_runs.h"

namespace korv {
namespace {

using test::Bits;
using test::random_below;
using Classes = std::map<Itemset, data>;

/// Sets whose members are the bits that are set in `chosen`, counted from 1.
std::vector<Bits> members(Bits chosen) {
    std::vector<Bits> result;
    for (Bits bits = 1; chosen != 0; ++bits, chosen >>= 1U) {
        if ((chosen & 1U) != 0) {
            result.push_back(bits);
        }
    }
    return result;
}

/// In how many transactions at least one item is.
Count support_in(const std::vector<Bits>& transactions, Bits itemset) {
    return static_cast<Count>(std::ranges::count_if(
        transactions, [itemset](Bits transaction) { return (transaction & itemset) != 0; }));
}

/// The subsets of `whole`, but for the empty one.
std::vector<Bits> subsets_of(Bits whole) {
    std::vector<Bits> subsets;
    for (Bits subset = whole; subset != 0; subset = (subset - 1) & whole) {
        subsets.push_back(subset);
    }
    return subsets;
}

/// The minimal ones among the itemsets within `closed` that have its support.
std::vector<Bits> essentials_in(const std::vector<Bits>& transactions, Bits closed) {
    std::vector<Bits> of_its_support = subsets_of(closed);
    std::erase_if(of_its_support, [&](Bits subset) {
        return support_in(transactions, subset) != support_in(transactions, closed);
    });
    std::vector<Bits> minimal;
    std::ranges::copy_if(of_its_support, std::back_inserter(minimal), [&](Bits subset) {
        return std::ranges::none_of(
            of_its_support, [subset](Bits other) { return other != subset && (other & subset) == other; });
    });
    return minimal;
}

std::vector<Itemset> itemsets_of(const std::vector<Bits>& sets) {
    std::vector<Itemset> itemsets;
    std::ranges::transform(sets, std::back_inserter(itemsets), test::itemset_of);
    return itemsets;
}

/// Which of its essential itemsets a class has.
enum class Essentials { none, one, all };
constexpr std::array all_choices = {Essentials::none, Essentials::one, Essentials::all};

/// Classes that agree with each other, though not all that the transactions have, and not all closed in them.
Classes classes_of(const std::vector<Bits>& family, const std::vector<Bits>& transactions,
                   Essentials choice) {
    Classes classes;
    for (const Bits closed : family) {
        std::vector<Bits> essentials = essentials_in(transactions, closed);
        if (choice != Essentials::all) {
            essentials.resize(choice == Essentials::one ? 1 : 0);
        }
        classes[test::itemset_of(closed)] = {support_in(transactions, closed), itemsets_of(essentials)};
    }
    return classes;
}

/// Supports below 8, and up to two essential itemsets of the class.
Classes classes_at_random(const std::vector<Bits>& family, std::mt19937& random) {
    Classes classes;
    for (const Bits closed : family) {
        const std::vector<Bits> subsets = subsets_of(closed);
        std::vector<Bits> essentials;
        for (Bits i = random_below(3, random); i > 0; --i) {
            essentials.push_back(subsets[random() % subsets.size()]);
        }
        classes[test::itemset_of(closed)] = {random_below(8, random), itemsets_of(essentials)};
    }
    return classes;
}

TEST(EveryFamily, OverThreeItemsGivesTheSameFiles) {
    constexpr Bits families = (Bits{1} << 7U) - 1;
    constexpr std::uint32_t seed = 1;
    std::mt19937 random(seed);
    for (Bits family = 1; family <= families; ++family) {
        for (Bits transactions = 1; transactions <= families; ++transactions) {
            const Essentials choice = all_choices.at((family + transactions) % 3);
            ASSERT_NO_FATAL_FAILURE(test::expect_same_files(
                classes_of(members(family), members(transactions), choice), test::random_settings(random)));
        }
        for (int round = 0; round < 20; ++round) {
            ASSERT_NO_FATAL_FAILURE(test::expect_same_files(classes_at_random(members(family), random),
                                                            test::random_settings(random)));
        }
    }
}

TEST(EveryFamily, OverFourItemsGivesTheSameFiles) {
    constexpr Bits families = (Bits{1} << 15U) - 1;
    constexpr std::uint32_t seed = 2;
    std::mt19937 random(seed);
    for (Bits family = 1; family <= families; ++family) {
        Classes classes;
        if (random() % 2 == 0) {
            std::vector<Bits> transactions(1 + random() % 12);
            std::ranges::generate(transactions, [&random] { return 1 + random_below(15, random); });
            classes = classes_of(members(family), transactions, all_choices.at(family % 3));
        } else {
            classes = classes_at_random(members(family), random);
        }
        ASSERT_NO_FATAL_FAILURE(test::expect_same_files(classes, test::random_settings(random)));
    }
}

}  // namespace
}  // namespace korv
