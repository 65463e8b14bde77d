// Times the parts of a run on class files:
//
//     korv_bench_parts FILE... [--benchmark_...]

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/globals.h"
#include "app/lattice.h"
#include "engine/difference_supports.h"
#include "index/bounds_cache.h"

namespace korv {
namespace {

constexpr Count minsupp = 1;
constexpr double minconf = 0.5;

/// A class file, loaded and linked.
struct Linked {
    explicit Linked(const std::string& path) : file(path), lattice(file, minconf, minsupp) {
        lattice.Load_DCI();
        lattice.Load_Hash_table();
        lattice.build_lattice();
    }

    std::ifstream file;
    Lattice lattice;
};

/// A query of a run: the support of `whole` without `base`, between the bounds.
struct Query {
    const Itemset* whole;
    const Itemset* base;
    Count lower;
    Count upper;
};

bool partition(const Itemset& whole, const Itemset& first, const Itemset& second) {
    return difference(whole, first) == second;
}

void add_intra_node_queries(NodeRef node, std::vector<Query>& queries) {
    const auto& [itemset, of_class] = *node;
    const std::vector<Itemset>& essentials = of_class.essentials;
    if (essentials.size() == 2 && partition(itemset, essentials.front(), essentials.back())) {
        return;
    }
    for (const Itemset& essential : essentials) {
        queries.push_back({&itemset, &essential, 0, of_class.support});
    }
}

void add_inter_node_queries(const LatticeEntry& entry, std::vector<Query>& queries) {
    const SuccessorList& successors = entry.successors;
    const bool partitioned = successors.size() == 2 &&
                             partition(entry.itemset(), successors.front()->first, successors.back()->first);
    const Count upper = entry.node->second.support;
    for (const NodeRef successor : successors) {
        const Count lower = upper - successor->second.support;
        if (!partitioned) {
            queries.push_back({&entry.itemset(), &successor->first, lower, upper});
        }
        for (const Itemset& essential : successor->second.essentials) {
            queries.push_back({&entry.itemset(), &essential, lower, upper});
        }
    }
}

/// All queries of a run, in their order.
std::vector<Query> queries_of(const Lattice& lattice) {
    std::vector<Query> queries;
    for (NodeRef node = lattice.dci_map.begin(); node != lattice.dci_map.end(); ++node) {
        add_intra_node_queries(node, queries);
    }
    for (const LatticeEntry& entry : lattice.hash_table) {
        add_inter_node_queries(entry, queries);
    }
    return queries;
}

/// Seconds for one of `count` things, all of which each iteration does.
benchmark::Counter seconds_for_each(std::size_t count) {
    return {static_cast<double>(count),
            benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert};
}

void load(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        state.PauseTiming();
        auto file = std::make_unique<std::ifstream>(path);
        auto lattice = std::make_unique<Lattice>(*file, minconf, minsupp);
        state.ResumeTiming();
        lattice->Load_DCI();
        state.PauseTiming();
        state.counters["classes"] = static_cast<double>(lattice->dci_map.size());
        lattice.reset();
        state.ResumeTiming();
    }
    const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
    state.SetBytesProcessed(bytes * state.iterations());
}

void build_lattice(benchmark::State& state, const std::shared_ptr<Linked>& linked) {
    Lattice& lattice = linked->lattice;
    for (auto _ : state) {
        state.PauseTiming();
        lattice.hash_table.clear();
        lattice.Load_Hash_table();
        state.ResumeTiming();
        lattice.build_lattice();
    }
    std::size_t edges = 0;
    for (const LatticeEntry& entry : lattice.hash_table) {
        edges += entry.successors.size();
    }
    state.counters["edges"] = static_cast<double>(edges);
}

void index_supports(benchmark::State& state, const std::shared_ptr<Linked>& linked) {
    for (auto _ : state) {
        linked->lattice.index_supports();
    }
}

std::size_t distinct_differences(const std::vector<Query>& queries) {
    BoundsCache differences(std::numeric_limits<std::size_t>::max());
    return static_cast<std::size_t>(std::ranges::count_if(queries, [&differences](const Query& query) {
        return differences.try_emplace(difference(*query.whole, *query.base)).second;
    }));
}

/// Computes and settles the difference of each query of a run. Remembering earlier queries is part of what is
/// measured: every iteration begins with nothing remembered.
void queries_by_index(benchmark::State& state, const std::shared_ptr<Linked>& linked) {
    const std::vector<Query> queries = queries_of(linked->lattice);
    std::size_t known = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto supports = std::make_unique<DifferenceSupports>(linked->lattice.dci_map);
        known = 0;
        state.ResumeTiming();
        for (Query query : queries) {
            const auto support =
                supports->settle(difference(*query.whole, *query.base), query.lower, query.upper);
            known += support.value_or(0) != 0 ? 1 : 0;
        }
        state.PauseTiming();
        supports.reset();
        state.ResumeTiming();
    }
    state.counters["queries"] = static_cast<double>(queries.size());
    state.counters["known"] = static_cast<double>(known);
    state.counters["distinct"] = static_cast<double>(distinct_differences(queries));
    state.counters["each"] = seconds_for_each(queries.size());
}

