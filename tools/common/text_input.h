#pragma once

#include <string>

namespace korv::tools {

/// The whole text of an input.
struct TextInput {
    std::string name;  ///< for messages: the path, or "standard input"
    std::string text;
};

/// Reads the file at `path`, or standard input when that is "-". A UTF-8 byte-order mark at the beginning is
/// left out. Throws Error when the input cannot be read.
TextInput read_text(const std::string& path);

}  // namespace korv::tools
