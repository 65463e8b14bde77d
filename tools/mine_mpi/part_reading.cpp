#include "mine_mpi/part_reading.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

#include "common/error.h"
#include "mine/named_items.h"
#include "mine/ranked_items.h"
#include "mine/transaction_reader.h"
#include "mine_mpi/input_parts.h"
#include "mine_mpi/table_parts.h"

namespace korv::tools {

namespace {

/// Numbers names in the order in which they first occur, those of the next process behind those before.
std::vector<Item> numbers_of(const std::vector<char>& texts, const std::vector<std::uint32_t>& sizes,
                             NamedItems& all) {
    std::vector<Item> numbers;
    const char* begin = texts.data();
    for (const std::uint32_t size : sizes) {
        numbers.push_back(all.number_of({begin, size}));
        begin += size;
    }
    return numbers;
}

/// Gives the items of baskets the numbers that they have in all parts together.
void join_names(Processes& processes, Database& database) {
    std::vector<char> texts;
    std::vector<std::uint32_t> sizes;
    for (const std::string& name : database.names) {
        texts.insert(texts.end(), name.begin(), name.end());
        sizes.push_back(static_cast<std::uint32_t>(name.size()));
    }
    database.names.clear();
    std::vector<Item> numbers;
    if (processes.is_first()) {
        NamedItems all;
        numbers = numbers_of(texts, sizes, all);
        for (int other = 1; other < processes.size(); ++other) {
            const std::vector<char> others = processes.receive<char>(other);
            const std::vector<Item> of_other =
                numbers_of(others, processes.receive<std::uint32_t>(other), all);
            processes.send(std::span<const Item>(of_other), other);
        }
        database.names = all.names();
    } else {
        processes.send(std::span<const char>(texts), 0);
        processes.send(std::span<const std::uint32_t>(sizes), 0);
        numbers = processes.receive<Item>(0);
    }
    for (Database::ItemColumn& column : database.items) {
        column.item = numbers[column.item - 1];
    }
    std::ranges::sort(database.items, {}, &Database::ItemColumn::item);
}

/// The items of two lists, ascending; what is in both has the sum of its supports.
void merge(std::span<const Item> items, std::span<const Count> supports, PartOfDatabase& part) {
    std::vector<Item> merged;
    std::vector<Count> sums;
    std::size_t own = 0;
    std::size_t other = 0;
    while (own < part.items.size() || other < items.size()) {
        const bool has_own =
            own < part.items.size() && (other == items.size() || part.items[own] <= items[other]);
        const bool has_other = other < items.size() && (!has_own || items[other] == part.items[own]);
        merged.push_back(has_own ? part.items[own] : items[other]);
        sums.push_back((has_own ? part.supports[own] : 0) + (has_other ? supports[other] : 0));
        own += has_own ? 1 : 0;
        other += has_other ? 1 : 0;
    }
    part.items = std::move(merged);
    part.supports = std::move(sums);
}

/// Sums up the supports of items in the first process.
void join_supports(Processes& processes, PartOfDatabase& part) {
    for (const Database::ItemColumn& column : part.database.items) {
        part.items.push_back(column.item);
        part.supports.push_back(support_of(column, part.database));
    }
    if (!processes.is_first()) {
        processes.send(std::span<const Item>(part.items), 0);
        processes.send(std::span<const Count>(part.supports), 0);
        part.items.clear();
        part.supports.clear();
        return;
    }
    for (int other = 1; other < processes.size(); ++other) {
        const std::vector<Item> items = processes.receive<Item>(other);
        const std::vector<Count> supports = processes.receive<Count>(other);
        merge(items, supports, part);
    }
}

void join_lines(Processes& processes, PartOfDatabase& part) {
    const std::uint64_t transactions = processes.sum(part.database.transactions);
    processes.together([&] {
        if (transactions > most_transactions) {
            throw Error("found more than " + std::to_string(most_transactions) +
                        " transactions; expected at most so many");
        }
    });
    part.transactions = static_cast<Count>(transactions);
    part.report.empty_transactions = static_cast<Count>(processes.sum(empty_transactions(part.database)));
}

}  // namespace

PartOfDatabase read_part(Processes& processes, const std::vector<std::string>& paths,
                         const ReadingOptions& options) {
    PartOfDatabase part;
    InputParts inputs(processes, paths, options);
    if (!inputs.choice()) {
        // There can be lines all the same, which are blank.
        processes.together([&] { refuse_without_items(paths); });
    }
    part.report = inputs.choice()->report;
    TransactionReader reader(options, *inputs.choice());
    processes.together([&] {
        if (!inputs.has_deciding()) {
            reader.take_header();
        }
        inputs.read([&](const TextPart& text) { reader.add_part(text); });
    });
    if (auto* const table = std::get_if<TableReader>(&reader.reader())) {
        part.report.table.emplace();
        part.report.table->has_labels = inputs.choice()->header.front().empty();
        part.database = join_table_parts(processes, table->take_part(), table->options(),
                                         inputs.choice()->first, *part.report.table);
    } else {
        part.database = reader.finish();
    }
    if (part.report.format == Format::basket) {
        join_names(processes, part.database);
    }
    join_lines(processes, part);
    join_supports(processes, part);
    processes.together([&] {
        if (processes.is_first() && part.items.empty()) {
            refuse_without_items(paths);
        }
    });
    return part;
}

}  // namespace korv::tools
