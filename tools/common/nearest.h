#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korv::tools {

/// Of `known`, at most `most` words like `word`, for the message about a word that nobody knows: the closest
/// first, equally close ones in their order: first of all those that differ in case alone, then those from
/// which the fewest bytes must be inserted, removed or replaced. Neither case (of ASCII letters) nor what
/// follows the first 64 bytes matters. O(words * length^2).
std::vector<std::string> nearest(std::string_view word, std::span<const std::string> known, std::size_t most);

/// Of `known`, the words that are `word` in other letter case (ASCII), in their order.
std::vector<std::string> equal_but_for_case(std::string_view word, std::span<const std::string> known);

/// Words for a message: each as shown() has it, with ", " between two of them.
std::string all_shown(std::span<const std::string> words);

}  // namespace korv::tools
