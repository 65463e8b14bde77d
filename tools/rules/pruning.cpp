#include "rules/pruning.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <iterator>
#include <numeric>
#include <optional>
#include <tuple>
#include <utility>

#include "rules/confidence.h"
#include "rules/outdone_claims.h"
#include "rules/rule_order.h"

namespace korv::tools {

namespace {

/// The ends of what a measure of a rule can be.
template <typename Value>
struct Ends {
    Value low;
    Value high;
};

template <typename Value>
Ends<Value> ends(const Value& a, const Value& b) {
    return b < a ? Ends<Value>{b, a} : Ends<Value>{a, b};
}

/// The ends of the confidence. It has none where no transaction need meet the premise.
std::optional<Ends<Confidence>> confidence(const FoundRule& rule) {
    const Confidence at_low(rule.at_low);
    const Confidence at_high(rule.at_high);
    return at_low.is_defined() && at_high.is_defined() ? std::optional(ends(at_low, at_high)) : std::nullopt;
}

/// The leverage of a table, times the square of N. For counts of N < 2^31 transactions, or of any N that are
/// possible, it fits: it is then at most a quarter of that square.
std::int64_t leverage(const Contingency& table, Count transactions) {
    return static_cast<std::int64_t>(std::uint64_t{table.both} * transactions -
                                     std::uint64_t{table.premise} * table.conclusion);
}

/// Whether a rule has no exception, whatever is unknown of it: then it is a statement about all transactions.
bool is_statement(const FoundRule& rule) {
    const auto is_exact = [](const Contingency& table) {
        return table.both == table.premise && table.premise != 0;
    };
    return is_exact(rule.at_low) && is_exact(rule.at_high);
}

/// Whether more transactions may meet both sides of a rule than meet its premise.
bool may_contradict_itself(const FoundRule& rule) {
    return rule.at_low.both > rule.at_low.premise || rule.at_high.both > rule.at_high.premise;
}

/// Values by their order, from 1; equal ones have the same rank.
template <typename Value>
class Ranks {
public:
    explicit Ranks(std::vector<Value> values) : values_(std::move(values)) {
        std::sort(values_.begin(), values_.end());
        values_.erase(std::unique(values_.begin(), values_.end()), values_.end());
    }

    /// The rank of one of the values.
    Rank operator()(const Value& value) const {
        return static_cast<Rank>(std::lower_bound(values_.begin(), values_.end(), value) - values_.begin()) +
               1;
    }

private:
    std::vector<Value> values_;  ///< ascending, each once
};

/// The ranks of the ends of a measure, by rule; of 0 and `unreachable` where it has none.
template <typename Measured>
std::vector<Ends<Rank>> ranks_of_ends(const std::vector<FoundRule>& rules, Measured measured) {
    using Value = decltype(measured(rules.front())->low);
    std::vector<Value> values;
    values.reserve(2 * rules.size());
    for (const FoundRule& rule : rules) {
        if (const auto found = measured(rule)) {
            values.push_back(found->low);
            values.push_back(found->high);
        }
    }
    const Ranks<Value> ranks(std::move(values));
    std::vector<Ends<Rank>> result;
    result.reserve(rules.size());
    for (const FoundRule& rule : rules) {
        const auto found = measured(rule);
        result.push_back(found ? Ends<Rank>{ranks(found->low), ranks(found->high)}
                               : Ends<Rank>{0, unreachable});
    }
    return result;
}

/// Which sides of a rule are negated.
enum class Signs : std::size_t { none, both, conclusion, premise };

Signs signs(const FoundRule& rule) {
    if (rule.premise.is_negated()) {
        return rule.conclusion.is_negated() ? Signs::both : Signs::premise;
    }
    return rule.conclusion.is_negated() ? Signs::conclusion : Signs::none;
}

/// Whether one side is negated and the other one is not.
bool has_opposite_signs(const FoundRule& rule) {
    return rule.premise.is_negated() != rule.conclusion.is_negated();
}

/// Of rules of the same signs: which of them is compared with which, and how.
struct Comparison {
    Signs signs;
    bool is_conclusion_first;  ///< whether the conclusion is the first itemset of a claim
    Outdoing outdoing;
};

/// The larger a plain premise, the more transactions meet it; a negated one is met by fewer. A rule that says
/// more has a premise that is met by more, and a conclusion that is met by fewer.
constexpr std::array domination = {
    Comparison{Signs::none, false, {Stand::contains, Stand::within}},
    Comparison{Signs::both, true, {Stand::contains, Stand::within}},
    Comparison{Signs::conclusion, false, {Stand::contains, Stand::contains}},
    Comparison{Signs::premise, false, {Stand::within, Stand::within}},
};

constexpr std::array domination_of_same_conclusion = {
    Comparison{Signs::none, false, {Stand::contains, Stand::equals}},
    Comparison{Signs::both, false, {Stand::within, Stand::equals}},
    Comparison{Signs::conclusion, false, {Stand::contains, Stand::equals}},
    Comparison{Signs::premise, false, {Stand::within, Stand::equals}},
};

/// A rule without exception, as what it says. Rules of the same statement are contrapositives of each other.
struct Statement {
    /// `none`: whoever meets the first itemset meets the second. `conclusion`: nobody meets both. `premise`:
    /// everybody meets one of them.
    Signs form;
    ItemsetId first;
    ItemsetId second;
    std::uint32_t rule;

