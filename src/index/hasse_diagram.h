#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/itemset_table.h"
#include "base/work_sharing.h"
#include "index/item_index.h"

namespace korv {

/// The Hasse diagram of a family of distinct itemsets under inclusion: the edges between each itemset and the
/// maximal ones among its proper subsets.
///
/// Invariant: the lower neighbours of an itemset stand in the order in which a walk over the frontier finds
/// them. The frontier are the itemsets before it that no itemset before it contains, in the order of the
/// family; below each, the walk descends depth first along the lower neighbours already listed.
///
/// Any family will do, closed under intersection or not.
class HasseDiagram {
public:
    /// `itemsets`: not empty, distinct, by ascending size, numbered as ItemIndex wants them. `seeds`: for
    /// each, a subset of it that is not empty, best one that few other itemsets contain: supersets are looked
    /// up by it. What takes the time is shared.
    HasseDiagram(const ItemsetTable& itemsets, const ItemsetTable& seeds, std::size_t items,
                 const WorkSharing& sharing = {});

    /// The lower neighbours of the itemset at a position of the family.
    std::span<const Column> lower_neighbours(Column position) const { return lowers_.of(position); }

private:
    /// For each itemset a list of itemsets.
    struct Adjacency {
        std::vector<std::size_t> begins;
        std::vector<Column> columns;

        std::span<const Column> of(Column position) const {
            return std::span(columns).subspan(begins[position], begins[position + 1] - begins[position]);
        }
        std::span<Column> of(Column position) {
            return std::span(columns).subspan(begins[position], begins[position + 1] - begins[position]);
        }
    };

    /// Lower neighbours of one itemset, more than one, that the walk finds below the same itemset of the
    /// frontier.
    struct FoundBelow {
        Column top;           ///< the itemset of the frontier
        std::uint32_t count;  ///< of the lower neighbours
        std::size_t begin;    ///< of them, among those of all itemsets
    };
    class FrontierOrder;
    class Descent;

    static Adjacency upper_neighbours(const ItemsetTable& itemsets, const ItemsetTable& seeds,
                                      const ItemIndex& index, const WorkSharing& sharing);
    static Adjacency upper_neighbours(const ItemsetTable& itemsets, const ItemsetTable& seeds,
                                      const ItemIndex& index, Column begin, Column end);
    static Adjacency joined(std::vector<Adjacency> parts);
    static Adjacency reversed(const Adjacency& uppers);
    void sort_lowers(const ItemsetTable& itemsets, const ItemsetTable& seeds, const ItemIndex& index,
                     const Adjacency& uppers, const WorkSharing& sharing);

    Adjacency lowers_;
};

}  // namespace korv
