#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "rules/rule_writer.h"

namespace korv::tools {

/// Bytes as text of 64 characters: A to Z, a to z, 0 to 9, + and /, four for three bytes, filled up with =
/// at the end, without line ends.
class Base64Text {
public:
    /// `sink` gets the text, piece by piece.
    explicit Base64Text(TextSink sink) : sink_(std::move(sink)) {}

    void add(std::string_view bytes);

    /// Writes what is left. Call this once, last.
    void finish();

private:
    static constexpr std::size_t group = 3;  // bytes that become four characters

    void add_group(std::string_view bytes);
    void pass_on();

    TextSink sink_;
    std::string text_;
    std::string begun_;  ///< less than a group
};

}  // namespace korv::tools
