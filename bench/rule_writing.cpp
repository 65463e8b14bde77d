// Times the formats of rules on a million made rules, of which every item has a name:
//
//     korv_bench_rule_writing [--benchmark_...]

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "made_rules.h"
#include "rules/item_names.h"
#include "rules/rule_writer.h"

namespace korv::tools {
namespace {

/// Names of items 0 to 500, as those of a basket are; no columns.
ItemNames names_of_goods() {
    std::map<Item, std::string> names;
    for (Item item = 0; item <= 500; ++item) {
        names[item] = "goods no. " + std::to_string(item);
    }
    return ItemNames(std::move(names));
}

void write(benchmark::State& state, const MadeRules& made, RuleFormat format) {
    const ItemNames names = names_of_goods();
    const RuleBook book = {made.itemsets, names, made_transactions};
    std::int64_t bytes = 0;
    for (auto _ : state) {
        const std::unique_ptr<RuleWriter> writer =
            rule_writer(format, book, {}, [&bytes](std::string_view text) {
                bytes += static_cast<std::int64_t>(text.size());
                benchmark::DoNotOptimize(text.data());
            });
        for (const FoundRule& rule : made.rules) {
            writer->write(rule);
        }
        writer->finish();
    }
    state.SetBytesProcessed(bytes);
}

}  // namespace
}  // namespace korv::tools

int main(int argc, char** argv) {
    using namespace korv::tools;
    benchmark::Initialize(&argc, argv);
    const MadeRules made = short_rules(1'000'000);
    for (const auto& [name, written_format] : writer_formats) {
        benchmark::RegisterBenchmark(
            (std::string("write/") + std::string(name)).c_str(),
            [&made, format = written_format](benchmark::State& state) { write(state, made, format); })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
