#pragma once

#include <string>

namespace korv::tools {

/// The whole text of an input.
struct TextInput {
    std::string name;  ///< for messages: the path, or "standard input"
    std::string text;
};

/// Reads the file at `path`, or standard input when that is "-". What begins with the two bytes of gzip is
/// decompressed, under whatever name. A UTF-8 byte-order mark at the beginning is left out. The text is in
/// memory once, plus at most 64 MiB. Throws Error when the input cannot be read, when it is damaged gzip,
/// when it begins as UTF-16, spreadsheets or other compressed files do, and when a file changes while it is
/// read.
TextInput read_text(const std::string& path);

}  // namespace korv::tools
