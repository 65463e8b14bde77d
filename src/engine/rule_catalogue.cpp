#include "engine/rule_catalogue.h"

namespace korv {

namespace {

/// The table is read by position, and every counter row belongs to one form.
consteval bool catalogue_is_consistent() {
    std::array<bool, rule_catalogue.size()> taken{};
    for (std::size_t i = 0; i < rule_catalogue.size(); ++i) {
        const FormDescription& description = rule_catalogue[i];
        if (description.form != Form{i} || taken[description.counter_row]) {
            return false;
        }
        taken[description.counter_row] = true;
    }
    return true;
}
static_assert(catalogue_is_consistent());

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
