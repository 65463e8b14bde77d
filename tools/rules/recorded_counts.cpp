#include "rules/recorded_counts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace korv::tools {

namespace {

constexpr Count largest_count = std::numeric_limits<Count>::max();

/// Numbers of transactions, one of which it is. Signed, so that they can be shifted.
struct Range {
    std::int64_t low;
    std::int64_t high;

    bool is_empty() const { return low > high; }
    Range moved(std::int64_t by) const { return {low + by, high + by}; }
};

constexpr Range any_number = {0, largest_count};

Range common(const Range& one, const Range& other) {
    return {std::max(one.low, other.low), std::min(one.high, other.high)};
}

/// How far a quotient that is printed with six digits may be from what is printed.
struct Rounding {
    double below;
    double above;
};

Rounding rounding_of(double printed) {
    double power = 1;
    double unit = 1e-5;  // of the last of six digits
    constexpr double precision = 1e-9;
    while (printed < power * (1 - precision)) {
        power /= 10;
        unit /= 10;
    }
    const bool is_power = printed < power * (1 + precision);
    return {is_power ? unit / 20 : unit / 2, unit / 2};
}

/// Which numbers make `part` of them a quotient that is printed so. Any number where nothing follows.
Range wholes(Count part, double printed) {
    if (part == 0 || printed <= 0 || std::isinf(printed)) {
        return any_number;
    }
    const auto [below, above] = rounding_of(printed);
    // Rather a number too many than one too few.
    constexpr double precision = 1e-13;
    const double least = part / (printed + above) * (1 - precision);
    const double most = part / (printed - below) * (1 + precision);
    const double smallest = printed <= 1 ? static_cast<double>(part) : 0;
    return common({static_cast<std::int64_t>(std::ceil(std::max(least, smallest))),
                   static_cast<std::int64_t>(std::floor(std::min(most, static_cast<double>(largest_count))))},
                  any_number);
}

/// The same where a quotient above 1 is printed as 1, or what is printed is no bound.
Range wholes_below_cap(Count part, double printed) {
    return printed < 1 ? wholes(part, printed) : any_number;
}

/// The number of transactions that meet the premise, where each support is smallest and where it is largest.
struct Premises {
    Range at_low;
    Range at_high;
};

/// The premise is met by a known number.
Range same_premise(const Estimate<Count>& support, const Estimate<double>& confidence, bool is_capped) {
    return common(wholes(support.low, confidence.low),
                  (is_capped ? wholes_below_cap : wholes)(support.high, confidence.high));
}

/// The premise is met by as many more transactions as both sides are; the smallest support is printed in
/// relation to the largest number for the premise. `support_of_high`: what the largest confidence is of.
Range largest_moving_premise(const Estimate<Count>& support, const Estimate<double>& confidence,
                             Count support_of_high) {
    const Range smallest = wholes_below_cap(support_of_high, confidence.high);
    return common(wholes(support.low, confidence.low), smallest.moved(support.high - support.low));
}

/// The smallest range that holds both.
Range around(const Range& one, const Range& other) {
    if (one.is_empty() || other.is_empty()) {
        return one.is_empty() ? other : one;
    }
    return {std::min(one.low, other.low), std::max(one.high, other.high)};
}

Premises premises_of_bounded_support(const RuleRecord& record) {
    const Estimate<Count>& support = record.support;
    const Estimate<double>& confidence = *record.confidence;
    const std::int64_t width = support.high - support.low;
    const auto moving = [&](Count support_of_high) {
        const Range largest = largest_moving_premise(support, confidence, support_of_high);
        return Premises{largest.moved(-width), largest};
    };
    if (record.group() == 4) {
        return moving(record.is_between_nodes ? support.low : support.high);
    }
    const Range same = same_premise(support, confidence, record.group() == 3);
    if (record.group() != 1 || !record.is_between_nodes) {
        return {same, same};
    }
    // B-->D, of which the premise has a known support, or D-->B, of which it does not.
    const auto [at_low, at_high] = moving(support.high);
    return {around(same, at_low), around(same, at_high)};
}

Premises premises_of(const RuleRecord& record) {
    const Estimate<Count>& support = record.support;
    if (!record.confidence) {
        return {{support.low, support.low}, {support.high, support.high}};
    }
    const Estimate<double>& confidence = *record.confidence;
    if (!support.is_known) {
        return premises_of_bounded_support(record);
    }
    return {wholes(support.low, confidence.low), confidence.is_known
                                                     ? wholes(support.high, confidence.high)
                                                     : wholes_below_cap(support.high, confidence.high)};
}

}  // namespace

std::optional<RecordedCounts> recorded_counts(const RuleRecord& record, std::optional<Count> transactions) {
    const auto [at_low, at_high] = premises_of(record);
    const Count most = transactions.value_or(largest_count);
    const Range low = common(at_low, {record.support.low, most});
    const Range high = common(at_high, {0, most});
    if (low.is_empty() || high.is_empty()) {
        return std::nullopt;
    }
    // No more transactions meet both sides than the premise.
    const std::int64_t largest_support = std::min<std::int64_t>(record.support.high, high.high);
    return RecordedCounts{
        {static_cast<Count>(low.high), 0, record.support.low},
        {static_cast<Count>(std::max(high.low, largest_support)), 0, static_cast<Count>(largest_support)}};
}

}  // namespace korv::tools
