#include "rules/pruning.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <numeric>
#include <optional>
#include <span>
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

/// What pruning works on. Its steps come in their order; each returns how many rules it leaves out.
class Pruning {
public:
    /// Refers to all three.
    Pruning(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets, const Rests& rests)
        : rules_(rules),
          itemsets_(itemsets),
          rests_(rests),
          outdone_claims_(itemsets, itemsets_of_sides(rules, itemsets, rests)),
          is_left_out_(rules.size()) {}

    /// Leaves out rules of which the contrapositive is better to read.
    std::size_t leave_out_contrapositives();

    /// Leaves out what a rule of the same conclusion dominates or, unless `has_same_conclusion`, what any
    /// rule dominates or implies.
    std::size_t leave_out_weaker(bool has_same_conclusion);

    /// Leaves out what is hardly better than a rule of fewer items, whichever of its sides is the premise.
    std::size_t leave_out_unproductive(Count transactions);

    bool is_left_out(std::size_t rule) const { return is_left_out_[rule] != 0; }

private:
    void leave_out_implied();
    void leave_out_implied_alternatives();
    void leave_out_outdone(std::span<const Comparison> comparisons, const std::vector<Ends<Rank>>& strengths);
    std::vector<Claim> claims_either_way(bool have_opposite_signs,
                                         const std::vector<Ends<Rank>>& strengths) const;
    std::vector<Claim> claims_by_rests(bool have_opposite_signs,
                                       const std::vector<Ends<Rank>>& strengths) const;
    bool is_preferred(std::uint32_t a, std::uint32_t b) const;
    std::size_t count_left_out() const {
        return static_cast<std::size_t>(std::ranges::count(is_left_out_, char{1}));
    }

    const std::vector<FoundRule>& rules_;
    const ItemsetPool& itemsets_;
    const Rests& rests_;
    OutdoneClaims outdone_claims_;
    std::vector<char> is_left_out_;      ///< by rule
    std::vector<Statement> statements_;  ///< of rules without exception that are no turned-round ones
};

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

std::size_t Pruning::leave_out_weaker(bool has_same_conclusion) {
    const std::size_t before = count_left_out();
    std::vector<Ends<Rank>> confidences = ranks_of_ends(rules_, confidence);
    if (!has_same_conclusion) {
        leave_out_implied();
        if (std::ranges::none_of(rules_, may_contradict_itself)) {
            // What dominates a rule without exception has none either, and implies it: that is done.
            for (const Statement& one : statements_) {
                confidences[one.rule].high = unreachable;
            }
        }
    }
    leave_out_outdone(has_same_conclusion ? std::span<const Comparison>(domination_of_same_conclusion)
                                          : std::span<const Comparison>(domination),
                      confidences);
    return count_left_out() - before;
}

/// Leaves out rules without exception that others without exception imply.
void Pruning::leave_out_implied() {
    std::vector<Claim> implications;
    std::vector<Claim> exclusions;
    for (const auto& [form, first, second, rule] : statements_) {
        if (form == Signs::none) {
            implications.push_back({first, second, 1, 1, rule});
        } else if (form == Signs::conclusion) {
            // It implies others either way round.
            exclusions.push_back({first, second, 1, 1, rule});
            exclusions.push_back({second, first, 1, unreachable, rule});
        }
    }
    outdone_claims_.mark(implications, {Stand::contains, Stand::within}, is_left_out_);
    outdone_claims_.mark(exclusions, {Stand::contains, Stand::contains}, is_left_out_);
    leave_out_implied_alternatives();
}

/// Likewise those of a negated premise and a plain conclusion: they say that everybody meets the union of the
/// two.
void Pruning::leave_out_implied_alternatives() {
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
        is_left_out_[is_better ? best[id] : rule] = 1;
        best[id] = is_better ? rule : best[id];
    }
    std::vector<Claim> claims;
    for (ItemsetId id = 0; id < best.size(); ++id) {
        claims.push_back({id, 0, 1, 1, best[id]});
    }
    OutdoneClaims(unions, std::vector<char>(unions.size(), 1))
        .mark(claims, {Stand::within, Stand::equals}, is_left_out_);
}

