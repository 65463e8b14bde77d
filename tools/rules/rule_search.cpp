#include "rules/rule_search.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include "base/work_sharing.h"
#include "common/class_agreement.h"
#include "common/error.h"
#include "common/workers.h"
#include "engine/difference_supports.h"
#include "engine/lattice_building.h"
#include "engine/lattice_entries.h"
#include "engine/pairs.h"
#include "engine/rule_makers.h"
#include "mine/threshold.h"
#include "rules/column_facts.h"
#include "rules/itemset_parts.h"
#include "rules/pruning.h"
#include "rules/rule_filter.h"
#include "rules/rule_order.h"
#include "rules/selection.h"
#include "rules/support_counter.h"
#include "rules/wording.h"

namespace korv::tools {

namespace {

/// The minimum support in transactions.
Count minimum_support(const RuleInput& input, const RuleRequest& request) {
    return in_transactions(request.min_support, "--min-support", 1, input.transactions);
}

/// Where the transactions are at hand, what they say of columns; otherwise what the classes do.
ColumnFacts column_facts(const RuleInput& input) {
    return input.database ? ColumnFacts(input.names, *input.database)
                          : ColumnFacts(input.names, input.classes, input.transactions);
}

/// All items that sides can name, ascending: those of the classes, and of columns, by whose rest a side may
/// be worded.
Itemset items_of(const RuleInput& input) {
    std::unordered_set<Item> occurring;
    for (const auto& [itemset, of_class] : input.classes) {
        occurring.insert(itemset.begin(), itemset.end());
    }
    for (const ItemNames::Column& column : input.names.columns()) {
        occurring.insert(column.items.begin(), column.items.end());
    }
    Itemset items(occurring.begin(), occurring.end());
    std::ranges::sort(items);
    return items;
}

std::string text_of_items(ItemSpan items) {
    std::string text;
    for (const Item item : items) {
        text += (text.empty() ? "" : " ") + std::to_string(item);
    }
    return shown(text);
}

/// The class of an itemset as a message names it: by its line, where it was read from a file.
std::string place_of_class(const RuleInput& input, NodeRef node) {
    if (input.lines.empty()) {
        return text_of_items(node->first);
    }
    const auto position = static_cast<std::size_t>(std::distance(input.classes.begin(), node));
    return input.path + ":" + std::to_string(input.lines[position]);
}

/// "2", "2 to 4".
std::string from_to(std::uint64_t low, std::uint64_t high) {
    return std::to_string(low) + (low == high ? "" : " to " + std::to_string(high));
}

/// Throws Error for a class whose support goes with no support that others leave to the rest of its items.
[[noreturn]] void refuse(const RuleInput& input, const Pair& pair) {
    const auto [lower, upper] = pair.difference_support;
    // Whoever holds one of the items holds one of the base or one of the rest.
    const std::uint64_t least = std::max(pair.base_support, upper);
    const std::uint64_t most = std::uint64_t{pair.base_support} + lower;
    const bool is_possible = lower <= upper && least <= most;
    throw Error(place_of_class(input, pair.node) + ": found the support " + std::to_string(pair.support) +
                "; expected " + (is_possible ? from_to(least, most) : "classes that agree") +
                ", since the support of " + place_of_class(input, pair.base_node) + " is " +
                std::to_string(pair.base_support) + " and that of the rest of its items, " +
                text_of_items(pair.difference) + ", by other classes " + from_to(lower, upper));
}

/// What --test does, where it is asked for.
std::optional<SignificanceTest> significance_test(const RuleInput& input, const RuleRequest& request) {
    if (!request.is_tested) {
        return std::nullopt;
    }
    const SignificanceLevels levels(request.alpha, items_of(input).size(), request.max_items);
    return SignificanceTest(levels, column_facts(input), input.transactions);
}

/// What is left out where it is not said.
Prune default_prune(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets) {
    std::size_t work = 0;
    for (const FoundRule& rule : rules) {
        const bool is_short = number_of_items(rule, itemsets) <= ItemsetParts::most_items;
        work += is_short ? 1 : work_for_a_long_rule;
    }
    return work <= most_work_for_productive ? Prune::productive : Prune::same;
}

/// What rules are derived with, besides the lattice.
struct Groundwork {
    std::shared_ptr<const DifferenceSupports::Indexes> indexes;
    std::unique_ptr<const SupportCounter> counter;   ///< null without transactions
    std::unique_ptr<const ShortestWording> wording;  ///< null for full wording
    ColumnFacts columns;                             ///< by which sides are worded
};

/// Does not look at the successors of `entries`, so they can be linked meanwhile. Throws Error where classes
/// contradict each other.
Groundwork groundwork(const RuleInput& input, const RuleRequest& request, const LatticeEntries& entries) {
    Groundwork work;
    DifferenceSupports from_classes(entries);
    if (!input.lines.empty()) {
        require_agreement(input.classes, input.lines, input.path, input.transactions, from_classes);
    }
    work.indexes = from_classes.indexes();
    if (input.database) {
        work.counter = std::make_unique<const SupportCounter>(*input.database);
    }
    if (request.wording == Wording::shortest) {
        work.wording = std::make_unique<const ShortestWording>(entries);
        work.columns = column_facts(input);
    }
    return work;
}

/// Several parts for each thread, of which some take longer than others.
WorkSharing sharing(Workers& workers) {
    constexpr std::size_t parts_for_each_thread = 16;
    if (workers.threads() == 1) {
        return {};
    }
    return {
        workers.threads() * parts_for_each_thread,
        [&workers](std::size_t parts, const WorkSharing::DoPart& do_part) { workers.run(parts, do_part); }};
}

/// Supports for one thread.
std::unique_ptr<Supports> supports(const Groundwork& work) {
    auto from_classes = std::make_unique<DifferenceSupports>(work.indexes);
    if (!work.counter) {
        return from_classes;
    }
    return std::make_unique<CountedSupports>(std::move(from_classes), *work.counter);
}

/// Derives the rules of the input and hands on those that are left.
void derive(const RuleInput& input, const RuleRequest& request, const RuleFilter& filter,
            SearchResult& result, const AddRule& add, const SearchProgress& progress,
            const SearchExtras& extras, Workers& workers) {
    KorvOutput* const korv = extras.korv;
    progress.begin(Phase::lattice);
    LatticeEntries entries = lattice_entries(input.classes);
    Groundwork work;
    workers.run({[&] {
                     link_successors(entries, sharing(workers));
                     progress.begin(Phase::indexing);
                 },
                 [&] { work = groundwork(input, request, entries); }});
    result.columns = std::move(work.columns);

    std::optional<RuleMaker> korv_rules;
    if (korv != nullptr) {
        const Count min_support = minimum_support(input, request);
        korv_rules.emplace(RuleSettings{min_support, request.min_confidence, input.transactions},
                           korv->rules);
        korv->bytes_of_lattice = bytes_of_lattice_file(entries);
    }
    progress.begin(Phase::deriving);
    // korv itself does not know what was counted in the transactions.
    if (korv_rules && work.counter) {
        DifferenceSupports from_classes(work.indexes);
        for_each_pair(input.classes, entries, from_classes, *korv_rules);
    }
    PairSink* const listener = korv_rules && !work.counter ? &*korv_rules : nullptr;
    derive_rules(
        {entries, [&] { return supports(work); }, result.columns, work.wording.get(), input.transactions,
         listener},
        request, filter, result.itemsets, result.accounting, add,
        [&](std::size_t done) { progress.derived(result.accounting, done, entries.size()); },
        [&](const Pair& pair) { refuse(input, pair); }, workers);
    if (extras.keeps_lattice) {
        result.lattice = std::move(entries);
    }
}

}  // namespace

void prune(SearchResult& result, const RuleRequest& request, Count transactions, Workers& workers) {
    std::vector<FoundRule>& rules = result.rules;
    Accounting& accounting = result.accounting;
    accounting.prune = request.prune ? *request.prune : default_prune(rules, result.itemsets);
    const Rests rests = accounting.prune == Prune::productive
                            ? rests_of_sides(rules, result.itemsets, result.columns)
                            : Rests();
    const Pruned pruned = prune_rules(rules, result.itemsets, transactions, accounting.prune, workers, rests);
    accounting[Step::turned_round] += pruned.turned_round;
    accounting[Step::weaker] += pruned.weaker;
    accounting[Step::unproductive] += pruned.unproductive;
}

RuleFilter rule_filter(const RuleInput& input, const RuleRequest& request) {
    // Without classes there is no item to match, which is no mistake of a pattern, and no rule to choose.
    const bool has_choice = !request.patterns.empty() && !input.classes.empty();
    return {request,
            minimum_support(input, request),
            input.transactions,
            has_choice ? ItemChoice(request.patterns, items_of(input), input.names) : ItemChoice(),
            request.where.empty() ? Where() : parse_where(request.where),
            significance_test(input, request)};
}

SearchResult search_rules(const RuleInput& input, const RuleRequest& request, const RuleFilter& filter,
                          const SearchProgress& progress, const SearchExtras& extras) {
    SearchResult result;
    const RuleOrder order(request.sort, request.is_ascending, input.transactions, result.itemsets);
    Selection selection(order, request);
    Workers workers(request.threads);
    const auto select = [&selection](const FoundRule& rule) { selection.add(rule); };
    if (request.prune == Prune::none) {
        derive(input, request, filter, result, select, progress, extras, workers);
    } else {
        // A list of all rules is needed only where they are compared with each other.
        derive(
            input, request, filter, result,
            [&result](const FoundRule& rule) { result.rules.push_back(rule); }, progress, extras, workers);
        progress.begin(Phase::pruning);
        prune(result, request, input.transactions, workers);
        std::ranges::for_each(std::exchange(result.rules, {}), select);
    }
    progress.begin(Phase::sorting);
    result.rules = selection.take(result.accounting);
    if (input.holdout) {
        const std::size_t chosen = result.rules.size();
        result.holdout = keep_confirmed(result.rules, result.itemsets, *input.holdout, request.alpha);
        result.accounting[Step::not_confirmed] += chosen - result.rules.size();
    }
    return result;
}

}  // namespace korv::tools
