#pragma once

#include <vector>

#include "engine/supports.h"

namespace korv::test {

/// A question for a support: an itemset, and the bounds on it that are known before.
struct SupportQuery {
    Itemset itemset;
    SupportBounds bounds;

    bool operator==(const SupportQuery&) const = default;
};

/// Passes queries on, and keeps them.
class RecordedSupports final : public Supports {
public:
    /// Refers to `supports`.
    explicit RecordedSupports(Supports& supports) : supports_(supports) {}

    Count settle(const Itemset& itemset, SupportBounds& bounds) override {
        queries.push_back({itemset, bounds});
        return supports_.settle(itemset, bounds);
    }

    std::vector<SupportQuery> queries;

private:
    Supports& supports_;
};

}  // namespace korv::test
