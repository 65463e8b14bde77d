#include "common/atomic_output.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

#include "common/directory_lock.h"
#include "common/error.h"

namespace korv::tools {

namespace {

constexpr std::size_t buffer_bytes = std::size_t{1} << 18;

constexpr mode_t anyone_may_write = 0222;

/// The permissions of a file whose group is not that of the file that it replaces: its group gets no more
/// than all others have.
mode_t for_another_group(mode_t rights) {
    return (rights & 0707U) | (rights & (rights << 3U) & 0070U);
}

/// Whether only its owner may replace a file of another user, as in /tmp.
bool is_owners_to_replace(int directory, const struct stat& file) {
    struct stat around = {};
    const uid_t user = ::geteuid();
    return ::fstat(directory, &around) == 0 && (around.st_mode & S_ISVTX) != 0 && user != 0 &&
           user != file.st_uid && user != around.st_uid;
}

/// Says why a file cannot or must not be replaced; empty when it can be. Otherwise, only the last step would
/// fail, when all the work is done.
std::string_view why_not_replaced(int directory, const std::string& name, const struct stat& file) {
    struct statx more = {};
    ::statx(directory, name.c_str(), AT_SYMLINK_NOFOLLOW, 0, &more);
    // Containers mount files of their host.
    if ((more.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0) {
        return "is a mount point, which cannot be replaced";
    }
    const bool only_grows = (more.stx_attributes & STATX_ATTR_APPEND) != 0;
    if (only_grows || (file.st_mode & anyone_may_write) == 0 ||
        ::faccessat(directory, name.c_str(), W_OK, AT_EACCESS) != 0) {
        return "is write-protected, and is not replaced";
    }
    return is_owners_to_replace(directory, file) ? "belongs to another user, who alone may replace it here"
                                                 : "";
}

}  // namespace

AtomicOutput::AtomicOutput(const std::string& path)
    : name_(path == "-" ? "standard output" : path), place_(find_output(path)) {
    buffer_.reserve(buffer_bytes);
    if (!place_.is_special()) {
        create_temporary();
        return;
    }
    if (place_.open_descriptor < 0) {
        direct_ = Descriptor(
            ::openat(place_.directory.number(), place_.name.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
        if (!direct_.is_open()) {
            fail("cannot be created");
        }
        return;
    }
    direct_ = Descriptor(::fcntl(place_.open_descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!direct_.is_open()) {
        fail("cannot be written");
    }
    if ((::fcntl(direct_.number(), F_GETFL) & O_ACCMODE) == O_RDONLY) {
        throw Error(name_ + ": is closed or not open for writing");
    }
}

void AtomicOutput::create_temporary() {
    const int directory = place_.directory.number();
    if (place_.status) {
        const std::string_view reason = why_not_replaced(directory, place_.name, *place_.status);
        if (!reason.empty()) {
            throw Error(name_ + ": " + std::string(reason));
        }
    }
    temporary_.emplace(directory, place_.status ? 0600 : 0666);
    if (!temporary_->is_open()) {
        fail("cannot be created");
    }
    if (place_.status) {
        keep_rights(*place_.status);
    }
}

void AtomicOutput::keep_rights(const struct stat& earlier) const {
    const int descriptor = temporary_->descriptor();
    const bool has_group = ::fchown(descriptor, earlier.st_uid, earlier.st_gid) == 0 ||
                           ::fchown(descriptor, static_cast<uid_t>(-1), earlier.st_gid) == 0;
    const mode_t rights = earlier.st_mode & 0777U;
    ::fchmod(descriptor, has_group ? rights : for_another_group(rights));
}

void AtomicOutput::write(std::string_view text) {
    buffer_ += text;
    if (buffer_.size() >= buffer_bytes) {
        flush();
    }
}

std::string AtomicOutput::temporary_path() const {
    // The path that the user gave may lead elsewhere by now: it may be relative, or go through links.
    return temporary_
               ? "/proc/self/fd/" + std::to_string(place_.directory.number()) + '/' + temporary_->name()
               : "";
}

void AtomicOutput::finish() {
    flush();
    // Some file systems report only now that the disk is full.
    if (temporary_ && ::fsync(temporary_->descriptor()) != 0) {
        fail("cannot be written");
    }
}

void AtomicOutput::commit() {
    commit_together({this});
}

void AtomicOutput::commit_together(const std::vector<AtomicOutput*>& outputs) {
    std::vector<int> directories;
    for (AtomicOutput* const output : outputs) {
        output->finish();
        if (output->temporary_) {
            directories.push_back(output->place_.directory.number());
        }
    }
    const DirectoryLock lock(directories);
    const SignalsBlocked blocked;
    std::size_t placed = 0;
    try {
        for (; placed < outputs.size(); ++placed) {
            outputs[placed]->place();
        }
    } catch (...) {
        while (placed > 0) {
            outputs[--placed]->take_back();
        }
        throw;
    }
    for (AtomicOutput* const output : outputs) {
        output->settle();
    }
}

/// Gives the file its name, and keeps what had it under a hidden one. A file system without links is no
/// reason to fail: there, no more than taking back is lost.
void AtomicOutput::place() {
    if (!temporary_) {
        return;
    }
    const int directory = place_.directory.number();
    earlier_ = hidden_link(directory, place_.name.c_str());
    is_new_ = !earlier_ && errno == ENOENT;
    if (temporary_->rename_to(place_.name.c_str())) {
        return;
    }
    const int error = errno;
    settle();
    errno = error;
    fail("cannot be given its name");
}

/// Undoes place().
void AtomicOutput::take_back() {
    if (!temporary_) {
        return;
    }
    const int directory = place_.directory.number();
    if (earlier_) {
        ::renameat(directory, earlier_->data(), directory, place_.name.c_str());
        earlier_.reset();
    } else if (is_new_) {
        ::unlinkat(directory, place_.name.c_str(), 0);
    }
}

/// Makes place() final.
void AtomicOutput::settle() {
    if (earlier_) {
        ::unlinkat(place_.directory.number(), earlier_->data(), 0);
        earlier_.reset();
    }
    if (temporary_) {
        // So that the name survives a crash of the system. It has been given, whether or not this succeeds.
        ::fsync(place_.directory.number());
    }
}

void AtomicOutput::flush() {
    const int descriptor = temporary_ ? temporary_->descriptor() : direct_.number();
    for (std::string_view rest = buffer_; !rest.empty();) {
        const ssize_t written = ::write(descriptor, rest.data(), rest.size());
        if (written < 0 && errno == EAGAIN) {
            wait_until_writable();
            continue;
        }
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

/// Another program may have made a pipe or terminal that it shares with this one not wait.
void AtomicOutput::wait_until_writable() const {
    pollfd polled = {.fd = direct_.number(), .events = POLLOUT, .revents = 0};
    ::poll(&polled, 1, -1);
}

void AtomicOutput::fail(const std::string& what) const {
    const int error = errno;
    const std::string message = name_ + ": " + what + ": " + std::strerror(error);
    if (error == EPIPE) {
        throw BrokenPipe(message);
    }
    throw Error(message);
}

}  // namespace korv::tools
