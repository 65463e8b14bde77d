#include "made_rules.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <set>
#include <unordered_set>
#include <utility>

namespace korv::tools {

namespace {

std::size_t below(std::size_t bound, std::mt19937& random) {
    return random() % bound;
}

/// Counts of a rule: about that confident.
Contingency table_of(std::size_t premise_items, std::size_t conclusion_items, bool is_exact,
                     std::mt19937& random) {
    const auto premise = static_cast<Count>(100 + below(3'000 * premise_items, random));
    const auto conclusion = static_cast<Count>(100 + below(6'000 * conclusion_items, random));
    const Count both = premise - (is_exact ? 0 : static_cast<Count>(1 + below(premise / 5, random)));
    return {premise, std::max(conclusion, both), both};
}

/// Adds a rule between two disjoint itemsets, with any signs, if it is new.
class RuleMaker {
public:
    RuleMaker(MadeRules& made, std::mt19937& random) : made_(made), random_(random) {}

    void add(const Itemset& premise, const Itemset& conclusion) {
        const Side from = {made_.itemsets.intern(premise), below(2, random_) != 0};
        const Side to = {made_.itemsets.intern(conclusion), below(2, random_) != 0};
        const std::uint64_t key = std::uint64_t{from.itemset()} << 33 | std::uint64_t{to.itemset()} << 2 |
                                  (from.is_negated() ? 2U : 0U) | (to.is_negated() ? 1U : 0U);
        if (!seen_.insert(key).second) {
            return;
        }
        const std::size_t kind = below(8, random_);
        FoundRule rule = {
            from, to, table_of(premise.size(), conclusion.size(), kind == 0, random_), {}, Form::R111};
        rule.at_high = rule.at_low;
        if (kind == 1) {
            rule.at_low.both -= rule.at_low.both / 20;
        }
        made_.rules.push_back(rule);
    }

private:
    MadeRules& made_;
    std::mt19937& random_;
    std::unordered_set<std::uint64_t> seen_;
};

}  // namespace

MadeRules short_rules(std::size_t count) {
    constexpr double items = 500;
    std::mt19937 random(1);
    std::uniform_real_distribution<double> uniform;
    MadeRules made;
    RuleMaker maker(made, random);
    while (made.rules.size() < count) {
        const std::size_t size = 2 + below(5, random);
        std::set<Item> chosen;
        while (chosen.size() < size) {
            chosen.insert(static_cast<Item>(items * std::pow(uniform(random), 3.0)));
        }
        Itemset order(chosen.begin(), chosen.end());
        std::ranges::shuffle(order, random);
        const auto middle = order.begin() + static_cast<std::ptrdiff_t>(1 + below(size - 1, random));
        std::sort(order.begin(), middle);
        std::sort(middle, order.end());
        maker.add({order.begin(), middle}, {middle, order.end()});
    }
    return made;
}

MadeRules long_rules(std::size_t count) {
    constexpr Item items = 119;
    constexpr std::size_t families = 300;
    std::mt19937 random(1);
    std::vector<Itemset> orders(families);
    for (Itemset& order : orders) {
        for (Item item = 1; item <= items; ++item) {
            order.push_back(item);
        }
        // The beginnings resemble each other.
        std::ranges::shuffle(order.begin() + 20, order.end(), random);
    }
    MadeRules made;
    RuleMaker maker(made, random);
    while (made.rules.size() < count) {
        const Itemset& order = orders[below(families, random)];
        const auto end = order.begin() + static_cast<std::ptrdiff_t>(50 + below(25, random));
        const auto middle = order.begin() + static_cast<std::ptrdiff_t>(1 + below(39, random));
        Itemset first(order.begin(), middle);
        Itemset second(middle, end);
        for (std::size_t dropped = below(4, random); dropped > 0; --dropped) {
            second.erase(second.begin() + static_cast<std::ptrdiff_t>(below(second.size(), random)));
        }
        std::ranges::sort(first);
        std::ranges::sort(second);
        if (below(2, random) == 0) {
            std::swap(first, second);
        }
        maker.add(first, second);
    }
    return made;
}

}  // namespace korv::tools
