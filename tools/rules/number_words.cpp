#include "rules/number_words.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "common/quantity.h"
#include "common/shortest_number.h"

namespace korv::tools {

namespace {

/// The text that printf would make of a number; several times as fast.
template <std::size_t most_bytes>
std::string formatted(double number, std::chars_format format, int precision) {
    std::array<char, most_bytes> text;
    char* const end = std::to_chars(text.data(), text.data() + text.size(), number, format, precision).ptr;
    return {text.data(), end};
}

/// A number with two significant digits: "0.00012", "1.2e-05".
std::string two_digits_text(double number) {
    return formatted<32>(number, std::chars_format::general, 2);
}

}  // namespace

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
        return two_digits_text(number);
    }
    return distinct_text(number, size >= 99.95 ? 0 : size >= 9.995 ? 1 : size >= 1 ? 2 : 3);
}

std::string decimals_text(double number, int decimals) {
    return formatted<400>(number, std::chars_format::fixed, decimals);  // room for any double
}

std::string distinct_text(double number, int decimals) {
    const double size = std::abs(number);
    const std::string sign = number < 0 ? "-" : "";
    const std::string text = decimals_text(size, decimals);
    if (size != 0 && text == decimals_text(0, decimals)) {
        return two_digits_text(number);
    }
    if (size == 1 || text != decimals_text(1, decimals)) {
        return sign + text;
    }
    const double step = std::pow(10, -decimals);
    const bool is_above = number > (number < 0 ? -1 : 1);
    return (is_above ? "<" : ">") + sign + decimals_text(size > 1 ? 1 + step : 1 - step, decimals);
}

std::string range_text(const std::string& low, const std::string& high) {
    return low == high ? low : low + " to " + high;
}

std::string count_text(const CountRange& count) {
    return range_text(with_commas(count.low), with_commas(count.high));
}

std::string holdout_text(const HoldoutCounts& holdout) {
    return with_commas(holdout.counts.both) + " of " + with_commas(holdout.counts.premise);
}

}  // namespace korv::tools
