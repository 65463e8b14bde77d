#include "rules/rule_derivation.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <optional>

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

/// Takes the pairs of one class after the other.
class Derivation final : public PairSink {
public:
    Derivation(const RuleSource& source, const RuleRequest& request, const RuleFilter& filter,
               ItemsetPool& pool, Accounting& accounting, const AddRule& add,
               const Contradiction& contradiction)
        : source_(source),
          filter_(filter),
          pool_(pool),
          accounting_(accounting),
          contradiction_(contradiction),
          merge_(request.readings, pool, accounting, add) {
        if (request.wording == Wording::shortest) {
            shortest_.emplace(source.entries);
        }
    }

    void begin(const LatticeEntry& of_class) {
        class_ = &of_class;
        bases_.clear();
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
        ++accounting_.pairs;
        find_rules(pair);
        if (!found_.empty()) {
            word(pair);
        }
    }

    /// No more pairs of this class come.
    void end_of_class() { merge_.settle(candidates_); }

    /// No more classes come.
    void finish() { merge_.settle(waiting_); }

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
    const RuleFilter& filter_;
    ItemsetPool& pool_;
    Accounting& accounting_;
    const Contradiction& contradiction_;
    AssociationMerge merge_;
    std::optional<ShortestWording> shortest_;

    const LatticeEntry* class_ = nullptr;
    std::unordered_set<const Itemset*, ByContent, ByContent> bases_;  ///< of the class, so far
    std::vector<CountedRule> found_;                                  ///< of a pair
    std::vector<MergeCandidate> candidates_;                          ///< of the class
    std::vector<MergeCandidate> waiting_;  ///< of all classes: those with a side that a column words
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
        ++accounting_.derived;
        if (const auto step = filter_.refused_by_counts(form, rule.at_low, rule.at_high)) {
            ++accounting_[*step];
            continue;
        }
        found_.push_back(rule);
    }
}

/// Turns the rules in `found_` into candidates.
void Derivation::word(const Pair& pair) {
    const bool is_known = pair.difference_support.lower == pair.difference_support.upper;
    const ItemSpan difference_items =
        shortest_ && is_known ? shortest_->of_itemset(pair.difference, pair.difference_support.lower)
                              : ItemSpan(pair.difference);
    const ItemSpan base_items =
        shortest_ ? shortest_->of_base(pair.base, pair.base_node, difference_items) : ItemSpan(pair.base);
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
            ++accounting_[Step::columns];
            continue;
        }
        const WordedSide premise_side = of_premise.side(is_premise_negated);
        const WordedSide conclusion_side = of_conclusion.side(is_conclusion_negated);
        if (const auto step = filter_.refused_by_sides(premise_side, conclusion_side, source_.columns)) {
            ++accounting_[*step];
            continue;
        }
        add_candidate(rule, premise_side, conclusion_side, base, difference);
    }
}

void Derivation::add_candidate(const CountedRule& rule, const WordedSide& premise,
                               const WordedSide& conclusion, const WordedItemset& base,
                               const WordedItemset& difference) {
    const auto side = [this](const WordedSide& worded) {
        return Side(pool_.intern(worded.items), worded.is_negated);
    };
    const auto stands_for = [this](const WordedItemset& itemset) {
        return pool_.intern(itemset.is_turned() ? ItemSpan(itemset.rest) : itemset.items);
    };
    const auto [first, second] = std::minmax({stands_for(base), stands_for(difference)});
    // Groups 3 and 4 have one negated side; each itemset for which its rest stands turns that once more.
    const bool is_opposite = (group(rule.form) >= 3) != (base.is_turned() != difference.is_turned());
    const FoundRule found = {side(premise), side(conclusion), rule.at_low, rule.at_high, rule.form};
    if (const auto step = filter_.refused_at_last(found, premise, conclusion)) {
        ++accounting_[*step];
        return;
    }
    const bool waits = !base.rest.empty() || !difference.rest.empty();
    (waits ? waiting_ : candidates_).push_back({found, {first, second, is_opposite}, class_});
}

}  // namespace

void derive_rules(const RuleSource& source, const RuleRequest& request, const RuleFilter& filter,
                  ItemsetPool& pool, Accounting& accounting, const AddRule& add,
                  const DerivationProgress& progress, const Contradiction& contradiction) {
    Derivation derivation(source, request, filter, pool, accounting, add, contradiction);
    Pairs pairs(source.supports, derivation);
    accounting.classes = source.entries.size();
    accounting.transactions = source.transactions;
    std::size_t done = 0;
    for (const LatticeEntry& entry : source.entries) {
        derivation.begin(entry);
        pairs.of_class(entry);
        derivation.end_of_class();
        progress(++done);
    }
    derivation.finish();
}

}  // namespace korv::tools
