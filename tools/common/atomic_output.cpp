#include "atomic_output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "error.h"

namespace korv::tools {

namespace {

constexpr std::size_t buffer_bytes = std::size_t{1} << 18;

/// The names of temporary files, for the signal handler: it may follow nothing but such plain pointers.
std::array<std::atomic<const char*>, 8> names_to_remove = {};

void remember(const char* name) {
    for (auto& slot : names_to_remove) {
        const char* expected = nullptr;
        if (slot.compare_exchange_strong(expected, name)) {
            return;
        }
    }
}

void forget(const char* name) {
    for (auto& slot : names_to_remove) {
        const char* expected = name;
        slot.compare_exchange_strong(expected, nullptr);
    }
}

extern "C" void remove_and_end(int signal) {
    for (const auto& slot : names_to_remove) {
        if (const char* const name = slot.load()) {
            ::unlink(name);
        }
    }
    // Ends as if there were no handler, so that a shell sees which signal it was.
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// Whether there is something at `path` that a file must not replace: a device or a pipe.
bool is_special(const std::string& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

/// The rights that a new file gets.
mode_t rights_of_a_new_file() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

AtomicOutput::AtomicOutput(std::string path) : path_(std::move(path)) {
    buffer_.reserve(buffer_bytes);
    if (path_ == "-") {
        path_ = "standard output";
        return;
    }
    if (is_special(path_)) {
        descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    } else {
        temporary_ = path_ + ".XXXXXX";
        descriptor_ = ::mkostemp(temporary_.data(), O_CLOEXEC);
    }
    if (descriptor_ < 0) {
        fail("cannot be created");
    }
    if (temporary_.empty()) {
        return;
    }
    remember(temporary_.c_str());
    // A temporary file is for its owner alone.
    ::fchmod(descriptor_, rights_of_a_new_file());
}

AtomicOutput::~AtomicOutput() {
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
        forget(temporary_.c_str());
    }
    if (descriptor_ != standard_output) {
        ::close(descriptor_);
    }
}

void AtomicOutput::write(std::string_view text) {
    buffer_ += text;
    if (buffer_.size() >= buffer_bytes) {
        flush();
    }
}

void AtomicOutput::commit() {
    flush();
    if (temporary_.empty()) {
        return;
    }
    // Some file systems tell only now that the disk is full.
    if (::fsync(descriptor_) != 0 && errno != EINVAL) {
        fail("cannot be written");
    }
    if (::rename(temporary_.c_str(), path_.c_str()) != 0) {
        fail("cannot be given its name");
    }
    forget(temporary_.c_str());
    temporary_.clear();
}

void AtomicOutput::flush() {
    for (std::string_view rest = buffer_; !rest.empty();) {
        const ssize_t written = ::write(descriptor_, rest.data(), rest.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            fail("cannot be written");
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    buffer_.clear();
}

void AtomicOutput::fail(std::string_view what) const {
    std::string message = path_;
    message.append(": ").append(what).append(": ").append(std::strerror(errno));
    throw Error(message);
}

void remove_outputs_on_signals() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        std::signal(signal, remove_and_end);
    }
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace korv::tools
