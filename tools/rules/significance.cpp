#include "rules/significance.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "rules/measures.h"

namespace korv::tools {

namespace {

/// log10 of 2^size - 2, the ways to divide so many items into a premise and a conclusion.
double log_of_divisions(std::size_t size) {
    const auto power = static_cast<double>(size);
    return (power * std::numbers::ln2 + std::log1p(-std::exp2(1 - power))) / std::numbers::ln10;
}

}  // namespace

SignificanceLevels::SignificanceLevels(double alpha, std::size_t items, std::size_t max_items) {
    // The sum of 4 C(items, i) C(items - i, j) over i + j = size, both at least 1, is
    // 4 C(items, size) (2^size - 2). All of it in logarithms, since it soon exceeds every number.
    const std::size_t largest = max_items == 0 ? items : max_items;
    const std::size_t last = std::min(largest, items);
    double log_of_choices = std::log10(static_cast<double>(items));  // of `size` items
    for (std::size_t size = 2; size <= last; ++size) {
        log_of_choices += std::log10(static_cast<double>(items - size + 1) / static_cast<double>(size));
        const double log_of_rules = std::log10(4.0) + log_of_choices + log_of_divisions(size);
        needed_.push_back(std::log10(static_cast<double>(largest - 1)) + log_of_rules - std::log10(alpha));
    }
}

double SignificanceLevels::needed(std::size_t size) const {
    // Below 2, it wraps.
    return size - 2 < needed_.size() ? needed_[size - 2] : std::numeric_limits<double>::infinity();
}

bool is_enough(double surprise, double needed) {
    constexpr double rounding = 1e-11;
    return surprise >= needed - rounding * std::max(1.0, needed);
}

bool SignificanceTest::passes(const FoundRule& rule, std::size_t items) const {
    // One transaction more that meets a side whose support is open changes one cell of the table into its
    // neighbour. Of two random sides, the larger one has at least as many in common with the other; so p only
    // rises or only falls between the ends of the bounds.
    return is_enough(bounds_of(Measure::p, rule, transactions_).low, levels_.needed(items));
}

}  // namespace korv::tools
