#pragma once

#include <vector>

#include "common/descriptor.h"

namespace korv::tools {

/// Keeps other programs that lock the same directories out of them while it exists. The lock is the system's
/// own on the directory (flock): there is no lock file, and a program that is killed leaves no lock.
///
/// Waits for up to ten seconds for each directory that another program has locked. Does without the lock
/// after that, since it is only ever held for a moment by those who mean well, and where the file system has
/// none.
class DirectoryLock {
public:
    /// `directories`: descriptors that must outlive the lock. Some may be of the same directory.
    explicit DirectoryLock(const std::vector<int>& directories);

private:
    std::vector<Descriptor> locked_;
};

}  // namespace korv::tools
