#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace korv::tools {

/// Writes up to `size` bytes to `out`, and fewer only at the end of the input. Returns how many.
using ReadBytes = std::function<std::size_t(char* out, std::size_t size)>;

/// Decompresses gzip, one member or several one after the other: `beginning` (at least one byte), and then
/// what `read` gives. `name` is that of the input, for messages. The compressed bytes are never all in
/// memory. Throws Error when the input is damaged or ends too early, and where the program was built without
/// zlib.
std::string gunzip(const ReadBytes& read, std::string_view beginning, const std::string& name);

}  // namespace korv::tools
