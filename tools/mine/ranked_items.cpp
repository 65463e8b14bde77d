#include "mine/ranked_items.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

#include "base/itemset_hash.h"

namespace korv::tools {

std::vector<Twins> with_twins(const std::vector<Database::ItemColumn>& items,
                              const std::vector<std::size_t>& wanted) {
    std::vector<Twins> groups;
    std::unordered_multimap<std::uint64_t, std::size_t>
        by_hash;  // of the transactions; positions in `groups`
    by_hash.reserve(wanted.size());
    for (const std::size_t item : wanted) {
        const std::vector<Transaction>& transactions = items[item].transactions;
        const std::uint64_t hash = hash_of(transactions);
        const auto [first, last] = by_hash.equal_range(hash);
        const auto found = std::find_if(first, last, [&](const auto& each) {
            return items[groups[each.second].front()].transactions == transactions;
        });
        if (found != last) {
            groups[found->second].push_back(item);
            continue;
        }
        by_hash.emplace(hash, groups.size());
        groups.push_back({item});
    }
    return groups;
}

Rank rank_groups(std::vector<Twins>& groups, const std::vector<Count>& supports, Count least_in_essentials) {
    const auto support = [&](const Twins& twins) { return supports[twins.front()]; };
    const auto rare = std::stable_partition(groups.begin(), groups.end(), [&](const Twins& twins) {
        return support(twins) >= least_in_essentials;
    });
    std::stable_sort(groups.begin(), rare,
                     [&](const Twins& a, const Twins& b) { return support(a) < support(b); });
    return static_cast<Rank>(rare - groups.begin());
}

Count support_of(const Database::ItemColumn& column, const Database& database) {
    if (database.weights.empty()) {
        return static_cast<Count>(column.transactions.size());
    }
    return std::accumulate(column.transactions.begin(), column.transactions.end(), Count{0},
                           [&](Count sum, Transaction line) { return sum + database.weights[line]; });
}

RankedItems ranked_items(const Database& database, Count least_in_essentials, Count least_in_closures) {
    std::vector<Count> supports;
    std::vector<std::size_t> wanted;
    for (std::size_t item = 0; item < database.items.size(); ++item) {
        supports.push_back(support_of(database.items[item], database));
        if (supports.back() >= std::min(least_in_closures, least_in_essentials)) {
            wanted.push_back(item);
        }
    }
    std::vector<Twins> groups = with_twins(database.items, wanted);
    RankedItems ranked;
    ranked.frequent = rank_groups(groups, supports, least_in_essentials);
    ranked.lines = database.lines;
    ranked.weights = database.weights;
    for (const Twins& twins : groups) {
        Itemset& items = ranked.items.emplace_back();
        std::ranges::transform(twins, std::back_inserter(items),
                               [&](std::size_t item) { return database.items[item].item; });
        ranked.transactions.emplace_back(database.items[twins.front()].transactions);
        ranked.supports.push_back(supports[twins.front()]);
    }
    return ranked;
}

}  // namespace korv::tools
