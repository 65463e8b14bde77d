#include "rules/random_rules.h"

#include <algorithm>
#include <iterator>

namespace korv::test {

using tools::Contingency;
using tools::FoundRule;
using tools::Side;

namespace {

Count below(Count bound, std::mt19937& random) {
    return static_cast<Count>(random()) % bound;
}

/// Sides of rules, most of them those of an earlier rule with some items more or less.
class RandomSides {
public:
    RandomSides(const RuleSetShape& shape, std::mt19937& random) : shape_(shape), random_(random) {}

    /// Two disjoint itemsets, neither of them empty.
    std::pair<Itemset, Itemset> next() {
        auto [first, second] = draw();
        for (const Item item : first) {
            second.erase(item);
        }
        if (second.empty()) {
            return next();
        }
        earlier_.emplace_back(first, second);
        return {{first.begin(), first.end()}, {second.begin(), second.end()}};
    }

private:
    using Sides = std::pair<std::set<Item>, std::set<Item>>;

    Sides draw() {
        if (earlier_.empty() || below(5, random_) == 0) {
            return {itemset(), itemset()};
        }
        Sides sides = earlier_[below(static_cast<Count>(earlier_.size()), random_)];
        if (below(4, random_) == 0) {
            std::swap(sides.first, sides.second);
        }
        for (Count changes = 1 + below(4, random_); changes > 0; --changes) {
            change(below(2, random_) == 0 ? sides.first : sides.second);
        }
        return sides;
    }

    std::set<Item> itemset() {
        std::set<Item> chosen;
        for (std::size_t size = 1 + below(static_cast<Count>(shape_.most_items), random_); size > 0; --size) {
            chosen.insert(1 + below(shape_.items, random_));
        }
        return chosen;
    }

    void change(std::set<Item>& chosen) {
        if (below(2, random_) == 0 && chosen.size() < shape_.most_items) {
            chosen.insert(1 + below(shape_.items, random_));
        } else if (chosen.size() > 1) {
            chosen.erase(std::next(chosen.begin(), below(static_cast<Count>(chosen.size()), random_)));
        }
    }

    const RuleSetShape& shape_;
    std::mt19937& random_;
    std::vector<Sides> earlier_;
};

/// Adds rules, whose counts `count` sets. It returns false for a rule that is not to be added.
template <typename SetCounts>
void add_rules(RuleSet& set, const RuleSetShape& shape, std::mt19937& random, SetCounts set_counts) {
    RandomSides sides(shape, random);
    std::set<std::pair<Side, Side>> seen;
    for (std::size_t i = 0; i < shape.rules; ++i) {
        const auto [first, second] = sides.next();
        const Side premise = {set.itemsets.intern(first), below(2, random) != 0};
        const Side conclusion = {set.itemsets.intern(second), below(2, random) != 0};
        FoundRule rule = {premise, conclusion, {}, {}, Form::R111};
        if (set_counts(rule, first, second) && seen.emplace(premise, conclusion).second) {
            set.rules.push_back(rule);
        }
    }
}

/// Counts of random transactions over up to 32 items.
class RandomDatabase {
public:
    RandomDatabase(Item items, std::mt19937& random) {
        const Count lines = 1 + below(12, random);
        const Count one_is_met_of = 3 + items / 6;
        for (Count i = 0; i < lines; ++i) {
            std::set<Item>& transaction = transactions_.emplace_back();
            for (Item item = 1; item <= items; ++item) {
                if (below(one_is_met_of, random) == 0) {
                    transaction.insert(item);
                }
            }
        }
    }

    Count size() const { return static_cast<Count>(transactions_.size()); }

    bool meets(std::size_t transaction, const Itemset& items) const {
        return std::ranges::any_of(items,
                                   [&](Item item) { return transactions_[transaction].contains(item); });
    }

    Count support(const Itemset& items) const {
        Count support = 0;
        for (std::size_t i = 0; i < transactions_.size(); ++i) {
            support += meets(i, items) ? 1 : 0;
        }
        return support;
    }

private:
    std::vector<std::set<Item>> transactions_;
};

/// The supports of a pair of itemsets.
struct PairSupports {
    Count transactions;
    Count both_itemsets;  ///< of their union
    Count base;
    Count difference;
};

/// The table of a rule with these signs, whose premise is the base or the difference.
Contingency table_of(const PairSupports& pair, bool is_base_premise, const FoundRule& rule) {
    const Count premise = is_base_premise ? pair.base : pair.difference;
    const Count conclusion = is_base_premise ? pair.difference : pair.base;
    const Count both = pair.base + pair.difference - pair.both_itemsets;
    const Count all = pair.transactions;
    const Count neither = all - pair.both_itemsets;
    if (rule.premise.is_negated()) {
        return rule.conclusion.is_negated() ? Contingency{all - premise, all - conclusion, neither}
                                            : Contingency{all - premise, conclusion, conclusion - both};
    }
    return rule.conclusion.is_negated() ? Contingency{premise, all - conclusion, premise - both}
                                        : Contingency{premise, conclusion, both};
}

}  // namespace

RuleSet contradictory_rules(const RuleSetShape& shape, std::mt19937& random) {
    RuleSet set;
    set.transactions = 1 + below(12, random);
    const auto table = [&] { return Contingency{below(5, random), below(7, random), below(5, random)}; };
    add_rules(set, shape, random, [&](FoundRule& rule, const Itemset&, const Itemset&) {
        rule.at_low = table();
        if (below(3, random) == 0) {
            rule.at_low.both = rule.at_low.premise;
        }
        rule.at_high = rule.at_low;
        if (shape.one_is_bounded_of != 0 && below(shape.one_is_bounded_of, random) == 0) {
            rule.at_high = table();
        }
        return true;
    });
    return set;
}

RuleSet rules_of_database(const RuleSetShape& shape, std::mt19937& random) {
    RuleSet set;
    const RandomDatabase database(shape.items, random);
    set.transactions = database.size();
    add_rules(set, shape, random, [&](FoundRule& rule, const Itemset& first, const Itemset& second) {
        Itemset joined;
        std::ranges::set_union(first, second, std::back_inserter(joined));
        const bool is_base_premise = below(2, random) == 0;
        const Itemset& base = is_base_premise ? first : second;
        const Itemset& difference = is_base_premise ? second : first;
        PairSupports pair = {set.transactions, database.support(joined), database.support(base),
                             database.support(difference)};
        rule.at_low = rule.at_high = table_of(pair, is_base_premise, rule);
        if (shape.one_is_bounded_of != 0 && below(shape.one_is_bounded_of, random) == 0) {
            const Count known = pair.difference;
            const Count least = pair.both_itemsets - pair.base;
            pair.difference = least + below(known - least + 1, random);
            rule.at_low = table_of(pair, is_base_premise, rule);
            pair.difference = known + below(pair.both_itemsets - known + 1, random);
            rule.at_high = table_of(pair, is_base_premise, rule);
        }
        // A rule has to be met by a transaction.
        return std::min(rule.at_low.both, rule.at_high.both) > 0;
    });
    return set;
}

}  // namespace korv::test
