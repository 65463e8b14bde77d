#include "rules/rule_file_search.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <unordered_set>
#include <utility>

#include "common/error.h"
#include "mine/threshold.h"
#include "rules/association_merge.h"
#include "rules/pruning.h"
#include "rules/recorded_counts.h"
#include "rules/rule_file.h"
#include "rules/rule_filter.h"
#include "rules/rule_order.h"
#include "rules/support_counter.h"

namespace korv::tools {

namespace {

[[noreturn]] void refuse(const std::string& option, const std::string& what) {
    throw UsageError(option + ": needs " + what +
                     ", which rule files do not hold; expected --database FILE besides, or no such option");
}

/// Throws UsageError for forms that only parts of groups have.
void require_whole_groups(const std::vector<Form>& forms) {
    std::array<std::size_t, rule_catalogue.size() / forms_in_a_group> found = {};
    for (const Form form : forms) {
        ++found.at(group(form) - 1);
    }
    if (std::ranges::any_of(found, [](std::size_t each) { return each % forms_in_a_group != 0; })) {
        throw UsageError(
            "--forms: found labels, which rule files do not hold; expected or-or, none-none, or-none or "
            "none-or");
    }
}

void require_known(const RuleRequest& request, const Knowledge& known) {
    if (request.where.empty()) {
        return;
    }
    if (const auto name = parse_where(request.where).untold(known)) {
        refuse("--where", std::string(*name));
    }
}

/// Whether the order by a measure is that by a count, so that N does not matter.
bool is_of_counts(Measure measure) {
    return measure == Measure::support || measure == Measure::coverage;
}

/// Where the transactions are not at hand.
void settle_without_conclusions(RuleRequest& request, const Knowledge& known) {
    if (request.min_lift && *request.min_lift > 0) {
        refuse("--min-lift", "the support of conclusions");
    }
    if (request.given.sort && !known.tells(request.sort) && !is_of_counts(request.sort)) {
        refuse("--sort", std::string(name_of(request.sort)));
    }
    if (request.prune == Prune::productive) {
        refuse("--prune", "the leverage of rules");
    }
    if (request.given.readings && request.readings == Readings::one) {
        refuse("--readings", "the support of conclusions");
    }
    request.min_lift = 0;
    request.sort = request.given.sort ? request.sort : Measure::confidence;
    request.readings = Readings::all;
    request.prune = request.prune.value_or(Prune::none);
}

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

/// Supports of which nothing is known.
class UnknownSupports final : public Supports {
public:
    Count settle(const Itemset& /*itemset*/, SupportBounds& /*bounds*/) override { return 0; }
};

/// Counts rules in transactions.
class RuleCounter {
public:
    explicit RuleCounter(const Database& database)
        : counter_(database),
          supports_(std::make_unique<UnknownSupports>(), counter_),
          transactions_(database.transactions) {}

    Contingency count(const RuleRecord& rule) {
        const RecordedSide& premise = rule.premise;
        const RecordedSide& conclusion = rule.conclusion;
        union_.clear();
        std::ranges::set_union(premise.items, conclusion.items, std::back_inserter(union_));
        const Count of_premise = support(premise.items);
        const Count of_conclusion = support(conclusion.items);
        const Count of_either = support(union_);
        // How many meet both itemsets, neither, the first alone, or the second alone.
        const std::array<Count, 4> by_group = {of_premise + of_conclusion - of_either,
                                               transactions_ - of_either, of_either - of_conclusion,
                                               of_either - of_premise};
        return {premise.is_negated ? transactions_ - of_premise : of_premise,
                conclusion.is_negated ? transactions_ - of_conclusion : of_conclusion,
                by_group.at(rule.group() - 1)};
    }

private:
    Count support(const Itemset& itemset) {
        SupportBounds bounds = {0, transactions_};
        supports_.settle(itemset, bounds);
        return bounds.lower;
    }

    SupportCounter counter_;
    CountedSupports supports_;
    Count transactions_;
    Itemset union_;  ///< working space
};

std::string text_of_range(Count one, Count other) {
    const auto [low, high] = std::minmax(one, other);
    return low == high ? std::to_string(low) : std::to_string(low) + " to " + std::to_string(high);
}

/// Keeps the first rules of an order, or all of them, each once. What comes is put behind what is kept; when
/// that is too much, all is put in order, and what is beyond the first ones is forgotten, with its itemsets.
class DistinctRules {
public:
    /// `most`: how many to keep; 0 for all. Refers to the order and its pool.
    DistinctRules(const RuleOrder& order, ItemsetPool& itemsets, std::size_t most, Accounting& accounting)
        : order_(order), itemsets_(itemsets), most_(most), accounting_(accounting) {}

    /// `items`: of both sides. `make_sides` puts them into the pool; it is called only for a rule that may be
    /// among the first ones.
    template <typename MakeSides>
    void add(FoundRule rule, std::size_t items, const MakeSides& make_sides) {
        RuleOrder::Ranked ranked = order_.ranked(rule);
        if (is_beyond(ranked, items)) {
            ++accounting_[Step::top];
            return;
        }
        make_sides(ranked.rule);
        kept_.push_back(ranked);
        constexpr std::size_t room = 8192;
        if (most_ > 0 && kept_.size() > 2 * most_ + room) {
            settle();
        }
    }

