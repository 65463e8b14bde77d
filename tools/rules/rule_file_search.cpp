#include "rules/rule_file_search.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <set>
#include <span>
#include <unordered_set>
#include <utility>

#include "common/error.h"
#include "mine/threshold.h"
#include "rules/association_merge.h"
#include "rules/distinct_rules.h"
#include "rules/pruning.h"
#include "rules/recorded_counts.h"
#include "rules/rule_counter.h"
#include "rules/rule_file.h"
#include "rules/rule_file_request.h"
#include "rules/rule_filter.h"
#include "rules/rule_order.h"
#include "rules/selection.h"

namespace korv::tools {

namespace {

/// The reader of an open file.
RuleFileReader reader_of(TextStream& text) {
    return {[&text](char* out, std::size_t size) { return text.read(out, size); }, text.name()};
}

/// Calls `take` with the reader of a file after each record.
template <typename Take>
void for_each_record_of(TextStream text, const Take& take) {
    for (RuleFileReader reader = reader_of(text); reader.next();) {
        take(reader);
    }
}

/// The same for all files.
template <typename Take>
void for_each_record(TextStream first, std::span<const std::string> paths, const Take& take) {
    for_each_record_of(std::move(first), take);
    for (const std::string& path : paths.subspan(1)) {
        for_each_record_of(TextStream(path), take);
    }
}

/// All items of the files, ascending.
Itemset items_of_files(const std::vector<std::string>& paths) {
    std::unordered_set<Item> found;
    for_each_record(TextStream(paths.front()), paths, [&found](const RuleFileReader& reader) {
        const RuleRecord& record = reader.record();
        found.insert(record.premise.items.begin(), record.premise.items.end());
        found.insert(record.conclusion.items.begin(), record.conclusion.items.end());
    });
    Itemset items(found.begin(), found.end());
    std::ranges::sort(items);
    return items;
}

ItemChoice choice_of(const RuleRequest& request, const std::vector<std::string>& paths,
                     const ItemNames& names) {
    if (request.patterns.empty()) {
        return {};
    }
    if (std::ranges::find(paths, "-") != paths.end()) {
        throw UsageError(
            request.patterns.front().option +
            ": found with rules from standard input; expected files, which are read twice to know "
            "their items");
    }
    const Itemset items = items_of_files(paths);
    try {
        return {request.patterns, items, names};
    } catch (const Error& error) {
        throw UsageError(error.what());
    }
}

std::string text_of_range(Count one, Count other) {
    const auto [low, high] = std::minmax(one, other);
    return low == high ? std::to_string(low) : std::to_string(low) + " to " + std::to_string(high);
}

/// Takes the records of all files.
class Records {
public:
    Records(const RuleInput& input, const RuleRequest& request, RuleFilter filter, SearchResult& result,
            DistinctRules& rules)
        : filter_(std::move(filter)),
          result_(result),
          rules_(rules),
          known_transactions_(input.transactions > 0 ? std::optional(input.transactions) : std::nullopt),
          has_thresholds_(request.given.min_support || request.given.min_confidence) {
        if (input.database) {
            counter_.emplace(*input.database);
        }
    }

    void add(const RuleFileReader& reader) {
        const RuleRecord& record = reader.record();
        const auto recorded = recorded_counts(record, known_transactions_);
        if (!recorded) {
            throw input_error(reader.name(), {record.line, 1},
                              "a rule whose confidence is not that of any premise",
                              "a confidence that goes with the support, and at most N transactions");
        }
        if (has_thresholds_ && !filter_.reaches_thresholds(recorded->at_low, recorded->at_high)) {
            return;
        }
        ++result_.accounting.derived;
        if (const auto step = refused(reader, *recorded)) {
            ++result_.accounting[*step];
        }
    }

private:
    std::optional<Step> refused(const RuleFileReader& reader, const RecordedCounts& recorded) {
        const RuleRecord& record = reader.record();
        const Form form = record.first_form();
        const std::size_t items = record.premise.items.size() + record.conclusion.items.size();
        const WordedSide premise = {record.premise.items, record.premise.is_negated};
        const WordedSide conclusion = {record.conclusion.items, record.conclusion.is_negated};
        if (const auto step = filter_.refused_by_sides(premise, conclusion, result_.columns)) {
            return step;
        }
        FoundRule rule = {Side(0, record.premise.is_negated), Side(0, record.conclusion.is_negated),
                          recorded.at_low, recorded.at_high, form};
        if (counter_) {
            rule.at_low = rule.at_high = within(recorded, counter_->count(premise, conclusion), reader);
        }
        if (const auto step = filter_.refused_by_counts(form, rule.at_low, rule.at_high)) {
            return step;
        }
        if (const auto step = filter_.refused_at_last(rule, premise, conclusion)) {
            return step;
        }
        rules_.add(rule, items, [&](FoundRule& kept) {
            kept.premise = Side(result_.itemsets.intern(record.premise.items), record.premise.is_negated);
            kept.conclusion =
                Side(result_.itemsets.intern(record.conclusion.items), record.conclusion.is_negated);
        });
        return std::nullopt;
    }

