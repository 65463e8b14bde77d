#pragma once

#include <compare>
#include <cstdint>

#include "base/itemset.h"
#include "rules/found_rule.h"

namespace korv::tools {

/// The confidence of a rule, as the fraction that it is: of the transactions that meet the premise, those
/// that meet the conclusion, too. Compared exactly, which quotients of large counts are not.
///
/// In contradictory counts it may be above 1. Where no transaction meets the premise, it is not defined, and
/// not to be compared.
class Confidence {
public:
    explicit constexpr Confidence(const Contingency& table) : part_(table.both), whole_(table.premise) {}

    constexpr bool is_defined() const { return whole_ != 0; }

    /// The quotient; NaN for 0/0.
    constexpr double value() const { return static_cast<double>(part_) / whole_; }

    constexpr bool operator==(const Confidence& other) const { return times(other) == other.times(*this); }
    constexpr std::strong_ordering operator<=>(const Confidence& other) const {
        return times(other) <=> other.times(*this);
    }

private:
    constexpr std::uint64_t times(const Confidence& other) const {
        return std::uint64_t{part_} * other.whole_;
    }

    Count part_;
    Count whole_;
};

}  // namespace korv::tools
