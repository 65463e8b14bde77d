#include "index/hasse_diagram.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <utility>

namespace korv {

namespace {

/// Appends the upper neighbours of an itemset to `uppers`, ascending. `candidates` are columns of larger
/// itemsets, all that contain `itemset` among them; they are used up.
///
/// The lowest candidate that contains the itemset is a neighbour, since no smaller one lies in between;
/// whatever contains that neighbour is none. A candidate that contains the rest of the neighbour but not the
/// itemset goes with them, and is no neighbour either.
void take_neighbours(const ItemsetTable& itemsets, ItemSpan itemset, ItemIndex& index, ColumnSet& candidates,
                     std::vector<Column>& uppers) {
    Itemset rest;
    for (std::size_t position = 0; position < candidates.size(); ++position) {
        ColumnWord& word = candidates[position];
        while (word.bits != 0) {
            const Column candidate = lowest_column(word);
            const ItemSpan larger = itemsets[candidate];
            rest.clear();
            std::ranges::set_difference(larger, itemset, std::back_inserter(rest));
            if (rest.size() + itemset.size() != larger.size()) {
                word.bits &= word.bits - 1;  // does not contain the itemset
                continue;
            }
            uppers.push_back(candidate);
            index.remove_supersets(rest, candidates, position);
        }
    }
}

}  // namespace

HasseDiagram::Adjacency HasseDiagram::upper_neighbours(const ItemsetTable& itemsets,
                                                       const ItemsetTable& seeds, ItemIndex& index) {
    Adjacency uppers;
    uppers.begins.push_back(0);
    ColumnSet candidates;
    Column larger = 0;  // the first itemset with more items than the current one
    for (Column position = 0; position < itemsets.size(); ++position) {
        while (larger < itemsets.size() && itemsets[larger].size() == itemsets[position].size()) {
            ++larger;
        }
        index.find_supersets(seeds[position], larger, candidates);
        take_neighbours(itemsets, itemsets[position], index, candidates, uppers.columns);
        uppers.begins.push_back(uppers.columns.size());
    }
    return uppers;
}

/// The edges the other way round, ascending for each itemset.
HasseDiagram::Adjacency HasseDiagram::reversed(const Adjacency& uppers) {
    const std::size_t itemsets = uppers.begins.size() - 1;
    Adjacency lowers;
    lowers.begins.assign(itemsets + 1, 0);
    for (const Column upper : uppers.columns) {
        ++lowers.begins[upper + 1];
    }
    for (std::size_t position = 0; position < itemsets; ++position) {
        lowers.begins[position + 1] += lowers.begins[position];
    }
    lowers.columns.resize(uppers.columns.size());
    std::vector<std::size_t> ends(lowers.begins);
    for (Column position = 0; position < itemsets; ++position) {
        for (const Column upper : uppers.of(position)) {
            lowers.columns[ends[upper]++] = position;
        }
    }
    return lowers;
}

/// Puts the lower neighbours of one itemset after the other into the order of the frontier walk.
///
/// A lower neighbour is found below the first itemset of the frontier that contains it. Only where several
/// are below the same one does the order need a descent, and only through itemsets that contain one not yet
/// found.
class HasseDiagram::DiscoveryOrder {
public:
    DiscoveryOrder(const ItemsetTable& itemsets, const ItemsetTable& seeds, const ItemIndex& index,
                   const Adjacency& uppers, Adjacency& lowers)
        : itemsets_(itemsets),
          seeds_(seeds),
          index_(index),
          uppers_(uppers),
          lowers_(lowers),
          frontier_(index.bitmap_words()) {}

    /// Orders the lower neighbours of the itemset at `position`. To be called for one position after the
    /// other.
    void order(Column position) {
        const std::span<Column> lowers = lowers_.of(position);
        if (lowers.size() > 1) {
            sort_by_discovery(position, lowers);
        }
        for (const Column lower : lowers) {
            frontier_[word_of(lower)] &= ~bit_of(lower);
        }
        frontier_[word_of(position)] |= bit_of(position);
    }

private:
    void sort_by_discovery(Column position, std::span<Column> lowers) {
        below_.clear();
        for (const Column lower : lowers) {
            below_.emplace_back(first_frontier_superset(lower, position), lower);
        }
        std::ranges::sort(below_);
        auto next = lowers.begin();
        for (auto group = below_.begin(); group != below_.end();) {
            const Column top = group->first;
            const auto group_end =
                std::find_if(group, below_.end(), [top](const auto& each) { return each.first != top; });
            if (group_end - group == 1) {
                *next++ = group->second;
            } else {
                wanted_.clear();
                std::transform(group, group_end, std::back_inserter(wanted_),
                               [](const auto& each) { return each.second; });
                descend(top, next);
            }
            group = group_end;
        }
    }

    /// The first itemset that contains the one at `lower` and is on the frontier when `position` is reached.
    Column first_frontier_superset(Column lower, Column position) const {
        // An itemset without a superset before `position` is on the frontier itself.
        if (uppers_.of(lower).front() == position) {
            return lower;
        }
        // Seeds may lead to itemsets that do not contain `lower`; `position`, where the search ends, does.
        Column found = lower;
        do {
            found = index_.first_superset(seeds_[lower], found + 1, position, frontier_.data());
        } while (!is_contained(itemsets_[lower], itemsets_[found]));
        return found;
    }

    /// Writes those of `wanted_` that lie below `top` to `next`, in the order of a descent, and strikes them
    /// out.
    void descend(Column top, std::span<Column>::iterator& next) {
        for (const Column lower : std::as_const(lowers_).of(top)) {
            const auto found = std::ranges::find(wanted_, lower);
            if (found != wanted_.end()) {
                *next++ = lower;
                wanted_.erase(found);
            } else if (contains_wanted(lower)) {
                descend(lower, next);
            }
        }
    }

    bool contains_wanted(Column lower) const {
        return std::ranges::any_of(
            wanted_, [&](Column wanted) { return is_contained(itemsets_[wanted], itemsets_[lower]); });
    }

    const ItemsetTable& itemsets_;
    const ItemsetTable& seeds_;
    const ItemIndex& index_;
    const Adjacency& uppers_;
    Adjacency& lowers_;
    std::vector<BitWord> frontier_;                 ///< a bitmap of columns
    std::vector<std::pair<Column, Column>> below_;  ///< frontier superset and lower neighbour
    std::vector<Column> wanted_;                    ///< lower neighbours not yet found
};

HasseDiagram::HasseDiagram(const ItemsetTable& itemsets, const ItemsetTable& seeds, std::size_t items) {
    ItemIndex index(itemsets, items);
    const Adjacency uppers = upper_neighbours(itemsets, seeds, index);
    lowers_ = reversed(uppers);
    DiscoveryOrder discovery(itemsets, seeds, index, uppers, lowers_);
    for (Column position = 0; position < itemsets.size(); ++position) {
        discovery.order(position);
    }
}

}  // namespace korv
