#include "rules/rule_derivation.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <span>
#include <tuple>
#include <utility>

#include "common/ordered_work.h"
#include "engine/pairs.h"

namespace korv::tools {

namespace {

constexpr std::array pair_kinds = {PairKind::essential_and_rest, PairKind::essential_of_successor,
                                   PairKind::successor};

/// By kind of pair.
constexpr std::array<std::array<Form, rules_of_a_pair>, pair_kinds.size()> forms_by_kind = {
    forms_of(pair_kinds[0]), forms_of(pair_kinds[1]), forms_of(pair_kinds[2])};

/// Whether no database has classes with these supports.
bool is_contradiction(const Pair& pair, Count transactions) {
    const auto [lower, upper] = pair.difference_support;
    return pair.support > transactions || pair.base_support > pair.support || lower > upper ||
           lower < pair.support - pair.base_support || upper > pair.support;
}

/// Makes itemsets comparable that stand in the classes.
struct ByContent {
    /// The sum of the items: of long itemsets it takes a tenth of the time of a hash that mixes them, and
    /// those of a class seldom have the same one.
    std::size_t operator()(const Itemset* itemset) const {
        return std::reduce(itemset->begin(), itemset->end(), Item{0});
    }
    bool operator()(const Itemset* one, const Itemset* other) const { return *one == *other; }
};

/// Some classes that come one after the other.
using Batch = std::span<const LatticeEntry>;

/// What comes of a batch.
struct BatchResult {
    std::size_t classes = 0;
    ItemsetPool itemsets;                 ///< of the sides of its rules
    std::vector<FoundRule> rules;         ///< that are left
    std::vector<MergeCandidate> waiting;  ///< those with a side that a column words
    Accounting accounting;
};

/// Derives the rules of one batch after the other, in one thread.
class Derivation final : public PairSink {
public:
    Derivation(const RuleSource& source, const RuleRequest& request, const RuleFilter& filter,
               const Contradiction& contradiction)
        : source_(source),
          readings_(request.readings),
          filter_(filter),
          contradiction_(contradiction),
          supports_(source.make_supports()) {}

    BatchResult rules_of(Batch batch) {
        result_ = {};
        result_.classes = batch.size();
        const AddRule add = [this](const FoundRule& rule) { result_.rules.push_back(rule); };
        AssociationMerge merge(readings_, result_.itemsets, result_.accounting, add);
        Pairs pairs(*supports_, *this);
        for (const LatticeEntry& entry : batch) {
            class_ = &entry;
            bases_.clear();
            pairs.of_class(entry);
            merge.settle(candidates_);
        }
        return std::move(result_);
    }

    void add(const Pair& pair) override {
        if (source_.listener != nullptr) {
            source_.listener->add(pair);
        }
        if (is_contradiction(pair, source_.transactions)) {
            contradiction_(pair);
            return;
        }
        if (came_before(pair)) {
            return;
        }
        ++result_.accounting.pairs;
        find_rules(pair);
        if (!found_.empty()) {
            word(pair);
        }
    }

private:
    /// A rule that its counts let pass.
    struct CountedRule {
        Form form;
        Contingency at_low;
        Contingency at_high;
    };

    bool came_before(const Pair& pair);
    void find_rules(const Pair& pair);
    void word(const Pair& pair);
    void add_candidate(const CountedRule& rule, const WordedSide& premise, const WordedSide& conclusion,
                       const WordedItemset& base, const WordedItemset& difference);

    const RuleSource& source_;
    const Readings readings_;
    const RuleFilter& filter_;
    const Contradiction& contradiction_;
    const std::unique_ptr<Supports> supports_;
    BaseWording base_wording_;

