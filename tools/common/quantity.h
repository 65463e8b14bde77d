#pragma once

#include <cstddef>
#include <string>

namespace korv::tools {

/// A number with a comma before each three digits: "1,200,000".
std::string with_commas(std::size_t number);

/// A number of bytes with a fitting unit, powers of 1000: "812 bytes", "1.8 kB", "67.6 MB".
std::string size_text(std::size_t bytes);

/// A number of seconds with two decimals: "1.23 s".
std::string seconds_text(double seconds);

/// The peak memory of this process until now, in MiB.
std::size_t peak_memory();

}  // namespace korv::tools