    auto key() const { return std::tuple(form, first, second); }
};

Statement statement(const FoundRule& rule, std::uint32_t number) {
    const ItemsetId premise = rule.premise.itemset();
    const ItemsetId conclusion = rule.conclusion.itemset();
    switch (signs(rule)) {
        case Signs::none:
            return {Signs::none, premise, conclusion, number};
        case Signs::both:
            return {Signs::none, conclusion, premise, number};
        case Signs::conclusion:
        case Signs::premise:
            break;
    }
    return {signs(rule), std::min(premise, conclusion), std::max(premise, conclusion), number};
}

/// The rest that stands for an itemset; its own number where there is none.
ItemsetId rest_of(ItemsetId itemset, const Rests& rests) {
    return itemset < rests.size() ? rests[itemset] : itemset;
}

/// Which itemsets are sides, or rests that stand for them.
std::vector<char> itemsets_of_sides(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets,
                                    const Rests& rests) {
    std::vector<char> is_side(itemsets.size());
    for (const FoundRule& rule : rules) {
        for (const ItemsetId itemset : {rule.premise.itemset(), rule.conclusion.itemset()}) {
            is_side[itemset] = 1;
            is_side[rest_of(itemset, rests)] = 1;
        }
    }
    return is_side;
}

/// Prunes rules. What threads do at a time leaves out different rules, or notes by itself what it leaves out.
class Pruning {
public:
    /// Refers to all of them.
    Pruning(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets, Count transactions,
            Workers& workers, const Rests& rests)
        : rules_(rules),
          itemsets_(itemsets),
          rests_(rests),
          transactions_(transactions),
          workers_(workers),
          is_left_out_(rules.size()) {}

    /// Call this once.
    Pruned prune(Prune what);

    bool is_left_out(std::size_t rule) const { return is_left_out_[rule] != 0; }

private:
    using Tasks = std::vector<std::function<void()>>;

    /// How many of the tasks that mark outdone claims, if any, take much memory.
    static constexpr std::size_t large_tasks = 3;

    std::size_t leave_out_contrapositives();
    std::size_t leave_out_weaker(bool has_same_conclusion);
    std::size_t leave_out_unproductive();
    void mark_implied_implications(std::vector<char>& is_implied) const;
    void mark_implied_exclusions(std::vector<char>& is_implied) const;
    void mark_implied_alternatives(std::vector<char>& is_implied) const;
    void leave_out_dominated(const Comparison& comparison);
    std::vector<Claim> claims_either_way(bool have_opposite_signs) const;
    std::vector<Claim> claims_by_rests(bool have_opposite_signs) const;
    std::vector<Ends<Rank>> leverages() const;
    bool is_preferred(std::uint32_t a, std::uint32_t b) const;
    std::size_t count_left_out() const {
        return static_cast<std::size_t>(std::ranges::count(is_left_out_, char{1}));
    }