/// Leaves out rules that others of the same signs outdo. Rules that are left out already still outdo others.
void Pruning::leave_out_outdone(std::span<const Comparison> comparisons,
                                const std::vector<Ends<Rank>>& strengths) {
    for (const auto& [of_signs, is_conclusion_first, outdoing] : comparisons) {
        std::vector<Claim> claims;
        for (std::uint32_t rule = 0; rule < rules_.size(); ++rule) {
            if (signs(rules_[rule]) != of_signs || strengths[rule].low == 0) {
                continue;
            }
            ItemsetId first = rules_[rule].premise.itemset();
            ItemsetId second = rules_[rule].conclusion.itemset();
            if (is_conclusion_first) {
                std::swap(first, second);
            }
            const Rank high = is_left_out(rule) ? unreachable : strengths[rule].high;
            claims.push_back({first, second, strengths[rule].low, high, rule});
        }
        outdone_claims_.mark(claims, outdoing, is_left_out_);
    }
}

/// Leaves out rules that gain less than one transaction beyond what chance gives over another one.
std::size_t Pruning::leave_out_unproductive(Count transactions) {
    const std::size_t before = count_left_out();
    const std::vector<Ends<Rank>> leverages = ranks_of_ends(rules_, [=](const FoundRule& rule) {
        auto [low, high] = ends(leverage(rule.at_low, transactions), leverage(rule.at_high, transactions));
        // As a multiple of N squared, one transaction is N.
        return std::optional(Ends<std::int64_t>{low, high - transactions + 1});
    });
    // All claims are made before any is outdone, so that rules which are left out still outdo others.
    constexpr Outdoing both_within = {Stand::within, Stand::within};
    std::vector<std::pair<std::vector<Claim>, Outdoing>> compared = {
        {claims_either_way(false, leverages), both_within},
        {claims_either_way(true, leverages), both_within}};
    if (!rests_.empty()) {
        compared.emplace_back(claims_by_rests(false, leverages), both_within);
        compared.emplace_back(claims_by_rests(true, leverages), Outdoing{Stand::within, Stand::equals});
    }
    for (auto& [claims, outdoing] : compared) {
        outdone_claims_.mark(claims, outdoing, is_left_out_);
    }
    return count_left_out() - before;
}

/// Claims of the rules that are not left out and whose signs are equal, or opposite. Turned round, or with
/// both sides negated, a rule has the same leverage; with one of them negated, it has the opposite one. So
/// such rules compare whichever of their sides is the premise, and whichever is negated: each has its claim
/// and, to outdo others alone, the same one turned round.
std::vector<Claim> Pruning::claims_either_way(bool have_opposite_signs,
                                              const std::vector<Ends<Rank>>& strengths) const {
    std::vector<Claim> claims;
    claims.reserve(2 * rules_.size());
    for (std::uint32_t rule = 0; rule < rules_.size(); ++rule) {
        if (is_left_out(rule) || has_opposite_signs(rules_[rule]) != have_opposite_signs) {
            continue;
        }
        const ItemsetId premise = rules_[rule].premise.itemset();
        const ItemsetId conclusion = rules_[rule].conclusion.itemset();
        claims.push_back({premise, conclusion, strengths[rule].low, strengths[rule].high, rule});
        claims.push_back({conclusion, premise, strengths[rule].low, unreachable, rule});
    }
    return claims;
}

/// Claims of rules that have alternatives to leave out: of two plain sides, or of a plain side, which comes
/// first, and a negated one. To outdo them alone, there are claims by the rests that stand for sides, which
/// turn the sign of each.
std::vector<Claim> Pruning::claims_by_rests(bool have_opposite_signs,
                                            const std::vector<Ends<Rank>>& strengths) const {
    std::vector<Claim> claims;
    for (std::uint32_t rule = 0; rule < rules_.size(); ++rule) {
        if (is_left_out(rule)) {
            continue;
        }
        const auto [low, high] = strengths[rule];
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
            claims.push_back({conclusion, premise, low, high, rule});
        } else if (signs(rules_[rule]) != Signs::both) {
            claims.push_back({premise, conclusion, low, high, rule});
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
                   Prune prune, const Rests& rests) {
    Pruned pruned;
    if (prune == Prune::none) {
        return pruned;
    }
    Pruning pruning(rules, itemsets, rests);
    pruned.turned_round = pruning.leave_out_contrapositives();
    pruned.weaker = pruning.leave_out_weaker(prune == Prune::same);
    if (prune == Prune::productive) {
        pruned.unproductive = pruning.leave_out_unproductive(transactions);
    }
    std::size_t number = 0;
    std::erase_if(rules, [&](const FoundRule&) { return pruning.is_left_out(number++); });
    return pruned;
}

}  // namespace korv::tools
