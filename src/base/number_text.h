#pragma once

#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/itemset.h"

namespace korv {

/// Room for any Count or Item in decimal.
inline constexpr std::size_t most_digits = 10;

/// Writes a number in decimal to `out`, which has room for most_digits. Returns the end of the text.
inline char* write_number(Count number, char* out) {
    return std::to_chars(out, out + most_digits, number).ptr;
}

/// Appends a number in decimal.
void append_number(Count number, std::string& text);

/// Appends the items of an itemset in decimal, with one blank between two of them.
void append_items(const Itemset& itemset, std::string& text);

/// The number that the whole of `text` is, decimal digits (a fraction and an exponent where Number has them)
/// and nothing else. Nothing where `text` is none, or is beyond what a Number can hold.
template <typename Number>
std::optional<Number> parse_number(std::string_view text) {
    Number value = {};
    const char* const end = text.data() + text.size();
    const auto [last, problem] = std::from_chars(text.data(), end, value);
    return problem == std::errc() && last == end ? std::optional(value) : std::nullopt;
}

}  // namespace korv
