#include "common/text_input.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "common/error.h"

namespace korv::tools {

namespace {

/// A descriptor that is closed at the end of the scope, unless it is standard input.
class Source {
public:
    explicit Source(const std::string& path)
        : descriptor_(path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~Source() {
        if (descriptor_ > STDIN_FILENO) {
            ::close(descriptor_);
        }
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

[[noreturn]] void fail(const std::string& name) {
    throw Error(name + ": cannot be read: " + std::strerror(errno));
}

}  // namespace

TextInput read_text(const std::string& path) {
    constexpr std::size_t block = std::size_t{1} << 20;
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

    TextInput input = {path == "-" ? "standard input" : path, {}};
    const Source source(path);
    if (source.descriptor() < 0) {
        fail(input.name);
    }
    std::size_t size = 0;
    for (;;) {
        input.text.resize(size + block);
        const ssize_t count = ::read(source.descriptor(), input.text.data() + size, block);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            fail(input.name);
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
    }
    input.text.resize(size);
    if (input.text.starts_with(byte_order_mark)) {
        input.text.erase(0, byte_order_mark.size());
    }
    return input;
}

}  // namespace korv::tools
