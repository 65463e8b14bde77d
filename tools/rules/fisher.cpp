#include "rules/fisher.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <utility>

namespace korv::tools {

namespace {

/// The cells of a table.
struct Cells {
    Cells(const Contingency& table, Count transactions)
        : n(transactions),
          x(table.premise),
          y(table.conclusion),
          both(table.both),
          only_x(x - both),
          only_y(y - both),
          neither(n - x - only_y) {}

    Count n;
    Count x;
    Count y;
    Count both;
    Count only_x;
    Count only_y;
    Count neither;

    /// n both - x y. It is at most n^2 / 4, so it fits where its parts do not.
    std::int64_t excess() const {
        return static_cast<std::int64_t>(std::uint64_t{both} * n - std::uint64_t{x} * y);
    }
};

/// ln k! - (k ln k - k), from Stirling's series; what it leaves out is below 1e-18. A table would have to be
/// as long as there are transactions.
long double beyond_stirling(Count k) {
    constexpr Count first = 128;
    constexpr long double log_of_2_pi = 1.83787706640934548356L;
    static const auto small = [] {
        std::array<long double, first> values = {};
        long double log_factorial = 0;
        for (Count i = 1; i < first; ++i) {
            const long double logarithm = std::log(static_cast<long double>(i));
            log_factorial += logarithm;
            values.at(i) = log_factorial - (i * logarithm - i);
        }
        return values;
    }();
    if (k < first) {
        return small.at(k);
    }
    const long double x = k;
    const long double square = x * x;
    const long double terms =
        1.0L / 12 - (1.0L / 360 - (1.0L / 1260 - 1.0L / 1680 / square) / square) / square;
    return (log_of_2_pi + std::log(x)) / 2 + terms / x;
}

/// (1 + u) ln(1 + u) - u, for u >= -1. Near 0, where that would be the difference of equal numbers, from its
/// series.
long double divergence(long double u) {
    constexpr long double near = 0.05L;
    if (u <= -1) {
        return 1;
    }
    if (std::abs(u) > near) {
        return (1 + u) * std::log1p(u) - u;
    }
    constexpr int terms = 17;  // 0.05^17 is below the precision
    long double sum = 0;
    for (int k = terms; k >= 2; --k) {
        sum = 1.0L / (k * (k - 1)) - u * sum;
    }
    return u * u * sum;
}

/// The natural logarithm of the probability of exactly this table among those of its margins.
///
/// The logarithms of the factorials are large and nearly cancel each other: of those of k ln k there remains
/// a sum over the cells of (expected count) divergence(deviation / expected count), all of the same sign.
double log_probability(const Cells& t) {
    const long double deviation = static_cast<long double>(t.excess()) / t.n;
    const auto expected = [&t](Count row, Count column) {
        return static_cast<long double>(std::uint64_t{row} * column) / t.n;
    };
    const auto term = [](long double mean, long double gap) {
        return mean == 0 ? 0.0L : mean * divergence(gap / mean);
    };
    const long double divergences =
        term(expected(t.x, t.y), deviation) + term(expected(t.x, t.n - t.y), -deviation) +
        term(expected(t.n - t.x, t.y), -deviation) + term(expected(t.n - t.x, t.n - t.y), deviation);
    const long double margins = beyond_stirling(t.x) + beyond_stirling(t.n - t.x) + beyond_stirling(t.y) +
                                beyond_stirling(t.n - t.y) - beyond_stirling(t.n);
    const long double cells = beyond_stirling(t.both) + beyond_stirling(t.only_x) +
                              beyond_stirling(t.only_y) + beyond_stirling(t.neither);
    return static_cast<double>(margins - cells - divergences);
}

/// The sum of the probabilities of all tables from `t` on, in relation to that of `t`. A step takes one
/// transaction from both of `taken` and adds it to both of `given`. The probabilities must fall.
/// O(sqrt(n)) at worst: what is too small to count is left out.
double tail_sum(double taken_1, double taken_2, double given_1, double given_2) {
    constexpr double negligible = 1e-17;
    double sum = 1;
    double term = 1;
    while (term > sum * negligible) {
        term *= taken_1 * taken_2 / ((given_1 + 1) * (given_2 + 1));
        sum += term;
        --taken_1;
        --taken_2;
        ++given_1;
        ++given_2;
    }
    return sum;
}

/// The surprise of Tail::more. From the expected count on the tail is added up; below it the rest of it, the
/// other tail, so that a probability close to 1 is exact, too.
double surprise_of_more(const Contingency& table, Count transactions) {
    const Cells t(table, transactions);
    if (t.both == 0 || t.neither == 0) {
        return 0;  // there cannot be fewer
    }
    if (t.excess() > 0) {
        const double more = tail_sum(t.only_x, t.only_y, t.both, t.neither);
        return std::max(0.0, -(log_probability(t) + std::log(more)) / std::numbers::ln10);
    }
    const Cells below({table.premise, table.conclusion, table.both - 1}, transactions);
    const double fewer = tail_sum(below.both, below.neither, below.only_x, below.only_y);
    return -std::log1p(-std::exp(log_probability(below)) * fewer) / std::numbers::ln10;
}

}  // namespace

double surprise(Tail tail, const Contingency& table, Count transactions) {
    Contingency t = table;
    if (t.premise > t.conclusion) {
        std::swap(t.premise, t.conclusion);  // the order of the same sum must not matter
    }
    if (tail == Tail::fewer) {
        // Few with both are many with the one and without the other.
        t = {t.premise, transactions - t.conclusion, t.premise - t.both};
    }
    return surprise_of_more(t, transactions);
}

double most_surprise(const Contingency& table, Count transactions) {
    // Either tail is at least as likely as the table itself. Since divergence(u) <= u^2, the divergences are
    // at most chi-squared; and what is beyond Stirling is at least -(ln n)/2 - 1.4, as 4 c d <= (c + d)^2 for
    // two cells of a margin.
    constexpr double beyond = 1.4;
    const Cells t(table, transactions);
    const auto excess = static_cast<double>(t.excess());
    const double n = t.n;
    const double chi_squared = excess * excess * n / (static_cast<double>(t.x) * (n - t.x) * t.y * (n - t.y));
    return (chi_squared + std::log(n) / 2 + beyond) / std::numbers::ln10;
}

}  // namespace korv::tools
