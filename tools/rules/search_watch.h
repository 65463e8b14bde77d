#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "rules/accounting.h"
#include "rules/exclusion_search.h"
#include "rules/phase.h"
#include "rules/rule_search.h"
#include "rules/statistics.h"

namespace korv::tools {

/// Stands by while rules or exclusions are searched: keeps the statistics of the program up to date, and
/// shows them now and then on standard error.
class SearchWatch {
public:
    /// `is_quiet`: nothing is shown.
    explicit SearchWatch(bool is_quiet);

    /// What search_rules tells. Refers to the watch.
    SearchProgress progress();

    /// What find_exclusions tells. Refers to the watch.
    ExclusionProgress exclusion_progress();

    void begin(Phase phase);

    /// Takes the progress off the terminal.
    void end() { display_.reset(); }

private:
    void derived(const Accounting& accounting, std::size_t done, std::size_t classes);
    void looked_at(ExclusionPhase phase, const ExclusionAccounting& accounting, std::uint64_t done,
                   std::uint64_t all);
    void show();

    std::optional<StatisticsDisplay> display_;
};

}  // namespace korv::tools
