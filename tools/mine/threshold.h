#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/itemset.h"

namespace korv::tools {

/// A number of transactions as it is given: as such, or as a percentage of all of them.
struct Threshold {
    double value = 0.0;
    bool is_percentage = false;
    /// A percentage stands for at least so many transactions, or for all of them where they are fewer.
    Count at_least = 0;

    bool operator==(const Threshold&) const = default;
};

/// Parses a whole number ("100"), or a number with a percent sign ("2.5%"). Returns nothing for anything
/// else.
std::optional<Threshold> parse_threshold(const std::string& text);

/// Parses thresholds with commas between them. Returns nothing when one of them is none.
std::optional<std::vector<Threshold>> parse_thresholds(const std::string& text);

/// The threshold as a number of transactions, in a database of `transactions`: a percentage is rounded up.
/// Throws Error, which names `option`, when the result is below `least` or larger than `transactions`.
Count in_transactions(const Threshold& threshold, const std::string& option, Count least, Count transactions);

/// The threshold as it was given: "100" or "2.5%"; "1% (at least 3)".
std::string text_of(const Threshold& threshold);

}  // namespace korv::tools
