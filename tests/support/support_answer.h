#pragma once

#include <ostream>

#include "base/itemset.h"

namespace korv::test {

/// What a query for a disjunctive support returns, and the bounds that it leaves.
struct SupportAnswer {
    Count support;
    Count lower;
    Count upper;

    bool operator==(const SupportAnswer&) const = default;

    friend std::ostream& operator<<(std::ostream& out, const SupportAnswer& answer) {
        return out << answer.support << ", bounds " << answer.lower << " and " << answer.upper;
    }
};

}  // namespace korv::test