    /// Returns `counts`, those in the transactions. Throws Error where they are not within the recorded ones.
    static Contingency within(const RecordedCounts& recorded, const Contingency& counts,
                              const RuleFileReader& reader) {
        const auto require = [&](const std::string& what, Count Contingency::*count) {
            const auto [low, high] = std::minmax(recorded.at_low.*count, recorded.at_high.*count);
            if (counts.*count < low || counts.*count > high) {
                throw input_error(reader.name(), {reader.record().line, 1},
                                  "a rule " + what + " " + text_of_range(low, high) + " transactions",
                                  std::to_string(counts.*count) + " as in the database");
            }
        };
        require("that holds for", &Contingency::both);
        require("whose confidence is of a premise of", &Contingency::premise);
        return counts;
    }

    const RuleFilter filter_;
    SearchResult& result_;
    DistinctRules& rules_;
    const std::optional<Count> known_transactions_;
    const bool has_thresholds_;
    std::optional<RuleCounter> counter_;
};

/// Keeps the best reading of each association.
void keep_best_readings(SearchResult& result) {
    std::vector<MergeCandidate> candidates;
    for (const FoundRule& rule : result.rules) {
        const auto [first, second] = std::minmax({rule.premise.itemset(), rule.conclusion.itemset()});
        candidates.push_back({rule, {first, second, group(rule.form) >= 3}, nullptr});
    }
    result.rules.clear();
    const AddRule add = [&result](const FoundRule& rule) { result.rules.push_back(rule); };
    AssociationMerge(Readings::one, result.itemsets, result.accounting, add).settle(candidates);
}

/// Leaves the first of all rules with the same sides, which are nothing that can be compared.
void keep_first_of_same_sides(SearchResult& result) {
    std::set<std::pair<Side, Side>> seen;
    result.accounting[Step::same_fact] += std::erase_if(result.rules, [&seen](const FoundRule& rule) {
        return !seen.emplace(rule.premise, rule.conclusion).second;
    });
}

/// Leaves out what all rules have to be known for.
void compare(SearchResult& result, const RuleRequest& request, Count transactions,
             const std::function<void(Phase)>& begin) {
    begin(Phase::pruning);
    if (request.readings == Readings::one) {
        keep_best_readings(result);
    }
    if (request.prune != Prune::none) {
        keep_first_of_same_sides(result);
        Workers workers(request.threads);
        prune(result, request, transactions, workers);
    }
}

/// Keeps the rules that are told, in their order.
void select(SearchResult& result, const RuleOrder& order, const RuleRequest& request) {
    Selection selection(order, request);
    std::ranges::for_each(result.rules, [&selection](const FoundRule& rule) { selection.add(rule); });
    result.rules = selection.take(result.accounting);
}

}  // namespace

SearchResult search_rule_files(TextStream first, const std::vector<std::string>& paths,
                               const RuleInput& input, const RuleRequest& request,
                               const std::function<void(Phase)>& begin) {
    const Count most_support =
        input.transactions > 0 ? input.transactions : std::numeric_limits<Count>::max();
    SearchResult result;
    result.known = knowledge_of_rule_files(input);
    result.accounting.rule_files = paths.size();
    result.accounting.transactions = input.transactions;
    result.accounting.prune = request.prune.value_or(Prune::none);
    const RuleOrder order(request.sort, request.is_ascending, std::max(input.transactions, Count{1}),
                          result.itemsets);
    const bool are_compared = request.prune != Prune::none || request.readings == Readings::one;
    const bool are_all_needed = are_compared || request.per_conclusion > 0;
    DistinctRules rules(order, result.itemsets, are_all_needed ? 0 : request.most_told(), result.accounting);
    begin(Phase::deriving);
    Records records(input, request,
                    {request, in_transactions(request.min_support, "--min-support", 0, most_support),
                     input.transactions, choice_of(request, paths, input.names),
                     request.where.empty() ? Where() : parse_where(request.where)},
                    result, rules);
    for_each_record(std::move(first), paths,
                    [&records](const RuleFileReader& reader) { records.add(reader); });
    result.rules = rules.take();
    if (are_compared) {
        compare(result, request, input.transactions, begin);
        begin(Phase::sorting);
    }
    if (are_all_needed) {
        select(result, order, request);
    }
    return result;
}

}  // namespace korv::tools
