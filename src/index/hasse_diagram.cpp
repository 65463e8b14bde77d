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
/// itemset goes with them, and is no neighbour either. `hits` is working space.
void take_neighbours(const ItemsetTable& itemsets, ItemSpan itemset, const ItemIndex& index,
                     ColumnSet& candidates, std::vector<ItemIndex::Hit>& hits, std::vector<Column>& uppers) {
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
            index.remove_supersets(rest, candidates, position, hits);
        }
    }
}

}  // namespace

HasseDiagram::Adjacency HasseDiagram::upper_neighbours(const ItemsetTable& itemsets,
                                                       const ItemsetTable& seeds, const ItemIndex& index,
                                                       const WorkSharing& sharing) {
    std::vector<Adjacency> parts(sharing.parts);
    sharing.run(parts.size(), [&](std::size_t part) {
        parts[part] = upper_neighbours(itemsets, seeds, index,
                                       static_cast<Column>(sharing.begin(part, itemsets.size())),
                                       static_cast<Column>(sharing.begin(part + 1, itemsets.size())));
    });
    return joined(std::move(parts));
}

/// The upper neighbours of the itemsets from `begin` to `end` - 1.
HasseDiagram::Adjacency HasseDiagram::upper_neighbours(const ItemsetTable& itemsets,
                                                       const ItemsetTable& seeds, const ItemIndex& index,
                                                       Column begin, Column end) {
    Adjacency uppers;
    uppers.begins.push_back(0);
    ColumnSet candidates;
    std::vector<ItemIndex::Hit> hits;
    Column larger = begin;  // the first itemset with more items than the current one
    for (Column position = begin; position < end; ++position) {
        while (larger < itemsets.size() && itemsets[larger].size() == itemsets[position].size()) {
            ++larger;
        }
        index.find_supersets(seeds[position], larger, candidates);
        take_neighbours(itemsets, itemsets[position], index, candidates, hits, uppers.columns);
        uppers.begins.push_back(uppers.columns.size());
    }
    return uppers;
}

/// The neighbours of all itemsets, from those of the itemsets of each part.
HasseDiagram::Adjacency HasseDiagram::joined(std::vector<Adjacency> parts) {
    Adjacency all = std::move(parts.front());
    for (Adjacency& part : std::span(parts).subspan(1)) {
        const std::size_t before = all.columns.size();
        all.columns.insert(all.columns.end(), part.columns.begin(), part.columns.end());
        std::transform(part.begins.begin() + 1, part.begins.end(), std::back_inserter(all.begins),
                       [before](std::size_t begin) { return before + begin; });
        part = {};
    }
    return all;
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

// The order of the walk. A lower neighbour is found below the first itemset of the frontier that contains it.
// Only where several are below the same one does the order need a descent, and only through itemsets that
// contain one not yet found.

/// Sorts the lower neighbours of one itemset after the other by the itemsets of the frontier below which the
/// walk finds them.
class HasseDiagram::FrontierOrder {
public:
    /// `first`: the itemset to begin with. Refers to all of them.
    FrontierOrder(const ItemsetTable& itemsets, const ItemsetTable& seeds, const ItemIndex& index,
                  const Adjacency& uppers, Column first)
        : itemsets_(itemsets),
          seeds_(seeds),
          index_(index),
          uppers_(uppers),
          frontier_(index.bitmap_words()) {
        for (Column position = 0; position < first; ++position) {
            const std::span<const Column> above = uppers.of(position);
            if (above.empty() || above.front() >= first) {
                frontier_[word_of(position)] |= bit_of(position);
            }
        }
    }

    /// Sorts the lower neighbours of the itemset at `position`, which stand in `lowers` from `begin` on, and
    /// appends those that are found below the same itemset. To be called for one position after the other.
    void sort(Column position, std::size_t begin, std::span<Column> lowers, std::vector<FoundBelow>& found) {
        if (lowers.size() > 1) {
            sort_by_top(position, lowers);
            note_groups(begin, found);
        }
        for (const Column lower : lowers) {
            frontier_[word_of(lower)] &= ~bit_of(lower);
        }
        frontier_[word_of(position)] |= bit_of(position);
    }

private:
    void sort_by_top(Column position, std::span<Column> lowers) {
        below_.clear();
        for (const Column lower : lowers) {
            below_.emplace_back(first_frontier_superset(lower, position), lower);
        }
        std::ranges::sort(below_);
        std::ranges::transform(below_, lowers.begin(), &std::pair<Column, Column>::second);
    }

    /// Appends those in `below_` that have the same top.
    void note_groups(std::size_t begin, std::vector<FoundBelow>& found) const {
        for (auto group = below_.begin(); group != below_.end();) {
            const Column top = group->first;
            const auto group_end =
                std::find_if(group, below_.end(), [top](const auto& each) { return each.first != top; });
            if (group_end - group > 1) {
                found.push_back({top, static_cast<std::uint32_t>(group_end - group),
                                 begin + static_cast<std::size_t>(group - below_.begin())});
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

    const ItemsetTable& itemsets_;
    const ItemsetTable& seeds_;
    const ItemIndex& index_;
    const Adjacency& uppers_;
    std::vector<BitWord> frontier_;                 ///< a bitmap of columns
    std::vector<std::pair<Column, Column>> below_;  ///< frontier superset and lower neighbour
};

/// Puts lower neighbours that are found below the same itemset of the frontier into the order of a descent.
class HasseDiagram::Descent {
public:
    Descent(const ItemsetTable& itemsets, Adjacency& lowers) : itemsets_(itemsets), lowers_(lowers) {}

    /// To be called for one itemset after the other: the descent goes through the lower neighbours of those
    /// before it.
    void sort(const FoundBelow& found) {
        const auto lowers = std::span(lowers_.columns).subspan(found.begin, found.count);
        wanted_.assign(lowers.begin(), lowers.end());
        auto next = lowers.begin();
        descend(found.top, next);
    }

private:
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
    Adjacency& lowers_;
    std::vector<Column> wanted_;  ///< lower neighbours not yet found
};

/// Puts the lower neighbours of each itemset, which are ascending, into the order of the walk.
void HasseDiagram::sort_lowers(const ItemsetTable& itemsets, const ItemsetTable& seeds,
                               const ItemIndex& index, const Adjacency& uppers, const WorkSharing& sharing) {
    std::vector<std::vector<FoundBelow>> found(sharing.parts);
    sharing.run(found.size(), [&](std::size_t part) {
        const auto begin = static_cast<Column>(sharing.begin(part, itemsets.size()));
        const auto end = static_cast<Column>(sharing.begin(part + 1, itemsets.size()));
        FrontierOrder order(itemsets, seeds, index, uppers, begin);
        for (Column position = begin; position < end; ++position) {
            order.sort(position, lowers_.begins[position], lowers_.of(position), found[part]);
        }
    });
    Descent descent(itemsets, lowers_);
    for (const std::vector<FoundBelow>& of_part : found) {
        for (const FoundBelow& each : of_part) {
            descent.sort(each);
        }
    }
}

HasseDiagram::HasseDiagram(const ItemsetTable& itemsets, const ItemsetTable& seeds, std::size_t items,
                           const WorkSharing& sharing) {
    const ItemIndex index(itemsets, items);
    const Adjacency uppers = upper_neighbours(itemsets, seeds, index, sharing);
    lowers_ = reversed(uppers);
    sort_lowers(itemsets, seeds, index, uppers, sharing);
}

}  // namespace korv
