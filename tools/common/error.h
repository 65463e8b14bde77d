#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace korv::tools {

/// An error of a companion program, in words for the person who runs it. `main` prints it on standard error
/// and ends with a status that is not 0.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A place in a text file, for messages.
struct Place {
    std::size_t line;    ///< from 1
    std::size_t column;  ///< bytes from 1
};

/// An error in an input file: "FILE:LINE:COLUMN: found FOUND; expected EXPECTED".
Error input_error(std::string_view file, Place place, std::string_view found, std::string_view expected);

/// The place of a byte in a text, for an error: O(position).
Place place_of(std::string_view text, std::size_t position);

/// A piece of input as a message can show it: in double quotes, cut off after 40 bytes, with control
/// characters as \xHH.
std::string shown(std::string_view text);

}  // namespace korv::tools
