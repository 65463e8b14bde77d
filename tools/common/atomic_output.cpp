#include "common/atomic_output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <utility>

#include "common/error.h"

namespace korv::tools {

namespace fs = std::filesystem;

namespace {

constexpr std::array ending_signals = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

constexpr std::size_t buffer_bytes = std::size_t{1} << 18;

/// The names of temporary files. These are plain atomic pointers, since the signal handler reads them.
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
    // The program ends as if there were no handler, so that a shell sees which signal it was.
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// Holds back the signals that end the program for as long as it exists.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t signals;
        ::sigemptyset(&signals);
        for (const int signal : ending_signals) {
            ::sigaddset(&signals, signal);
        }
        ::sigprocmask(SIG_BLOCK, &signals, &before_);
    }
    ~SignalsBlocked() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_ = {};
};

/// What a path leads to, through symbolic links; nothing when it leads nowhere.
std::optional<struct stat> status_of(const std::string& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

/// The path to which symbolic links lead, whether or not there is a file.
std::string behind_links(const std::string& path) {
    constexpr int most_links = 40;  // the system's own limit
    fs::path target = path;
    for (int i = 0; i < most_links && fs::is_symlink(fs::symlink_status(target)); ++i) {
        target = target.parent_path() / fs::read_symlink(target);
    }
    return target.string();
}

/// The permissions for a file at `path`: those of the file that it replaces, or those of any new file.
mode_t rights_at(const std::string& path) {
    if (const auto status = status_of(path)) {
        return status->st_mode & 0777;
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

bool is_special(const std::string& path) {
    const auto status = status_of(path);
    return (status && !S_ISREG(status->st_mode)) || path.starts_with("/dev/") || path.starts_with("/proc/");
}

AtomicOutput::AtomicOutput(std::string path) : path_(std::move(path)) {
    buffer_.reserve(buffer_bytes);
    if (path_ == "-") {
        path_ = "standard output";
        return;
    }
    target_ = behind_links(path_);
    if (is_special(path_)) {
        descriptor_ = ::open(path_.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    } else {
        create_temporary();
    }
    if (descriptor_ < 0) {
        fail("cannot be created");
    }
    if (temporary_.empty()) {
        return;
    }
    // Until now, the temporary file is readable by its owner only.
    ::fchmod(descriptor_, rights_at(target_));
}

void AtomicOutput::create_temporary() {
    temporary_ = target_ + ".XXXXXX";
    const SignalsBlocked blocked;  // until their handler knows the name of the file
    descriptor_ = ::mkostemp(temporary_.data(), O_CLOEXEC);
    if (descriptor_ >= 0) {
        remember(temporary_.c_str());
    }
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

void AtomicOutput::finish() {
    flush();
    // Some file systems report only now that the disk is full.
    if (!temporary_.empty() && ::fsync(descriptor_) != 0) {
        fail("cannot be written");
    }
}

void AtomicOutput::commit() {
    finish();
    if (temporary_.empty()) {
        return;
    }
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
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

bool is_same_file(const std::string& one, const std::string& other) {
    if (one == "-" || other == "-") {
        return one == other;
    }
    if (is_special(one) || is_special(other)) {
        return false;
    }
    const auto whole_path = [](const std::string& path) {
        return fs::weakly_canonical(fs::absolute(behind_links(path)));
    };
    std::error_code ignored;
    return fs::equivalent(one, other, ignored) || whole_path(one) == whole_path(other);
}

void remove_outputs_on_signals() {
    for (const int signal : ending_signals) {
        // A signal that is ignored stays ignored: nohup relies on it.
        struct sigaction action = {};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            std::signal(signal, remove_and_end);
        }
    }
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace korv::tools