    const std::vector<FoundRule>& rules_;
    const ItemsetPool& itemsets_;
    const Rests& rests_;
    const Count transactions_;
    Workers& workers_;
    std::optional<OutdoneClaims> outdone_claims_;
    std::vector<Ends<Rank>> confidences_;  ///< by rule
    std::vector<Ends<Rank>> leverages_;    ///< by rule; empty where they are not compared
    std::vector<char> is_left_out_;        ///< by rule
    std::vector<Statement> statements_;    ///< of rules without exception that are no turned-round ones
};

Pruned Pruning::prune(Prune what) {
    Pruned pruned;
    Tasks preparation = {
        [&] {
            outdone_claims_.emplace(itemsets_, itemsets_of_sides(rules_, itemsets_, rests_),
                                    std::min(workers_.threads(), large_tasks));
        },
        [&] { confidences_ = ranks_of_ends(rules_, confidence); },
        [&] { pruned.turned_round = leave_out_contrapositives(); },
    };
    if (what == Prune::productive) {
        preparation.emplace_back([&] { leverages_ = leverages(); });
    }
    workers_.run(preparation);
    pruned.weaker = leave_out_weaker(what == Prune::same);
    if (what == Prune::productive) {
        pruned.unproductive = leave_out_unproductive();
    }
    return pruned;
}

/// Leaves out rules of which the contrapositive is better to read. Returns how many.
std::size_t Pruning::leave_out_contrapositives() {
    std::vector<Statement> all;
    for (std::uint32_t rule = 0; rule < rules_.size(); ++rule) {
        if (is_statement(rules_[rule])) {
            all.push_back(statement(rules_[rule], rule));
        }
    }
    std::ranges::sort(all, [this](const Statement& a, const Statement& b) {
        return a.key() != b.key() ? a.key() < b.key() : is_preferred(a.rule, b.rule);
    });
    for (const Statement& one : all) {
        if (!statements_.empty() && statements_.back().key() == one.key()) {
            is_left_out_[one.rule] = 1;
        } else {
            statements_.push_back(one);
        }
    }
    return all.size() - statements_.size();
}

/// Whether rule a is the better one to read of two that say the same.
bool Pruning::is_preferred(std::uint32_t a, std::uint32_t b) const {
    const FoundRule& one = rules_[a];
    const FoundRule& other = rules_[b];
    return negated_sides(one) != negated_sides(other) ? negated_sides(one) < negated_sides(other)
                                                      : is_shorter(one, other, itemsets_);
}

/// Leaves out what a rule of the same conclusion dominates or, unless `has_same_conclusion`, what any rule
/// dominates or implies. Returns how many.
std::size_t Pruning::leave_out_weaker(bool has_same_conclusion) {
    const std::size_t before = count_left_out();
    Tasks tasks;
    std::vector<char> is_implied;
    if (!has_same_conclusion) {
        is_implied.resize(rules_.size());
        tasks = {[&] { mark_implied_implications(is_implied); }, [&] { mark_implied_exclusions(is_implied); },
                 [&] { mark_implied_alternatives(is_implied); }};
        if (std::ranges::none_of(rules_, may_contradict_itself)) {
            // What dominates a rule without exception has none either, and implies it: that is looked for.
            for (const Statement& one : statements_) {
                confidences_[one.rule].high = unreachable;
            }
        }
    }
    for (const Comparison& comparison : has_same_conclusion ? domination_of_same_conclusion : domination) {
        tasks.emplace_back([this, comparison] { leave_out_dominated(comparison); });
    }
    workers_.run(tasks);
    for (std::size_t rule = 0; rule < is_implied.size(); ++rule) {
        is_left_out_[rule] = static_cast<char>(is_left_out_[rule] | is_implied[rule]);
    }
    return count_left_out() - before;
}

// Rules without exception that others without exception imply are marked by what they say.

void Pruning::mark_implied_implications(std::vector<char>& is_implied) const {
    std::vector<Claim> claims;
    for (const auto& [form, first, second, rule] : statements_) {
        if (form == Signs::none) {
            claims.push_back({first, second, 1, 1, rule});
        }
    }
    outdone_claims_->mark(claims, {Stand::contains, Stand::within}, is_implied);
}

void Pruning::mark_implied_exclusions(std::vector<char>& is_implied) const {
    std::vector<Claim> claims;
    for (const auto& [form, first, second, rule] : statements_) {
        if (form == Signs::conclusion) {
            // It implies others either way round.
            claims.push_back({first, second, 1, 1, rule});
            claims.push_back({second, first, 1, unreachable, rule});
        }
    }
    outdone_claims_->mark(claims, {Stand::contains, Stand::contains}, is_implied);
}

/// Those of a negated premise and a plain conclusion say that everybody meets the union of the two.
void Pruning::mark_implied_alternatives(std::vector<char>& is_implied) const {
    ItemsetPool unions;
    std::vector<std::uint32_t> best;  // rule of each union
    Itemset joined;
    for (const auto& [form, first, second, rule] : statements_) {
        if (form != Signs::premise) {
            continue;
        }
        joined.clear();
        std::ranges::set_union(itemsets_[first], itemsets_[second], std::back_inserter(joined));
        const ItemsetId id = unions.intern(joined);
        if (id == best.size()) {
            best.push_back(rule);
            continue;
        }
        const bool is_better = is_preferred(rule, best[id]);
        is_implied[is_better ? best[id] : rule] = 1;
        best[id] = is_better ? rule : best[id];
    }
    std::vector<Claim> claims;
    for (ItemsetId id = 0; id < best.size(); ++id) {
        claims.push_back({id, 0, 1, 1, best[id]});
    }
    OutdoneClaims(unions, std::vector<char>(unions.size(), 1))
        .mark(claims, {Stand::within, Stand::equals}, is_implied);
}

/// Leaves out rules that others of the same signs dominate. Rules that are left out already still dominate
/// others.
void Pruning::leave_out_dominated(const Comparison& comparison) {
    std::vector<Claim> claims;
    for (std::uint32_t rule = 0; rule < rules_.size(); ++rule) {
        if (signs(rules_[rule]) != comparison.signs || confidences_[rule].low == 0) {
            continue;
        }
        ItemsetId first = rules_[rule].premise.itemset();
        ItemsetId second = rules_[rule].conclusion.itemset();
        if (comparison.is_conclusion_first) {
            std::swap(first, second);
        }
        const Rank high = is_left_out(rule) ? unreachable : confidences_[rule].high;
        claims.push_back({first, second, confidences_[rule].low, high, rule});
    }
    outdone_claims_->mark(claims, comparison.outdoing, is_left_out_);
}

/// The ends of the leverage, by rule. The upper one lacks a transaction, that a rule has to gain over another
/// one: is that much beyond what chance gives. As a multiple of N squared, one transaction is N.
std::vector<Ends<Rank>> Pruning::leverages() const {
    return ranks_of_ends(rules_, [this](const FoundRule& rule) {
        const auto [low, high] =
            ends(leverage(rule.at_low, transactions_), leverage(rule.at_high, transactions_));
        return std::optional(Ends<std::int64_t>{low, high - transactions_ + 1});
    });
}

/// Leaves out what is hardly better than a rule of fewer items, whichever of its sides is the premise.
/// Returns how many.
std::size_t Pruning::leave_out_unproductive() {
    constexpr std::size_t kinds = 2;  // of equal and of opposite signs
    const std::size_t before = count_left_out();
    // All claims are made before any is outdone, so that rules which are left out still outdo others.
    std::array<std::vector<Claim>, kinds> either_way;
    std::array<std::vector<Claim>, kinds> by_rests;
    workers_.run(kinds, [&](std::size_t kind) {
        either_way[kind] = claims_either_way(kind != 0);
        by_rests[kind] = claims_by_rests(kind != 0);
    });
    workers_.run(kinds, [&](std::size_t kind) {
        outdone_claims_->mark(either_way[kind], {Stand::within, Stand::within}, is_left_out_);
        // Of two plain sides, both have alternatives to leave out, of a plain and a negated one the first.
        outdone_claims_->mark(by_rests[kind], {Stand::within, kind == 0 ? Stand::within : Stand::equals},
                              is_left_out_);
    });
    return count_left_out() - before;
}

/// Claims of the rules that are not left out and whose signs are equal, or opposite. Turned round, or with
/// both sides negated, a rule has the same leverage; with one of them negated, it has the opposite one. So
/// such rules compare whichever of their sides is the premise, and whichever is negated: each has its claim
/// and, to outdo others alone, the same one turned round.
std::vector<Claim> Pruning::claims_either_way(bool have_opposite_signs) const {
    std::vector<Claim> claims;
    claims.reserve(2 * rules_.size());
    for (std::uint32_t rule = 0; rule < rules_.size(); ++rule) {
        if (has_opposite_signs(rules_[rule]) != have_opposite_signs || is_left_out(rule)) {
            continue;
        }
        const ItemsetId premise = rules_[rule].premise.itemset();
        const ItemsetId conclusion = rules_[rule].conclusion.itemset();
        claims.push_back({premise, conclusion, leverages_[rule].low, leverages_[rule].high, rule});
        claims.push_back({conclusion, premise, leverages_[rule].low, unreachable, rule});
    }
    return claims;
}

/// Claims of rules that have alternatives to leave out: of two plain sides, or of a plain side, which comes
/// first, and a negated one. To outdo them alone, there are claims by the rests that stand for sides, which
/// turn the sign of each.
std::vector<Claim> Pruning::claims_by_rests(bool have_opposite_signs) const {
    std::vector<Claim> claims;
    if (rests_.empty()) {
        return claims;
    }
    for (std::uint32_t rule = 0; rule < rules_.size(); ++rule) {
        if (is_left_out(rule)) {
            continue;
        }
        const Rank low = leverages_[rule].low;
        const ItemsetId premise = rules_[rule].premise.itemset();
        const ItemsetId conclusion = rules_[rule].conclusion.itemset();
        const ItemsetId rest_of_premise = rest_of(premise, rests_);
        const ItemsetId rest_of_conclusion = rest_of(conclusion, rests_);
        const auto outdo_as = [&claims, low, rule](ItemsetId one, ItemsetId other) {
            claims.push_back({one, other, low, unreachable, rule});
            claims.push_back({other, one, low, unreachable, rule});
        };
        if (has_opposite_signs(rules_[rule]) != have_opposite_signs) {
            if (rest_of_premise != premise) {
                outdo_as(rest_of_premise, conclusion);
            }
            if (rest_of_conclusion != conclusion) {
                outdo_as(premise, rest_of_conclusion);
            }
            continue;
        }
        if (rest_of_premise != premise && rest_of_conclusion != conclusion) {
            outdo_as(rest_of_premise, rest_of_conclusion);
        }
        if (signs(rules_[rule]) == Signs::premise) {
            claims.push_back({conclusion, premise, low, leverages_[rule].high, rule});
        } else if (signs(rules_[rule]) != Signs::both) {
            claims.push_back({premise, conclusion, low, leverages_[rule].high, rule});
        }
    }
    return claims;
}

}  // namespace

Rests rests_of_sides(const std::vector<FoundRule>& rules, ItemsetPool& itemsets, const ColumnFacts& columns) {
    std::vector<char> is_side(itemsets.size());
    for (const FoundRule& rule : rules) {
        is_side[rule.premise.itemset()] = 1;
        is_side[rule.conclusion.itemset()] = 1;
    }
    Rests rests(is_side.size());
    std::iota(rests.begin(), rests.end(), ItemsetId{0});
    bool has_any = false;
    for (ItemsetId side = 0; side < rests.size(); ++side) {
        const Itemset rest = is_side[side] != 0 ? columns.worded(itemsets[side]).rest : Itemset();
        if (!rest.empty()) {
            rests[side] = itemsets.intern(rest);
            has_any = true;
        }
    }
    return has_any ? rests : Rests();
}

Pruned prune_rules(std::vector<FoundRule>& rules, const ItemsetPool& itemsets, Count transactions,
                   Prune prune, Workers& workers, const Rests& rests) {
    if (prune == Prune::none) {
        return {};
    }
    Pruning pruning(rules, itemsets, transactions, workers, rests);
    const Pruned pruned = pruning.prune(prune);
    std::size_t number = 0;
    std::erase_if(rules, [&](const FoundRule&) { return pruning.is_left_out(number++); });
    return pruned;
}

}  // namespace korv::tools
