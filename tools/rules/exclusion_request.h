#pragma once

#include <cstddef>
#include <optional>

namespace korv::tools {

/// Which exclusions are wanted, besides what holds for rules, too: minimum support, items, and how many.
struct ExclusionRequest {
    /// How likely at most it may be that chance alone gives any of the pairs that are kept; the same for
    /// triples. 1 keeps all that are together less often than by chance.
    double alpha = 0.05;
    /// 2 or 3. Nothing: 3 unless that would take more than seconds.
    std::optional<std::size_t> max_items;
};

}  // namespace korv::tools