    BatchResult result_;
    const LatticeEntry* class_ = nullptr;
    std::unordered_set<const Itemset*, ByContent, ByContent> bases_;  ///< of the class, so far
    std::vector<CountedRule> found_;                                  ///< of a pair
    std::vector<MergeCandidate> candidates_;                          ///< of the class
};

/// Whether the same two itemsets were a pair of this class before, most often with the base as difference.
bool Derivation::came_before(const Pair& pair) {
    return !bases_.insert(&pair.base).second || bases_.contains(&pair.difference);
}

/// Fills `found_`.
void Derivation::find_rules(const Pair& pair) {
    found_.clear();
    PairSupports at_low = {source_.transactions, pair.support, pair.base_support,
                           pair.difference_support.lower};
    PairSupports at_high = at_low;
    at_high.difference = pair.difference_support.upper;
    for (const Form form : forms_by_kind[static_cast<std::size_t>(pair.kind)]) {
        const CountedRule rule = {form, contingency(form, at_low), contingency(form, at_high)};
        if (!filter_.reaches_thresholds(rule.at_low, rule.at_high)) {
            continue;
        }
        ++result_.accounting.derived;
        if (const auto step = filter_.refused_by_counts(form, rule.at_low, rule.at_high)) {
            ++result_.accounting[*step];
            continue;
        }
        found_.push_back(rule);
    }
}

/// Turns the rules in `found_` into candidates.
void Derivation::word(const Pair& pair) {
    const ShortestWording* const shortest = source_.wording;
    const bool is_known = pair.difference_support.lower == pair.difference_support.upper;
    const ItemSpan difference_items =
        shortest != nullptr && is_known ? shortest->of_itemset(pair.difference, pair.difference_support.lower)
                                        : ItemSpan(pair.difference);
    const ItemSpan base_items = shortest != nullptr
                                    ? base_wording_.of(pair.base, pair.base_node, difference_items)
                                    : ItemSpan(pair.base);
    const WordedItemset base = source_.columns.worded(base_items);
    const WordedItemset difference = source_.columns.worded(difference_items);
    for (const CountedRule& rule : found_) {
        const FormSide premise_form = premise(rule.form);
        const bool is_base_premise = premise_form.part == Part::base;
        const bool is_premise_negated = premise_form.mode == Mode::negation;
        const bool is_conclusion_negated = conclusion(rule.form).mode == Mode::negation;
        const WordedItemset& of_premise = is_base_premise ? base : difference;
        const WordedItemset& of_conclusion = is_base_premise ? difference : base;
        if (source_.columns.imply({of_premise.items, is_premise_negated},
                                  {of_conclusion.items, is_conclusion_negated})) {
            ++result_.accounting[Step::columns];
            continue;
        }
        const WordedSide premise_side = of_premise.side(is_premise_negated);
        const WordedSide conclusion_side = of_conclusion.side(is_conclusion_negated);
        if (const auto step = filter_.refused_by_sides(premise_side, conclusion_side, source_.columns)) {
            ++result_.accounting[*step];
            continue;
        }
        add_candidate(rule, premise_side, conclusion_side, base, difference);
    }
}

void Derivation::add_candidate(const CountedRule& rule, const WordedSide& premise,
                               const WordedSide& conclusion, const WordedItemset& base,
                               const WordedItemset& difference) {
    const auto side = [this](const WordedSide& worded) {
        return Side(result_.itemsets.intern(worded.items), worded.is_negated);
    };
    const auto stands_for = [this](const WordedItemset& itemset) {
        return result_.itemsets.intern(itemset.is_turned() ? ItemSpan(itemset.rest) : itemset.items);
    };
    const auto [first, second] = std::minmax({stands_for(base), stands_for(difference)});
    // Groups 3 and 4 have one negated side; each itemset for which its rest stands turns that once more.
    const bool is_opposite = (group(rule.form) >= 3) != (base.is_turned() != difference.is_turned());
    const FoundRule found = {side(premise), side(conclusion), rule.at_low, rule.at_high, rule.form};
    if (const auto step = filter_.refused_at_last(found, premise, conclusion)) {
        ++result_.accounting[*step];
        return;
    }
    const bool waits = !base.rest.empty() || !difference.rest.empty();
    (waits ? result_.waiting : candidates_).push_back({found, {first, second, is_opposite}, class_});
}

/// Hands out the classes in batches: few enough that all threads are busy until the end.
class Batches {
public:
    explicit Batches(const LatticeEntries& entries) : rest_(entries) {}

