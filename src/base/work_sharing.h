#pragma once

#include <cstddef>
#include <functional>

namespace korv {

/// How work on a sequence is done in parts that do not depend on each other: stretches of the sequence. By
/// itself it is all one part. A caller with threads makes more of it, and lets them share these.
struct WorkSharing {
    using DoPart = std::function<void(std::size_t part)>;

    /// How many parts to make of some work, at least 1.
    std::size_t parts = 1;

    /// Calls `do_part` with 0 to `parts` - 1, once each, in any order and from any thread, and returns when
    /// that is done.
    std::function<void(std::size_t parts, const DoPart& do_part)> run = [](std::size_t all,
                                                                           const DoPart& do_part) {
        for (std::size_t part = 0; part < all; ++part) {
            do_part(part);
        }
    };

    /// The first position of a part, or the end of the last one, in a sequence of `size` positions.
    std::size_t begin(std::size_t part, std::size_t size) const { return size * part / parts; }
};

}  // namespace korv
