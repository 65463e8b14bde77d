#pragma once

#include "base/itemset.h"

namespace korv {

/// Bounds on the support of an itemset or of a rule, in transactions. Equal ones may be no more than bounds
/// that met: whether the support is known stands elsewhere.
struct SupportBounds {
    Count lower = 0;
    Count upper = 0;

    bool operator==(const SupportBounds&) const = default;
};

}  // namespace korv
