// Times the pruning of made rules:
//
//     korv_bench_pruning [--benchmark_...]
//
// "short": rules of two to six items of 500, the more frequent ones more often; the sides are of one to five
// items, in all four combinations of plain and negated sides. "long": rules of about 62 items of 119, whose
// sides are those of 300 nested families, as the rules of dense data are before they are worded in few items.
// Of the rules, one in eight has no exception and one in eight is bounded; the other confidences are random.

#include "rules/pruning.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "rules/plain_pruning.h"

namespace korv::tools {
namespace {

constexpr Count transactions = 100'000;

struct MadeRules {
    ItemsetPool itemsets;
    std::vector<FoundRule> rules;
};

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

using PruneRules = Pruned (*)(std::vector<FoundRule>&, const ItemsetPool&, Count, Prune);

void prune(benchmark::State& state, const MadeRules& made, PruneRules prune_them, Prune what) {
    std::size_t left = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<FoundRule> rules = made.rules;
        state.ResumeTiming();
        prune_them(rules, made.itemsets, transactions, what);
        left = rules.size();
    }
    state.counters["rules"] = static_cast<double>(made.rules.size());
    state.counters["left"] = static_cast<double>(left);
}

void register_rules(const std::string& name, MadeRules (*make)(std::size_t), std::size_t count,
                    PruneRules prune_them) {
    constexpr std::array prunes = {std::pair("same", Prune::same), std::pair("full", Prune::full),
                                   std::pair("productive", Prune::productive)};
    for (const auto& [word, what] : prunes) {
        // Made when they are measured, and kept for the next one.
        benchmark::RegisterBenchmark(
            (name + '_' + std::to_string(count) + '/' + word).c_str(),
            [=, what = what](benchmark::State& state) { prune(state, make(count), prune_them, what); })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1);
    }
}

}  // namespace
}  // namespace korv::tools

int main(int argc, char** argv) {
    using namespace korv::tools;
    benchmark::Initialize(&argc, argv);
    register_rules("short", short_rules, 1'000'000, prune_rules);
    register_rules("long", long_rules, 171'000, prune_rules);
    register_rules("long", long_rules, 1'000'000, prune_rules);
    register_rules("plain_short", short_rules, 20'000, korv::test::prune_rules_plainly);
    register_rules("short", short_rules, 20'000, prune_rules);
    register_rules("plain_long", long_rules, 20'000, korv::test::prune_rules_plainly);
    register_rules("long", long_rules, 20'000, prune_rules);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