    /// Nothing when there is no more.
    std::optional<Batch> next() {
        if (rest_.empty()) {
            return std::nullopt;
        }
        std::size_t classes = 0;
        for (std::size_t edges = 0; classes < rest_.size() && edges + classes < most_edges; ++classes) {
            edges += rest_[classes].successors.size();
        }
        const Batch batch = rest_.first(classes);
        rest_ = rest_.subspan(classes);
        return batch;
    }

private:
    static constexpr std::size_t most_edges = 256;  ///< about, with the classes: a millisecond or some

    Batch rest_;
};

/// Takes the results of one batch after the other.
class Collection {
public:
    /// Refers to all but `readings`.
    Collection(Readings readings, ItemsetPool& pool, Accounting& accounting, const AddRule& add)
        : merge_(readings, pool, accounting, add), pool_(pool), accounting_(accounting), add_(add) {}

    void take(const BatchResult& batch) {
        numbers_.assign(batch.itemsets.size(), no_number);
        for (FoundRule rule : batch.rules) {
            renumber_sides(rule, batch.itemsets);
            add_(rule);
        }
        for (MergeCandidate candidate : batch.waiting) {
            renumber_sides(candidate.rule, batch.itemsets);
            Association& association = candidate.association;
            std::tie(association.first, association.second) =
                std::minmax({number_of(association.first, batch.itemsets),
                             number_of(association.second, batch.itemsets)});
            waiting_.push_back(candidate);
        }
        accounting_.add(batch.accounting);
    }

    /// No more batches come.
    void finish() { merge_.settle(waiting_); }

private:
    static constexpr ItemsetId no_number = 0xFFFFFFFF;

    /// The number in the pool of an itemset that has one in a batch.
    ItemsetId number_of(ItemsetId in_batch, const ItemsetPool& of_batch) {
        ItemsetId& number = numbers_[in_batch];
        if (number == no_number) {
            number = pool_.intern(of_batch[in_batch]);
        }
        return number;
    }

    void renumber_sides(FoundRule& rule, const ItemsetPool& of_batch) {
        for (Side* const side : {&rule.premise, &rule.conclusion}) {
            *side = Side(number_of(side->itemset(), of_batch), side->is_negated());
        }
    }

    AssociationMerge merge_;
    ItemsetPool& pool_;
    Accounting& accounting_;
    const AddRule& add_;
    std::vector<ItemsetId> numbers_;       ///< by number in a batch
    std::vector<MergeCandidate> waiting_;  ///< of all batches
};

}  // namespace

void derive_rules(const RuleSource& source, const RuleRequest& request, const RuleFilter& filter,
                  ItemsetPool& pool, Accounting& accounting, const AddRule& add,
                  const DerivationProgress& progress, const Contradiction& contradiction, Workers& workers) {
    accounting.classes = source.entries.size();
    accounting.transactions = source.transactions;
    Batches batches(source.entries);
    Collection collection(request.readings, pool, accounting, add);
    std::size_t done = 0;
    Workers alone(1);
    using Work = OrderedWork<Batch, BatchResult>;
    Work::run(source.listener == nullptr ? workers : alone,
              {[&] { return batches.next(); },
               [&]() -> Work::Work {
                   const auto derivation =
                       std::make_shared<Derivation>(source, request, filter, contradiction);
                   return [derivation](const Batch& batch) { return derivation->rules_of(batch); };
               },
               [&](const BatchResult& result) {
                   collection.take(result);
                   progress(done += result.classes);
               }});
    collection.finish();
}

}  // namespace korv::tools
