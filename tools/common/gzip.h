#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace korv::tools {

/// Writes up to `size` bytes to `out`, and fewer only at the end of the input. Returns how many.
using ReadBytes = std::function<std::size_t(char* out, std::size_t size)>;

/// The text of a gzip file, from its beginning to its end: one member or several one after the other. Neither
/// the compressed bytes nor the text are ever all in memory.
class Gunzip {
public:
    /// `beginning` (at least one byte), and then what `read` gives, is decompressed. `name` is that of the
    /// input, for messages. Throws Error where the program was built without zlib.
    Gunzip(ReadBytes read, std::string_view beginning, std::string name);
    ~Gunzip();
    Gunzip(const Gunzip&) = delete;
    Gunzip& operator=(const Gunzip&) = delete;

    /// Writes the next bytes of the text to `out`, at most `size`. Returns how many there were: 0 at the end.
    /// Throws Error when the input is damaged or ends too early.
    std::size_t text(char* out, std::size_t size);

private:
    class State;
    std::unique_ptr<State> state_;
};

/// The whole text of a gzip file. Throws Error as Gunzip does.
std::string gunzip(const ReadBytes& read, std::string_view beginning, const std::string& name);

}  // namespace korv::tools
