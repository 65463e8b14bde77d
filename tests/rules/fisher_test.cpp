#include "rules/fisher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace korv::tools {
namespace {

/// All ways to choose `some` of `all`: rows of Pascal's triangle.
std::vector<std::vector<std::uint64_t>> binomials(std::size_t last_row) {
    std::vector<std::vector<std::uint64_t>> rows = {{1}};
    while (rows.size() <= last_row) {
        const auto& above = rows.back();
        std::vector<std::uint64_t> row = {1};
        for (std::size_t i = 1; i < above.size(); ++i) {
            row.push_back(above[i - 1] + above[i]);
        }
        row.push_back(1);
        rows.push_back(row);
    }
    return rows;
}

/// -log10 of part / whole, exact also where they are nearly equal.
double minus_log10(std::uint64_t part, std::uint64_t whole) {
    const std::uint64_t rest = whole - part;
    return rest < part ? -std::log1p(-static_cast<double>(rest) / static_cast<double>(whole)) / std::log(10.0)
                       : -std::log10(static_cast<double>(part) / static_cast<double>(whole));
}

/// Calls `look` with each table of some transactions, and the surprise of fewer and of more.
template <typename Look>
void for_each_table(Count transactions, const Look& look) {
    const auto ways = binomials(transactions);
    for (Count x = 0; x <= transactions; ++x) {
        for (Count y = 0; y <= transactions; ++y) {
            const std::uint64_t all = ways[transactions][x];
            std::uint64_t fewer = 0;
            for (Count a = x + y > transactions ? x + y - transactions : 0; a <= std::min(x, y); ++a) {
                const std::uint64_t here = ways[y][a] * ways[transactions - y][x - a];
                fewer += here;
                look(Contingency{x, y, a}, minus_log10(fewer, all), minus_log10(all - fewer + here, all));
            }
        }
    }
}

TEST(Surprise, IsTheSumOfTheExactProbabilities) {
    for (const Count transactions : {1U, 2U, 7U, 24U, 60U}) {
        for_each_table(transactions, [&](const Contingency& table, double fewer, double more) {
            ASSERT_NEAR(surprise(Tail::fewer, table, transactions), fewer, 1e-12 * fewer)
                << table.premise << " " << table.conclusion << " " << table.both;
            ASSERT_NEAR(surprise(Tail::more, table, transactions), more, 1e-12 * more)
                << table.premise << " " << table.conclusion << " " << table.both;
        });
    }
}

TEST(Surprise, IsExactInLargeTables) {
    // Sums of fractions of whole numbers.
    struct Case {
        Count transactions;
        Contingency table;
        double expected;
    };
    const std::vector<Case> cases = {
        {1000, {500, 500, 0}, 299.43182715186373},
        {1000, {500, 500, 200}, 9.775646748188137},
        {10000, {4000, 3000, 1000}, 18.73132442419319},
        {20000, {10000, 10000, 4900}, 2.611956316120086},
        {20000, {10000, 10000, 5100}, 0.0009725992217188995},
        {50000, {1, 49999, 0}, 4.698970004336019},
        {9835, {764, 2513, 87}, 23.276475624485784},
        {30000, {15000, 15000, 7000}, 30.380813260780997},
        {2000000000, {300, 1000000000, 100}, 8.39713432549729},
        {2000000000, {300, 1000000000, 0}, 90.30900843824952},
        {2000000000, {300, 20000000, 1}, 0.70410396870966},
        {2147483647, {40, 2147483600, 39}, 6.057772197521501},
    };
    for (const Case& each : cases) {
        EXPECT_NEAR(surprise(Tail::fewer, each.table, each.transactions), each.expected,
                    1e-12 * each.expected)
            << each.transactions;
    }
}

TEST(Surprise, IsThatOfNoOtherTableWhereThereIsNone) {
    EXPECT_EQ(surprise(Tail::fewer, {3, 10, 3}, 10), 0);
    EXPECT_EQ(surprise(Tail::more, {3, 10, 3}, 10), 0);
    EXPECT_EQ(surprise(Tail::fewer, {0, 0, 0}, 10), 0);
    EXPECT_EQ(surprise(Tail::fewer, {4, 5, 4}, 10), 0);
}

TEST(Surprise, IsTheSameInBothDirections) {
    for (Count a = 0; a <= 300; ++a) {
        EXPECT_EQ(surprise(Tail::fewer, {300, 700, a}, 2000), surprise(Tail::fewer, {700, 300, a}, 2000));
        EXPECT_EQ(surprise(Tail::more, {300, 700, a}, 2000), surprise(Tail::more, {700, 300, a}, 2000));
    }
}

TEST(MostSurprise, IsExceededByNoTail) {
    for (const Count transactions : {2U, 3U, 8U, 40U}) {
        for_each_table(transactions, [&](const Contingency& table, double fewer, double more) {
            const auto is_proper = [&](Count side) { return side > 0 && side < transactions; };
            if (is_proper(table.premise) && is_proper(table.conclusion)) {
                ASSERT_GE(most_surprise(table, transactions), fewer)
                    << table.premise << " " << table.conclusion << " " << table.both;
                ASSERT_GE(most_surprise(table, transactions), more)
                    << table.premise << " " << table.conclusion << " " << table.both;
            }
        });
    }
}

TEST(MostSurprise, IsCloseToChanceWhereTheTableIs) {
    // At chance, only (ln n)/2 + 1.4 are left.
    EXPECT_NEAR(most_surprise({1000, 1000, 1}, 1'000'000), (std::log(1e6) / 2 + 1.4) / std::log(10.0), 1e-9);
}

}  // namespace
}  // namespace korv::tools
