#pragma once

#include <array>

#include "base/itemset.h"
#include "engine/rule.h"
#include "engine/rule_catalogue.h"

namespace korv {

/// What was written, counted twice: by form and kind, and by kind alone. The two are kept separately and both
/// reported; neither is derived from the other.
struct RuleCounts {
    /// Rules by counter row (see counter_row) and kind.
    std::array<std::array<Count, all_kinds.size()>, rule_catalogue.size()> counters{};

    Count exact_total = 0;
    Count appro_total = 0;
    Count apped_total = 0;

    /// Counts one rule of `kind` under `form`, and in the total of its kind.
    void add(Form form, Kind kind);

    /// The counter of a form and kind.
    Count count(Form form, Kind kind) const;

    /// The sum of a kind's counters over all forms.
    Count column_sum(Kind kind) const;

    /// The run total of a kind: exact_total, appro_total or apped_total.
    Count total(Kind kind) const;
};

/// Counts rules on their way to another sink.
class CountedRules final : public RuleSink {
public:
    /// Refers to both.
    CountedRules(RuleCounts& counts, RuleSink& next) : counts_(counts), next_(next) {}

    void begin(const Pair& pair) override { next_.begin(pair); }
    void add(const Rule& rule) override {
        counts_.add(rule.counted_as, rule.kind);
        next_.add(rule);
    }

private:
    RuleCounts& counts_;
    RuleSink& next_;
};

}  // namespace korv
