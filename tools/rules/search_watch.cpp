#include "rules/search_watch.h"

#include <unistd.h>

#include <iostream>

namespace korv::tools {

SearchWatch::SearchWatch(bool is_quiet) {
    if (!is_quiet) {
        display_.emplace(std::cerr, ::isatty(STDERR_FILENO) != 0);
    }
}

SearchProgress SearchWatch::progress() {
    return {[this](Phase phase) { begin(phase); },
            [this](const Accounting& accounting, std::size_t done, std::size_t classes) {
                derived(accounting, done, classes);
            }};
}

ExclusionProgress SearchWatch::exclusion_progress() {
    return [this](ExclusionPhase phase, const ExclusionAccounting& accounting, std::uint64_t done,
                  std::uint64_t all) { looked_at(phase, accounting, done, all); };
}

void SearchWatch::begin(Phase phase) {
    statistics().phase = phase;
    show();
}

void SearchWatch::derived(const Accounting& accounting, std::size_t done, std::size_t classes) {
    statistics().pairs = accounting.pairs;
    statistics().expected_pairs = accounting.pairs * classes / done;
    statistics().derived = accounting.derived;
    statistics().kept = accounting.left();
    show();
}

void SearchWatch::looked_at(ExclusionPhase phase, const ExclusionAccounting& accounting, std::uint64_t done,
                            std::uint64_t all) {
    statistics().phase = phase == ExclusionPhase::pairs ? Phase::counting_pairs : Phase::counting_triples;
    statistics().pairs = done;
    statistics().expected_pairs = all;
    statistics().kept = accounting.kept;
    show();
}

void SearchWatch::show() {
    if (display_) {
        display_->show();
    }
}

}  // namespace korv::tools
