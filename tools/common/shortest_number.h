#pragma once

#include <cstdint>
#include <string>

namespace korv::tools {

/// Appends a number as the shortest text that reads back equal, an infinite one as "inf" or "-inf". 0 has no
/// sign.
void append_shortest(double number, std::string& text);
void append_shortest(std::uint64_t number, std::string& text);

}  // namespace korv::tools
