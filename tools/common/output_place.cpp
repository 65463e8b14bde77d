#include "common/output_place.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include "base/number_text.h"
#include "common/error.h"

namespace korv::tools {

namespace {

[[noreturn]] void fail(const std::string& path) {
    throw Error(path + ": cannot be created: " + std::strerror(errno));
}

/// A path in two parts: the directory with a slash at its end, and the name in it.
struct Parts {
    std::string directory;
    std::string name;
};

Parts parts_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return {"./", path};
    }
    return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

Descriptor open_directory(const std::string& path) {
    Descriptor directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.is_open() && errno == EACCES) {
        // Files can be made in a directory that cannot be listed.
        directory = Descriptor(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    return directory;
}

bool is_in_proc(int directory) {
    struct statfs status = {};
    return ::fstatfs(directory, &status) == 0 && status.f_type == PROC_SUPER_MAGIC;
}

/// The number of this process's own descriptor to which a name in a directory leads, or nothing.
std::optional<int> own_descriptor(int directory, const std::string& name) {
    struct stat status = {};
    struct stat own = {};
    const bool is_own =
        ::fstat(directory, &status) == 0 && ::stat("/proc/self/fd", &own) == 0 && is_same(status, own);
    return is_own ? parse_number<int>(name) : std::nullopt;
}

/// Throws Error when what is in a directory may have been put there by anyone.
void require_trusted(const std::string& path, int directory, const struct stat& found) {
    struct stat around = {};
    if (::fstat(directory, &around) != 0) {
        fail(path);
    }
    const bool anyone_may_write = (around.st_mode & S_ISVTX) != 0 && (around.st_mode & S_IWOTH) != 0;
    if (anyone_may_write && found.st_uid != ::geteuid() && found.st_uid != around.st_uid) {
        throw Error(path + ": found a " + (S_ISLNK(found.st_mode) ? "symbolic link" : "file") +
                    " of another user in a directory that anyone can write to; expected one of your own");
    }
}

std::string text_of_link(int directory, const std::string& name) {
    std::array<char, PATH_MAX> text = {};
    const ssize_t size = ::readlinkat(directory, name.c_str(), text.data(), text.size());
    return {text.data(), size < 0 ? 0 : static_cast<std::size_t>(size)};
}

OutputPlace place_of_descriptor(const std::string& path, int number) {
    struct stat status = {};
    if (::fstat(number, &status) != 0) {
        throw Error(path + ": cannot be written: " + std::strerror(errno));
    }
    return {number, Descriptor(), "", status};
}

/// A place behind a link of /proc. It leads to something open, whatever the text of the link says.
OutputPlace place_behind_proc(const std::string& path, Descriptor directory, const std::string& name) {
    if (const auto number = own_descriptor(directory.number(), name)) {
        return place_of_descriptor(path, *number);
    }
    struct stat status = {};
    if (::fstatat(directory.number(), name.c_str(), &status, 0) != 0) {
        fail(path);
    }
    if (S_ISREG(status.st_mode)) {
        throw Error(path + ": found a file that another process has open; expected a path of its own");
    }
    return {-1, std::move(directory), name, status};
}

}  // namespace

OutputPlace find_output(const std::string& path) {
    constexpr int most_links = 40;  // the system's own limit
    if (path == "-") {
        return place_of_descriptor("standard output", STDOUT_FILENO);
    }
    std::string rest = path;
    for (int links = 0; links <= most_links; ++links) {
        auto [folder, name] = parts_of(rest);
        Descriptor directory = open_directory(folder);
        if (!directory.is_open()) {
            fail(path);
        }
        if (name.empty() || name == "." || name == "..") {
            errno = rest.empty() ? ENOENT : EISDIR;
            fail(path);
        }
        struct stat status = {};
        if (::fstatat(directory.number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
            if (errno != ENOENT) {
                fail(path);
            }
            return {-1, std::move(directory), name, std::nullopt};
        }
        require_trusted(path, directory.number(), status);
        if (!S_ISLNK(status.st_mode)) {
            return {-1, std::move(directory), name, status};
        }
        if (is_in_proc(directory.number())) {
            return place_behind_proc(path, std::move(directory), name);
        }
        const std::string next = text_of_link(directory.number(), name);
        rest = next.starts_with('/') ? next : folder.append(next);
    }
    errno = ELOOP;
    fail(path);
}

bool is_special(const std::string& path) {
    try {
        return find_output(path).is_special();
    } catch (const Error&) {
        return false;
    }
}

}  // namespace korv::tools
