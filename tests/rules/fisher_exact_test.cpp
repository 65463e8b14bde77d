// Fisher's test against the hypergeometric distribution of Boost.Math, and against sums of 50 digits where
// its tables are too large for that.

#include <gtest/gtest.h>

#include <algorithm>
#include <boost/math/distributions/hypergeometric.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <boost/multiprecision/cpp_bin_float.hpp>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <random>

#include "rules/fisher.h"

namespace korv::tools {
namespace {

struct Table {
    Contingency counts;
    Count transactions;
};

std::ostream& operator<<(std::ostream& out, const Table& table) {
    return out << table.counts.premise << " " << table.counts.conclusion << " " << table.counts.both << " of "
               << table.transactions;
}

/// The fewest that can meet both sides.
Count fewest(Count premise, Count conclusion, Count transactions) {
    const std::uint64_t together = std::uint64_t{premise} + conclusion;
    return together > transactions ? static_cast<Count>(together - transactions) : 0;
}

class RandomTables {
public:
    /// Of at most so many transactions, of any size up to that.
    Table next(Count most_transactions) {
        const Count transactions = of_any_size(1, most_transactions);
        const Count premise = of_any_size(0, transactions);
        const Count conclusion = of_any_size(0, transactions);
        const Count least = fewest(premise, conclusion, transactions);
        const Count most = std::min(premise, conclusion);
        // At an end, near chance or anywhere.
        switch (between(0, 3)) {
            case 0:
                return {{premise, conclusion, most - std::min(most - least, of_any_size(0, 20))},
                        transactions};
            case 1:
                return {{premise, conclusion, least + std::min(most - least, of_any_size(0, 20))},
                        transactions};
            case 2:
                return {{premise, conclusion, near_chance(premise, conclusion, transactions)}, transactions};
            default:
                return {{premise, conclusion, between(least, most)}, transactions};
        }
    }

private:
    Count between(Count low, Count high) { return std::uniform_int_distribution<Count>(low, high)(random_); }

    /// As often below 100 as from there to 10,000; a third of them counted from the largest.
    Count of_any_size(Count low, Count high) {
        const double logarithm =
            std::uniform_real_distribution<double>(0, std::log(static_cast<double>(high - low) + 1))(random_);
        const Count beyond = std::min(high - low, static_cast<Count>(std::exp(logarithm) - 1));
        return between(0, 2) == 0 ? high - beyond : low + beyond;
    }

    Count near_chance(Count premise, Count conclusion, Count transactions) {
        const double expected = static_cast<double>(premise) * conclusion / transactions;
        const double deviation = std::normal_distribution<double>(0, 4)(random_) * std::sqrt(expected + 1);
        return static_cast<Count>(std::clamp(expected + deviation,
                                             static_cast<double>(fewest(premise, conclusion, transactions)),
                                             static_cast<double>(std::min(premise, conclusion))));
    }

    std::mt19937_64 random_{7};
};

/// The probability of a tail, by Boost.Math.
long double tail(Tail which, const Table& table) {
    const auto& [premise, conclusion, both] = table.counts;
    const boost::math::hypergeometric_distribution<long double> chance(premise, conclusion,
                                                                       table.transactions);
    if (which == Tail::fewer) {
        return boost::math::cdf(chance, both);
    }
    return both == fewest(premise, conclusion, table.transactions)
               ? 1
               : boost::math::cdf(boost::math::complement(chance, both - 1));
}

/// Compares both tails of random tables; returns how many probabilities are too small for a double.
/// Boost.Math is exact up to 100,000 transactions, and takes the longer the more there are.
int compare(int number_of_tables, Count most_transactions) {
    constexpr long double least = 1e-4900L;  // smaller ones have fewer digits
    RandomTables tables;
    int below_double = 0;
    for (int i = 0; i < number_of_tables; ++i) {
        const Table table = tables.next(most_transactions);
        for (const Tail which : {Tail::more, Tail::fewer}) {
            const long double probability = tail(which, table);
            const double found = surprise(which, table.counts, table.transactions);
            if (probability < least) {
                EXPECT_GT(found, 4899.9) << table;
                continue;
            }
            below_double += probability < 1e-308L ? 1 : 0;
            const auto expected = static_cast<double>(-std::log10(probability));
            EXPECT_NEAR(found, expected, 1e-11 * std::max(1.0, expected)) << table;
        }
    }
    return below_double;
}

TEST(SurpriseAndBoost, AgreeOnRandomTables) {
    EXPECT_GT(compare(99'000, 2000), 100);
    EXPECT_GT(compare(1000, 100'000), 20);
}

using Digits =
    boost::multiprecision::number<boost::multiprecision::cpp_bin_float<50>, boost::multiprecision::et_off>;

Digits log_of_choices(Count all, Count some) {
    const auto log_factorial = [](Count k) { return boost::math::lgamma(Digits(k) + 1); };
    return log_factorial(all) - log_factorial(some) - log_factorial(all - some);
}

/// -log10 of the sum of the tail of more, with 50 digits.
double summed_surprise(const Table& table) {
    const auto& [premise, conclusion, both] = table.counts;
    Digits taken_1 = premise - both;
    Digits taken_2 = conclusion - both;
    Digits given_1 = both;
    Digits given_2 = table.transactions - premise - (conclusion - both);
    Digits sum = 1;
    Digits term = 1;
    for (; term > sum * 1e-25; --taken_1, --taken_2) {
        term *= taken_1 * taken_2 / (++given_1 * ++given_2);
        sum += term;
    }
    const Digits log_of_first = log_of_choices(premise, both) +
                                log_of_choices(table.transactions - premise, conclusion - both) -
                                log_of_choices(table.transactions, conclusion);
    return static_cast<double>(-(log_of_first + log(sum)) / log(Digits(10)));
}

TEST(SurpriseAndSumsOfManyDigits, AgreeOnLargeTables) {
    constexpr int number_of_tables = 300;
    constexpr Count most_transactions = 4'000'000'000;
    RandomTables tables;
    double most_surprise = 0;
    for (int i = 0; i < number_of_tables; ++i) {
        const Table table = tables.next(most_transactions);
        const auto& [premise, conclusion, both] = table.counts;
        if (std::uint64_t{both} * table.transactions <= std::uint64_t{premise} * conclusion) {
            continue;  // the terms would rise
        }
        const double expected = summed_surprise(table);
        most_surprise = std::max(most_surprise, expected);
        ASSERT_NEAR(surprise(Tail::more, table.counts, table.transactions), expected,
                    1e-11 * std::max(1.0, expected))
            << table;
    }
    EXPECT_GT(most_surprise, 1e8);
}

}  // namespace
}  // namespace korv::tools
