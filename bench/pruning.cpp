// Times the pruning of made rules:
//
//     korv_bench_pruning [--benchmark_...]
//
// "short" and "long" are the rules of made_rules.h.

#include "rules/pruning.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "made_rules.h"
#include "rules/plain_pruning.h"

namespace korv::tools {
namespace {

using PruneRules = Pruned (*)(std::vector<FoundRule>&, const ItemsetPool&, Count, Prune, const Rests&);

void prune(benchmark::State& state, const MadeRules& made, PruneRules prune_them, Prune what) {
    std::size_t left = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<FoundRule> rules = made.rules;
        state.ResumeTiming();
        prune_them(rules, made.itemsets, made_transactions, what, {});
        left = rules.size();
    }
    state.counters["rules"] = static_cast<double>(made.rules.size());
    state.counters["left"] = static_cast<double>(left);
}

Pruned prune_in_one_thread(std::vector<FoundRule>& rules, const ItemsetPool& itemsets, Count transactions,
                           Prune what, const Rests& rests) {
    Workers alone(1);
    return prune_rules(rules, itemsets, transactions, what, alone, rests);
}

void register_rules(const std::string& name, MadeRules (*make)(std::size_t), std::size_t count,
                    PruneRules prune_them) {
    constexpr std::array<std::pair<const char*, Prune>, 3> prunes = {
        {{"same", Prune::same}, {"full", Prune::full}, {"productive", Prune::productive}}};
    for (const auto& [word, prune_what] : prunes) {
        // Made when they are measured, and kept for the next one.
        benchmark::RegisterBenchmark(
            (name + '_' + std::to_string(count) + '/' + word).c_str(),
            [=, what = prune_what](benchmark::State& state) { prune(state, make(count), prune_them, what); })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1);
    }
}

}  // namespace
}  // namespace korv::tools

int main(int argc, char** argv) {
    using namespace korv::tools;
    benchmark::Initialize(&argc, argv);
    register_rules("short", short_rules, 1'000'000, prune_in_one_thread);
    register_rules("long", long_rules, 171'000, prune_in_one_thread);
    register_rules("long", long_rules, 1'000'000, prune_in_one_thread);
    register_rules("plain_short", short_rules, 20'000, korv::test::prune_rules_plainly);
    register_rules("short", short_rules, 20'000, prune_in_one_thread);
    register_rules("plain_long", long_rules, 20'000, korv::test::prune_rules_plainly);
    register_rules("long", long_rules, 20'000, prune_in_one_thread);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
