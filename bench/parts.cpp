// Times the parts of a run on class files:
//
//     korv_bench_parts FILE... [--benchmark_...]

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/difference_supports.h"
#include "engine/lattice_building.h"
#include "engine/pairs.h"
#include "engine/rule_gate.h"
#include "index/bounds_cache.h"
#include "io/class_loading.h"
#include "io/lattice_file.h"
#include "io/rule_files.h"

namespace korv {
namespace {

/// A class file, loaded and linked.
struct Linked {
    explicit Linked(const std::string& path) {
        std::ifstream file(path);
        classes = read_classes(file);
        entries = lattice_entries(classes);
        link_successors(entries);
    }

    ClassMap classes;
    LatticeEntries entries;
};

/// Counts pairs, and those whose support is known.
class CountedPairs final : public PairSink {
public:
    void add(const Pair& pair) override {
        ++all;
        known += pair.is_known ? 1 : 0;
    }

    std::size_t all = 0;
    std::size_t known = 0;
};

/// Answers no query, but looks at each.
template <typename Look>
class LookedAt final : public Supports {
public:
    explicit LookedAt(Look look) : look_(std::move(look)) {}

    Count settle(const Itemset& itemset, SupportBounds& bounds) override {
        look_(itemset, bounds);
        return 0;
    }

private:
    Look look_;
};

/// Calls `look` with each query of a run, in its order: the itemset and the bounds that are known.
template <typename Look>
void look_at_queries(const Linked& linked, Look look) {
    LookedAt supports(std::move(look));
    CountedPairs pairs;
    for_each_pair(linked.classes, linked.entries, supports, pairs);
}

struct QueryCounts {
    std::size_t all = 0;
    std::size_t distinct = 0;
};

QueryCounts count_queries(const Linked& linked) {
    BoundsCache differences(std::numeric_limits<std::size_t>::max());
    QueryCounts counts;
    look_at_queries(linked, [&](const Itemset& itemset, const SupportBounds&) {
        ++counts.all;
        counts.distinct += differences.try_emplace(itemset).second ? 1 : 0;
    });
    return counts;
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
        auto classes = std::make_unique<ClassMap>();
        state.ResumeTiming();
        *classes = read_classes(*file);
        state.PauseTiming();
        state.counters["classes"] = static_cast<double>(classes->size());
        classes.reset();
        state.ResumeTiming();
    }
    const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
    state.SetBytesProcessed(bytes * state.iterations());
}

void build_lattice(benchmark::State& state, const std::shared_ptr<Linked>& linked) {
    for (auto _ : state) {
        state.PauseTiming();
        linked->entries = lattice_entries(linked->classes);
        state.ResumeTiming();
        link_successors(linked->entries);
    }
    std::size_t edges = 0;
    for (const LatticeEntry& entry : linked->entries) {
        edges += entry.successors.size();
    }
    state.counters["edges"] = static_cast<double>(edges);
}

void write_lattice_file(benchmark::State& state, const std::shared_ptr<Linked>& linked) {
    for (auto _ : state) {
        Output_Manager out("/dev/null");
        write_lattice(linked->entries, out);
    }
}

void index_supports(benchmark::State& state, const std::shared_ptr<Linked>& linked) {
    for (auto _ : state) {
        const DifferenceSupports supports(linked->entries);
        benchmark::DoNotOptimize(&supports);
    }
}

/// Makes and settles all pairs of a run. Remembering earlier queries is part of what is measured: every
/// iteration begins with nothing remembered.
void queries_by_index(benchmark::State& state, const std::shared_ptr<Linked>& linked) {
    const QueryCounts queries = count_queries(*linked);
    std::size_t known = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto supports = std::make_unique<DifferenceSupports>(linked->entries);
        CountedPairs pairs;
        state.ResumeTiming();
        for_each_pair(linked->classes, linked->entries, *supports, pairs);
        state.PauseTiming();
        // Pairs that needed no query are known.
        known = pairs.known - (pairs.all - queries.all);
        supports.reset();
        state.ResumeTiming();
    }
    state.counters["queries"] = static_cast<double>(queries.all);
    state.counters["known"] = static_cast<double>(known);
    state.counters["distinct"] = static_cast<double>(queries.distinct);
    state.counters["each"] = seconds_for_each(queries.all);
}

/// At most a hundred of the queries, spread evenly.
void queries_by_walk(benchmark::State& state, const std::shared_ptr<Linked>& linked) {
    const std::size_t step = count_queries(*linked).all / 100 + 1;
    std::vector<std::pair<Itemset, SupportBounds>> sample;
    std::size_t seen = 0;
    look_at_queries(*linked, [&](const Itemset& itemset, const SupportBounds& bounds) {
        if (seen++ % step == 0) {
            sample.emplace_back(itemset, bounds);
        }
    });
    SupportWalk walk(linked->entries);
    for (auto _ : state) {
        for (auto [itemset, bounds] : sample) {
            benchmark::DoNotOptimize(walk.settle(itemset, bounds));
        }
    }
    state.counters["each"] = seconds_for_each(sample.size());
}

/// Writes rules with sides of five and twenty items as the rules of a pair are written: four records for each
/// pair of sides.
void write_records(benchmark::State& state) {
    Output_Manager out("/dev/null");
    RuleFiles files({out, out}, {out, out});
    Itemset few;
    Itemset many;
    for (Item item = 100; item < 125; ++item) {
        (item % 5 == 0 ? few : many).push_back(item);
    }
    const Pair pair = {PairKind::successor, {}, few, many, 5678, 1345, {2345, 2345}, true};
    RuleGate rules(0.5, files);
    constexpr std::size_t records = 4;
    for (auto _ : state) {
        files.begin(pair);
        rules.approximative(Form::R132, 1234, ratio(1234, 2345));
        rules.approximative(Form::R131, 1234, ratio(1234, 1345));
        rules.approximated(Form::R232, known(Count{4321}), {ratio(4321, 5678), ratio(4321, 5432)});
        rules.approximated(Form::R331, between(Count{34}, Count{56}), {ratio(34, 56), 1.0});
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
    register_part("write_lattice", write_lattice_file, path, linked);
    register_part("index_supports", index_supports, path, linked);
    register_part("queries_by_index", queries_by_index, path, linked);
    register_part("queries_by_walk", queries_by_walk, path, linked);
}

}  // namespace
}  // namespace korv

int main(int argc, char** argv) {
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
