#include "common/directory_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <map>
#include <thread>
#include <utility>

namespace korv::tools {

namespace {

/// Whether the directory is locked now.
bool lock(int directory) {
    constexpr std::chrono::milliseconds pause(1);
    constexpr int most_tries = 10'000;
    for (int tries = 0; tries < most_tries; ++tries) {
        if (::flock(directory, LOCK_EX | LOCK_NB) == 0) {
            return true;
        }
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return false;
}

}  // namespace

DirectoryLock::DirectoryLock(const std::vector<int>& directories) {
    // Each directory once, and in the same order in all programs, so that no two wait for each other.
    std::map<std::pair<dev_t, ino_t>, int> in_order;
    for (const int directory : directories) {
        struct stat status = {};
        if (::fstat(directory, &status) == 0) {
            in_order.emplace(std::pair(status.st_dev, status.st_ino), directory);
        }
    }
    for (const auto& [key, directory] : in_order) {
        // A descriptor of its own: the lock ends when it is closed.
        Descriptor own(::openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (own.is_open() && lock(own.number())) {
            locked_.push_back(std::move(own));
        }
    }
}

}  // namespace korv::tools