    /// The rules in their order. Nothing is left here.
    std::vector<FoundRule> take() {
        settle();
        std::vector<FoundRule> rules;
        rules.reserve(kept_.size());
        std::ranges::transform(kept_, std::back_inserter(rules), &RuleOrder::Ranked::rule);
        std::exchange(kept_, {});  // frees the memory
        return rules;
    }

private:
    /// Whether a rule, of which the sides do not matter, comes behind so many that it is none of the first.
    bool is_beyond(const RuleOrder::Ranked& ranked, std::size_t items) const {
        if (!last_ || !(ranked.rank >= last_->rank)) {
            return false;
        }
        if (ranked.rank > last_->rank) {
            return true;
        }
        const auto support = [](const FoundRule& rule) {
            return std::min(rule.at_low.both, rule.at_high.both);
        };
        const Count of_last = support(last_->rule);
        return support(ranked.rule) != of_last ? support(ranked.rule) < of_last : items > items_of_last_;
    }

    void settle() {
        std::ranges::sort(kept_,
                          [this](const auto& one, const auto& other) { return is_before(one, other); });
        std::size_t distinct = 0;
        for (const RuleOrder::Ranked& each : kept_) {
            if (distinct > 0 && !is_before(kept_[distinct - 1], each)) {
                kept_[distinct - 1].rule.wordings += each.rule.wordings;
                ++accounting_[Step::same_fact];
            } else {
                kept_[distinct++] = each;
            }
        }
        const std::size_t left = most_ == 0 ? distinct : std::min(most_, distinct);
        accounting_[Step::top] += distinct - left;
        kept_.erase(kept_.begin() + static_cast<std::ptrdiff_t>(left), kept_.end());
        if (most_ > 0 && left == most_) {
            last_ = kept_.back();
            items_of_last_ = number_of_items(last_->rule, itemsets_);
            forget_other_itemsets();
        }
    }

    bool is_before(const RuleOrder::Ranked& one, const RuleOrder::Ranked& other) const {
        if (order_.is_before(one, other)) {
            return true;
        }
        // NOLINTNEXTLINE(readability-suspicious-call-argument): the other way round
        if (order_.is_before(other, one)) {
            return false;
        }
        const auto counts = [](const FoundRule& rule) {
            return std::array{rule.at_low.premise, rule.at_low.both, rule.at_high.premise, rule.at_high.both};
        };
        return counts(one.rule) < counts(other.rule);
    }

    void forget_other_itemsets() {
        ItemsetPool needed;
        const auto moved = [&](Side side) {
            return Side(needed.intern(itemsets_[side.itemset()]), side.is_negated());
        };
        for (RuleOrder::Ranked& each : kept_) {
            each.rule.premise = moved(each.rule.premise);
            each.rule.conclusion = moved(each.rule.conclusion);
        }
        itemsets_ = std::move(needed);
    }

    const RuleOrder& order_;
    ItemsetPool& itemsets_;
    std::size_t most_;
    Accounting& accounting_;
    std::vector<RuleOrder::Ranked> kept_;
    std::optional<RuleOrder::Ranked> last_;  ///< of the first ones, once they are so many
    std::size_t items_of_last_ = 0;
};

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
            rule.at_low = rule.at_high = counted(reader, recorded);
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

    /// The counts in the transactions, which must be within those that are recorded.
    Contingency counted(const RuleFileReader& reader, const RecordedCounts& recorded) {
        const RuleRecord& record = reader.record();
        const Contingency counts = counter_->count(record);
        const auto require = [&](const std::string& what, Count Contingency::*count) {
            const auto [low, high] = std::minmax(recorded.at_low.*count, recorded.at_high.*count);
            if (counts.*count < low || counts.*count > high) {
                throw input_error(reader.name(), {record.line, 1},
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
        prune(result.rules, result.itemsets, transactions, request, result.accounting);
    }
}

/// Leaves out all but the first `most` rules of each conclusion; none where `most` is 0. Returns how many.
std::size_t limit_per_conclusion(std::vector<FoundRule>& rules, std::size_t most, Accounting& accounting) {
    if (most == 0) {
        return 0;
    }
    std::map<Side, std::size_t> seen;
    const std::size_t left_out =
        std::erase_if(rules, [&](const FoundRule& rule) { return ++seen[rule.conclusion] > most; });
    accounting[Step::per_conclusion] += left_out;
    return left_out;
}

}  // namespace

Knowledge knowledge_of_rule_files(const RuleInput& input) {
    return {input.database.has_value(), input.transactions > 0, false};
}

RuleRequest request_for_rule_files(RuleRequest request, const RuleInput& input) {
    const Knowledge known = knowledge_of_rule_files(input);
    if (request.given.wording && request.wording == Wording::shortest) {
        throw UsageError(
            "--wording: found shortest, for which classes are needed; expected full, as the rule files have "
            "it, "
            "or no such option");
    }
    request.wording = Wording::full;
    require_whole_groups(request.forms);
    require_known(request, known);
    if (!known.has_conclusion) {
        settle_without_conclusions(request, known);
    }
    if (!request.given.min_support) {
        request.min_support = {0, false};
    }
    if (!request.given.min_confidence) {
        request.min_confidence = 0;
    }
    if (request.min_support.is_percentage && !known.has_transactions) {
        throw UsageError(
            "--min-support: found " + text_of(request.min_support) +
            ", a share of transactions whose number rule files do not hold; expected a count, or "
            "--database-size N (-n N) or --database FILE besides");
    }
    return request;
}

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
    DistinctRules rules(order, result.itemsets, are_all_needed ? 0 : request.top, result.accounting);
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
        FirstRules in_order(order, 0);
        std::ranges::for_each(result.rules, [&in_order](const FoundRule& rule) { in_order.add(rule); });
        result.rules = in_order.take();
    }
    const std::size_t left =
        result.rules.size() - limit_per_conclusion(result.rules, request.per_conclusion, result.accounting);
    if (request.top > 0 && result.rules.size() > request.top) {
        result.rules.erase(result.rules.begin() + static_cast<std::ptrdiff_t>(request.top),
                           result.rules.end());
    }
    result.accounting[Step::top] += left - result.rules.size();
    return result;
}

}  // namespace korv::tools
