#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "common/error.h"

namespace korv::tools {

/// The text of an input, or whole lines of it.
struct TextInput {
    std::string name;  ///< for messages: the path, or "standard input"
    std::string text;
    bool is_compressed = false;        ///< whether it was decompressed
    bool has_byte_order_mark = false;  ///< whether the text had one at its beginning, which is left out
    /// Counts the lines that are before the text in the input. Null where the text begins with the input.
    std::function<std::size_t()> lines_before = {};
};

/// The place in the input of a byte of its text, for an error: O(position), and what lines_before costs.
Place place_of(const TextInput& input, std::size_t position);

/// An input that is read from its beginning to its end, a piece at a time.
///
/// What begins with the two bytes of gzip is decompressed, under whatever name, and a UTF-8 byte-order mark
/// at the beginning is left out. All operations throw Error when the input cannot be read, when it is damaged
/// gzip, and when a file changes while it is read, which its end shows.
class TextStream {
public:
    /// Opens the file at `path`, or standard input when that is "-", and reads its beginning. Throws Error,
    /// too, when it begins as UTF-16, spreadsheets or other compressed files do.
    explicit TextStream(const std::string& path);
    TextStream(TextStream&&) noexcept;
    TextStream& operator=(TextStream&&) noexcept;
    ~TextStream();

    /// For messages: the path, or "standard input".
    const std::string& name() const;
    bool is_compressed() const;
    bool has_byte_order_mark() const;

    /// The first bytes, at most 64 KiB, or the whole text where it is shorter. Call this before `read`.
    std::string_view beginning() const;

    /// Writes the next bytes to `out`, at most `size`. Returns how many: fewer only at the end.
    std::size_t read(char* out, std::size_t size);

    /// All that is left. It is in memory once, plus at most 64 MiB. Nothing is left here.
    std::string rest();

private:
    class Source;
    std::unique_ptr<Source> source_;
};

/// Reads the file at `path`, or standard input when that is "-". What begins with the two bytes of gzip is
/// decompressed, under whatever name. A UTF-8 byte-order mark at the beginning is left out. The text is in
/// memory once, plus at most 64 MiB. Throws Error when the input cannot be read, when it is damaged gzip,
/// when it begins as UTF-16, spreadsheets or other compressed files do, and when a file changes while it is
/// read.
TextInput read_text(const std::string& path);

}  // namespace korv::tools
