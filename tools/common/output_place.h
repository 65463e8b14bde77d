#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "common/descriptor.h"

namespace korv::tools {

/// Where the path of an output leads.
struct OutputPlace {
    /// The number of the descriptor that is already open, when the path leads to one of this process; else
    /// negative.
    int open_descriptor = -1;
    Descriptor directory;               ///< of the file, behind symbolic links; closed for an open descriptor
    std::string name;                   ///< of the file in this directory
    std::optional<struct stat> status;  ///< of what is there; nothing where a file is yet to be made

    /// Whether it is written to as it is, rather than replaced: an open descriptor, a device or a pipe.
    bool is_special() const { return open_descriptor >= 0 || (status && !S_ISREG(status->st_mode)); }
};

/// Finds the place of an output. "-" stands for standard output; /dev/stdout, /dev/fd/N and the like lead to
/// open descriptors.
///
/// Symbolic links are followed. In a sticky directory that anyone can write to, such as /tmp, nothing is
/// followed, written to or replaced that belongs neither to the user nor to the owner of the directory:
/// anyone may have put it there. (Linux has the same rule for links that it follows itself.)
///
/// Throws Error when the path leads nowhere, to a directory, or to what this rule forbids.
OutputPlace find_output(const std::string& path);

/// Whether the path of an output leads to an open descriptor, a device or a pipe. False for a path that is
/// wrong.
bool is_special(const std::string& path);

}  // namespace korv::tools
