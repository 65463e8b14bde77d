#include "rules/number_words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "common/quantity.h"
#include "common/shortest_number.h"

namespace korv::tools {

std::string percent_text(double share) {
    const double percent = 100 * share;
    if (share == 0 || share == 1) {
        return decimals_text(percent, 0) + " %";
    }
    if (percent < 0.05) {
        return "under 0.1 %";
    }
    if (percent >= 99.95) {
        return "over 99.9 %";
    }
    const bool has_decimal = percent < 9.95 || percent >= 99.5;
    return decimals_text(percent, has_decimal ? 1 : 0) + " %";
}

std::string measure_text(double number) {
    if (std::isnan(number)) {
        return "-";
    }
    const double size = std::abs(number);
    if (std::isinf(number) || size >= 1e15) {
        std::string text;
        append_shortest(number, text);
        return text;
    }
    if (size >= 999.5) {
        return (number < 0 ? "-" : "") + with_commas(static_cast<std::size_t>(std::llround(size)));
    }
    if (size != 0 && size < 0.001) {
        std::array<char, 32> text = {};
        const int bytes = std::snprintf(text.data(), text.size(), "%.2g", number);
        return {text.data(), static_cast<std::size_t>(bytes)};
    }
    return decimals_text(number, size >= 99.95 ? 0 : size >= 9.995 ? 1 : size >= 1 ? 2 : 3);
}

std::string decimals_text(double number, int decimals) {
    std::array<char, 400> text = {};  // any double
    const int size = std::snprintf(text.data(), text.size(), "%.*f", decimals, number);
    return {text.data(), static_cast<std::size_t>(size)};
}

std::string share_text(double share) {
    constexpr double largest_below_1 = 0.999;
    return decimals_text(share < 1 ? std::min(share, largest_below_1) : share, 3);
}

std::string range_text(const std::string& low, const std::string& high) {
    return low == high ? low : low + " to " + high;
}

std::string count_text(const CountRange& count) {
    return range_text(with_commas(count.low), with_commas(count.high));
}

}  // namespace korv::tools
