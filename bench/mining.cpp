// Times the parts of korv-mine:
//
//     korv_bench_mining FILE MIN_SUPPORT [FILE MIN_SUPPORT]... [--benchmark_...]

#include <benchmark/benchmark.h>

#include <charconv>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include "common/error.h"
#include "common/text_input.h"
#include "mine/fimi.h"
#include "mine/miner.h"

namespace korv::tools {
namespace {

void read(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        const Database database = read_fimi(read_text(path));
        benchmark::DoNotOptimize(database.items.size());
        state.counters["transactions"] = static_cast<double>(database.transactions);
        state.counters["items"] = static_cast<double>(database.items.size());
    }
    const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
    state.SetBytesProcessed(bytes * state.iterations());
}

void mine_classes(benchmark::State& state, const std::shared_ptr<Database>& database, Count min_support) {
    std::size_t classes = 0;
    std::size_t essentials = 0;
    for (auto _ : state) {
        essentials = 0;
        const auto mined = mine(*database, {.min_support = min_support, .closure_over_all = true});
        classes = mined.size();
        for (const MinedClass& each : mined) {
            essentials += each.essentials.size();
        }
    }
    state.counters["classes"] = static_cast<double>(classes);
    state.counters["essentials"] = static_cast<double>(essentials);
}

void register_database(const std::string& path, const std::string& min_support) {
    Count count = 0;
    std::from_chars(min_support.data(), min_support.data() + min_support.size(), count);
    const auto database = std::make_shared<Database>(read_fimi(read_text(path)));
    std::string name = std::filesystem::path(path).stem().string();
    name.append("_").append(min_support);
    benchmark::RegisterBenchmark(("read/" + name).c_str(), read, path)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("mine/" + name).c_str(), mine_classes, database, count)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace
}  // namespace korv::tools

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    try {
        for (int i = 1; i + 1 < argc; i += 2) {
            korv::tools::register_database(argv[i], argv[i + 1]);
        }
    } catch (const korv::tools::Error& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
