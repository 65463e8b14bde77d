#include "mine_mpi/part_items.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <unordered_map>
#include <vector>

#include "base/itemset_hash.h"

namespace korv::tools {

namespace {

using Group = std::uint32_t;

/// The items that can be in essential itemsets or closures, and their supports.
struct WantedItems {
    std::vector<Item> items;
    std::vector<Count> supports;
};

WantedItems wanted_items(Processes& processes, const PartOfDatabase& part, Count least) {
    WantedItems wanted;
    for (std::size_t i = 0; i < part.items.size(); ++i) {
        if (part.supports[i] >= least) {
            wanted.items.push_back(part.items[i]);
            wanted.supports.push_back(part.supports[i]);
        }
    }
    processes.broadcast(wanted.items);
    processes.broadcast(wanted.supports);
    return wanted;
}

/// The position of each wanted item in the database of this process, which it may lack.
std::vector<std::size_t> positions_of(const std::vector<Item>& wanted, const Database& database) {
    std::vector<std::size_t> positions;
    auto column = database.items.begin();
    for (const Item item : wanted) {
        column =
            std::ranges::lower_bound(column, database.items.end(), item, {}, &Database::ItemColumn::item);
        const bool is_here = column != database.items.end() && column->item == item;
        positions.push_back(is_here ? static_cast<std::size_t>(column - database.items.begin())
                                    : database.items.size());
    }
    return positions;
}

/// Numbers of the groups of twins that the wanted items are in, as far as this process sees. Those without
/// transactions here are in one group.
std::vector<Group> groups_here(const std::vector<std::size_t>& positions, const Database& database) {
    std::vector<std::size_t> here;
    std::ranges::copy_if(positions, std::back_inserter(here),
                         [&](std::size_t position) { return position < database.items.size(); });
    std::vector<Group> group_of(database.items.size() + 1, 0);
    Group last = 0;
    for (const Twins& twins : with_twins(database.items, here)) {
        ++last;
        for (const std::size_t item : twins) {
            group_of[item] = last;
        }
    }
    std::vector<Group> groups;
    std::ranges::transform(positions, std::back_inserter(groups),
                           [&](std::size_t position) { return group_of[position]; });
    return groups;
}

/// Splits groups: items stay together that are in the same of the others, too.
void refine(const std::vector<Group>& others, std::vector<Group>& groups) {
    std::unordered_map<std::uint64_t, Group> numbers;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const std::uint64_t both = std::uint64_t{groups[i]} << 32U | others[i];
        groups[i] = numbers.try_emplace(both, static_cast<Group>(numbers.size())).first->second;
    }
}

/// The groups of items that are twins in all processes, in the order of their first items.
std::vector<Group> groups_of_all(Processes& processes, std::vector<Group> groups) {
    if (!processes.is_first()) {
        processes.send(std::span<const Group>(groups), 0);
    } else {
        refine(std::vector<Group>(groups.size()), groups);
        for (int other = 1; other < processes.size(); ++other) {
            refine(processes.receive<Group>(other), groups);
        }
    }
    processes.broadcast(groups);
    return groups;
}

std::vector<Twins> twins_of(const std::vector<Group>& groups) {
    std::vector<Twins> twins;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        twins.resize(std::max<std::size_t>(twins.size(), groups[i] + 1));
        twins[groups[i]].push_back(i);
    }
    return twins;
}

}  // namespace

PartItems rank_part(Processes& processes, const PartOfDatabase& part, Count least_in_essentials,
                    Count least_in_closures) {
    const Database& database = part.database;
    const WantedItems wanted =
        wanted_items(processes, part, std::min(least_in_closures, least_in_essentials));
    const std::vector<std::size_t> positions = positions_of(wanted.items, database);
    std::vector<Twins> groups = twins_of(groups_of_all(processes, groups_here(positions, database)));

    RankedItems ranked;
    ranked.frequent = rank_groups(groups, wanted.supports, least_in_essentials);
    ranked.lines = database.lines;
    ranked.weights = database.weights;
    std::uint64_t occurrences = 0;
    for (const Twins& twins : groups) {
        Itemset& itemset = ranked.items.emplace_back();
        std::ranges::transform(twins, std::back_inserter(itemset),
                               [&](std::size_t item) { return wanted.items[item]; });
        const std::size_t position = positions[twins.front()];
        std::span<const Transaction> transactions;
        if (position < database.items.size()) {
            transactions = database.items[position].transactions;
        }
        ranked.transactions.push_back(transactions);
        ranked.supports.push_back(wanted.supports[twins.front()]);
        occurrences += transactions.size();
    }
    RankOrder order(ranked.items);
    return {std::move(ranked), std::move(order), processes.sum(database.lines), processes.sum(occurrences)};
}

std::uint64_t fingerprint(Processes& processes, const PartItems& items) {
    const RankedItems& ranked = items.ranked;
    std::vector<std::uint64_t> lines(ranked.lines);
    for (std::size_t rank = 0; rank < ranked.size(); ++rank) {
        const std::uint64_t hash = hash_of(ranked.items[rank]);
        for (const Transaction line : ranked.transactions[rank]) {
            lines[line] += hash;
        }
    }
    std::uint64_t sum = 0;
    for (std::size_t line = 0; line < lines.size(); ++line) {
        // Sums of sums would not tell which items are together.
        const std::array halves = {static_cast<Item>(lines[line]), static_cast<Item>(lines[line] >> 32U)};
        const bool is_empty = lines[line] == 0;
        sum += is_empty ? 0 : hash_of(halves) * ranked.weight(static_cast<Transaction>(line));
    }
    return processes.sum(sum);
}

bool is_dense(const PartItems& items) {
    constexpr std::uint64_t one_in = 50;
    return items.occurrences * one_in >= items.lines * items.ranked.size();
}

}  // namespace korv::tools
