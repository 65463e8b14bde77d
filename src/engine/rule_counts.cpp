#include "engine/rule_counts.h"

namespace korv {

namespace {

constexpr std::size_t column(Kind kind) {
    return static_cast<std::size_t>(kind);
}

/// The run total of each kind, by column.
constexpr std::array<Count RuleCounts::*, all_kinds.size()> run_totals = {
    &RuleCounts::exact_total, &RuleCounts::appro_total, &RuleCounts::apped_total};

}  // namespace

void RuleCounts::add(Form form, Kind kind) {
    ++counters[counter_row(form)][column(kind)];
    ++(this->*run_totals[column(kind)]);
}

Count RuleCounts::count(Form form, Kind kind) const {
    return counters[counter_row(form)][column(kind)];
}

Count RuleCounts::column_sum(Kind kind) const {
    Count sum = 0;
    for (const auto& row : counters) {
        sum += row[column(kind)];
    }
    return sum;
}

Count RuleCounts::total(Kind kind) const {
    return this->*run_totals[column(kind)];
}

}  // namespace korv