/// At most a hundred of the queries, spread evenly.
void queries_by_walk(benchmark::State& state, const std::shared_ptr<Linked>& linked) {
    const std::vector<Query> queries = queries_of(linked->lattice);
    const std::size_t step = queries.size() / 100 + 1;
    std::size_t asked = 0;
    for (auto _ : state) {
        asked = 0;
        for (std::size_t i = 0; i < queries.size(); i += step) {
            Query query = queries[i];
            benchmark::DoNotOptimize(linked->lattice.generate_difference_support(
                difference(*query.whole, *query.base), query.lower, query.upper));
            ++asked;
        }
    }
    state.counters["each"] = seconds_for_each(asked);
}

/// Writes rules with sides of five and twenty items as the rules of a pair are written: four records for each
/// pair of sides.
void write_records(benchmark::State& state) {
    Output_Manager out("/dev/null");
    RuleCounts counts;
    RuleRecorder rules(out, out, minconf, counts);
    Itemset few;
    Itemset many;
    for (Item item = 100; item < 125; ++item) {
        (item % 5 == 0 ? few : many).push_back(item);
    }
    constexpr std::size_t records = 4;
    for (auto _ : state) {
        const Sides D(many);
        const Sides B(few);
        rules.approximative(Form::R132, D.plain, B.plain, 1234, ratio(1234, 2345));
        rules.approximative(Form::R131, B.plain, D.plain, 1234, ratio(1234, 1345));
        rules.approximated(Form::R232, D.negated, B.negated, 4321, {ratio(4321, 5678), ratio(4321, 5432)});
        rules.approximated(Form::R331, B.plain, D.negated, {34, 56}, {ratio(34, 56), 1.0});
    }
    state.counters["each"] = seconds_for_each(records);
}

template <typename Part, typename Argument>
void register_part(std::string name, Part part, const std::string& path, const Argument& argument) {
    name += '/';
    name += std::filesystem::path(path).stem().string();
    benchmark::RegisterBenchmark(name.c_str(), part, argument)->Unit(benchmark::kMillisecond);
}

void register_file(const std::string& path) {
    const auto linked = std::make_shared<Linked>(path);
    register_part("load", load, path, path);
    register_part("build_lattice", build_lattice, path, linked);
    register_part("index_supports", index_supports, path, linked);
    register_part("queries_by_index", queries_by_index, path, linked);
    register_part("queries_by_walk", queries_by_walk, path, linked);
}

}  // namespace
}  // namespace korv

int main(int argc, char** argv) {
    for (std::string* const name : {&korv::S1, &korv::S2, &korv::S3, &korv::S4, &korv::S5, &korv::S6}) {
        *name = "/dev/null";
    }
    benchmark::Initialize(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        if (!std::ifstream(argv[i])) {
            std::cerr << argv[i] << ": cannot be read; expected a class file\n";
            return 1;
        }
        korv::register_file(argv[i]);
    }
    benchmark::RegisterBenchmark("write_records", korv::write_records);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
