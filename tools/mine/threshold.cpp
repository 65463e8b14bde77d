#include "mine/threshold.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "base/number_text.h"
#include "common/error.h"

namespace korv::tools {

std::optional<Threshold> parse_threshold(const std::string& text) {
    if (!text.ends_with('%')) {
        const auto count = parse_number<Count>(text);
        return count ? std::optional(Threshold{static_cast<double>(*count), false}) : std::nullopt;
    }
    const auto percentage = parse_number<double>(std::string_view(text).substr(0, text.size() - 1));
    if (!percentage || !std::isfinite(*percentage) || *percentage < 0) {
        return std::nullopt;
    }
    return Threshold{*percentage, true};
}

std::optional<std::vector<Threshold>> parse_thresholds(const std::string& text) {
    std::vector<Threshold> thresholds;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const auto threshold = parse_threshold(text.substr(begin, end - begin));
        if (!threshold) {
            return std::nullopt;
        }
        thresholds.push_back(*threshold);
        begin = end + 1;
    }
    return thresholds;
}

Count in_transactions(const Threshold& threshold, const std::string& option, Count least,
                      Count transactions) {
    // So that a percentage without an exact binary form is not rounded up to one transaction too many.
    const double exact = threshold.value / 100 * transactions;
    const double tolerance = 1e-9 + exact * 4 * std::numeric_limits<double>::epsilon();
    const double least_share = std::min(threshold.at_least, transactions);
    const double count =
        threshold.is_percentage ? std::max(std::ceil(exact - tolerance), least_share) : threshold.value;
    if (count < least || count > transactions) {
        throw UsageError(option + ": found " + std::to_string(static_cast<long long>(std::min(count, 1e18))) +
                         " transactions; expected at least " + std::to_string(least) + " and at most " +
                         std::to_string(transactions) + ", the number of transactions in the input");
    }
    return static_cast<Count>(count);
}

std::string text_of(const Threshold& threshold) {
    if (!threshold.is_percentage) {
        return std::to_string(static_cast<Count>(threshold.value));
    }
    std::array<char, 32> digits = {};
    char* const begin = digits.data();
    return std::string(begin, std::to_chars(begin, begin + digits.size(), threshold.value).ptr) + "%" +
           (threshold.at_least > 0 ? " (at least " + std::to_string(threshold.at_least) + ")" : "");
}

}  // namespace korv::tools
