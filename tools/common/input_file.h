#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace korv::tools {

/// The bytes with which files of gzip begin.
inline constexpr std::string_view gzip_mark = "\x1F\x8B";

/// The bytes with which UTF-8 may begin, and which are no text.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

/// A file or standard input as its bytes are. Standard input stays open. All operations throw Error when it
/// cannot be read.
class InputFile {
public:
    /// Opens the file at `path`, or standard input when that is "-".
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// For messages: the path, or "standard input".
    const std::string& name() const { return name_; }

    /// Reads the next `size` bytes, or fewer where the input ends before. Returns how many.
    std::size_t read(char* out, std::size_t size);

    /// Reads `size` bytes of a file from a position on, or fewer where it ends before. Returns how many.
    std::size_t read_at(std::size_t position, char* out, std::size_t size);

    /// Whether it is a file on a disk, whose size is known and which can be read anywhere.
    bool is_regular() const { return S_ISREG(before_.st_mode); }

    /// The size of a file in bytes; 0 where it is not known before the end.
    std::size_t expected_size() const { return is_regular() ? static_cast<std::size_t>(before_.st_size) : 0; }

    /// Throws Error when somebody wrote to the file since it was opened.
    void require_unchanged() const;

private:
    [[noreturn]] void fail() const;

    const std::string name_;
    bool is_file_;
    int descriptor_;
    struct stat before_ = {};
};

}  // namespace korv::tools
