#include "rules/rule_filter.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "rules/confidence.h"

namespace korv::tools {

namespace {

/// A limit of which 0 means that there is none.
std::size_t limit(std::size_t given) {
    return given == 0 ? std::numeric_limits<std::size_t>::max() : given;
}

}  // namespace

RuleFilter::RuleFilter(const RuleRequest& request, Count min_support, Count transactions, ItemChoice choice,
                       Where where, std::optional<SignificanceTest> test)
    : min_support_(min_support),
      min_confidence_(request.min_confidence),
      min_lift_(request.min_lift),
      transactions_(transactions),
      max_items_(limit(request.max_items)),
      max_premise_items_(limit(request.max_premise_items)),
      max_conclusion_items_(limit(request.max_conclusion_items)),
      choice_(std::move(choice)),
      where_(std::move(where)),
      test_(std::move(test)) {
    has_form_.fill(request.forms.empty());
    for (const Form form : request.forms) {
        has_form_[static_cast<std::size_t>(form)] = true;
    }
    has_kind_.fill(request.kinds.empty());
    for (const Certainty kind : request.kinds) {
        has_kind_[static_cast<std::size_t>(kind)] = true;
    }
}

bool RuleFilter::reaches_thresholds(const Contingency& at_low, const Contingency& at_high) const {
    // A confidence of 0/0 is below every minimum.
    const auto reaches = [this](const Contingency& table) {
        return table.both >= min_support_ && Confidence(table).value() >= min_confidence_;
    };
    return reaches(at_low) && reaches(at_high);
}

bool RuleFilter::is_above_chance(const Contingency& table) const {
    const std::uint64_t seen = std::uint64_t{table.both} * transactions_;
    const std::uint64_t expected = std::uint64_t{table.premise} * table.conclusion;
    if (!min_lift_) {
        return seen > expected;
    }
    return *min_lift_ == 0 || static_cast<double>(seen) / static_cast<double>(expected) >= *min_lift_;
}

std::optional<Step> RuleFilter::refused_by_counts(Form form, const Contingency& at_low,
                                                  const Contingency& at_high) const {
    // The lift is smallest at one of the ends.
    if (!is_above_chance(at_low) || !is_above_chance(at_high)) {
        return Step::chance;
    }
    if (!has_form_[static_cast<std::size_t>(form)]) {
        return Step::forms;
    }
    if (!has_kind_[static_cast<std::size_t>(certainty(at_low, at_high))]) {
        return Step::kinds;
    }
    return std::nullopt;
}

std::optional<Step> RuleFilter::refused_by_sides(const WordedSide& premise, const WordedSide& conclusion,
                                                 const ColumnFacts& columns) const {
    if (!choice_.is_of_all() &&
        !choice_.holds(columns.named_items(premise), columns.named_items(conclusion))) {
        return Step::items;
    }
    const bool is_too_large = premise.items.size() + conclusion.items.size() > max_items_ ||
                              premise.items.size() > max_premise_items_ ||
                              conclusion.items.size() > max_conclusion_items_;
    return is_too_large ? std::optional(Step::size) : std::nullopt;
}

std::optional<Step> RuleFilter::refused_at_last(const FoundRule& rule, const WordedSide& premise,
                                                const WordedSide& conclusion) const {
    const std::size_t items = premise.items.size() + conclusion.items.size();
    if (!where_.holds(rule, items, transactions_)) {
        return Step::where;
    }
    if (!test_) {
        return std::nullopt;
    }
    if (!test_->is_open_to(premise, conclusion)) {
        return Step::one_column;
    }
    return test_->passes(rule, items) ? std::nullopt : std::optional(Step::insignificant);
}

}  // namespace korv::tools
