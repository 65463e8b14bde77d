#include "common/input_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "common/error.h"

namespace korv::tools {

namespace {

/// Calls `read_some(out, size, done)` until `size` bytes are there, or no more come. Returns how many came;
/// less than 0, with errno, when they cannot be read.
template <typename ReadSome>
ssize_t read_all(char* out, std::size_t size, ReadSome read_some) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = read_some(out + done, size - done, done);
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            return -1;
        }
        done += static_cast<std::size_t>(std::max(count, ssize_t{0}));
    }
    return static_cast<ssize_t>(done);
}

}  // namespace

InputFile::InputFile(const std::string& path)
    : name_(path == "-" ? "standard input" : path),
      is_file_(path != "-"),
      descriptor_(is_file_ ? ::open(path.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO) {
    if (descriptor_ < 0 || ::fstat(descriptor_, &before_) != 0) {
        fail();
    }
}

InputFile::~InputFile() {
    if (is_file_ && descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

std::size_t InputFile::read(char* out, std::size_t size) {
    const ssize_t count = read_all(out, size, [this](char* to, std::size_t bytes, std::size_t) {
        return ::read(descriptor_, to, bytes);
    });
    if (count < 0) {
        fail();
    }
    return static_cast<std::size_t>(count);
}

std::size_t InputFile::read_at(std::size_t position, char* out, std::size_t size) {
    const ssize_t count =
        read_all(out, size, [this, position](char* to, std::size_t bytes, std::size_t done) {
            return ::pread(descriptor_, to, bytes, static_cast<off_t>(position + done));
        });
    if (count < 0) {
        fail();
    }
    return static_cast<std::size_t>(count);
}

void InputFile::require_unchanged() const {
    struct stat after = {};
    const bool is_known = expected_size() > 0 && ::fstat(descriptor_, &after) == 0;
    if (is_known && (after.st_size != before_.st_size || after.st_mtim.tv_sec != before_.st_mtim.tv_sec ||
                     after.st_mtim.tv_nsec != before_.st_mtim.tv_nsec)) {
        throw Error(name_ + ": changed while it was read; expected a file that nobody writes to");
    }
}

void InputFile::fail() const {
    throw Error(name_ + ": cannot be read: " + std::strerror(errno));
}

}  // namespace korv::tools
