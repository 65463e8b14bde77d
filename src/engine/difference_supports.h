#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

#include "base/itemset_table.h"
#include "index/bounds_cache.h"
#include "index/item_index.h"
#include "index/item_numbering.h"
#include "index/key_index.h"

namespace korv {

struct data;

/// Answers what Lattice::generate_difference_support finds by a walk over all classes, from indexes.
///
/// Invariant: it answers only where the order of the walk does not matter. The walk raises the lower bound to
/// the largest support of a key within the itemset and lowers the upper bound to the smallest support of a
/// class around it; as long as the bounds do not cross, it returns a support exactly when they meet. (At the
/// class of a closed itemset it returns at once. There they meet as well: one of its keys lies within it, and
/// no class around it has less support.) Where they may cross, because the classes contradict each other or
/// the starting bounds, there is no answer, and the walk must decide.
class DifferenceSupports {
public:
    /// `classes` are not referred to later. About O(total length of the itemsets * log keys).
    explicit DifferenceSupports(const std::map<Itemset, data>& classes);
    DifferenceSupports(const DifferenceSupports&) = delete;
    DifferenceSupports& operator=(const DifferenceSupports&) = delete;

    /// The support of `itemset`, which must lie within a class; 0 if it is not known. `lower` and `upper` are
    /// narrowed as by the walk when 0 is returned. No answer when the walk must decide; the bounds are then
    /// as they were. The second time an itemset is asked for it is only looked up.
    std::optional<Count> settle(const Itemset& itemset, Count& lower, Count& upper);

private:
    struct Classes {
        explicit Classes(const std::map<Itemset, data>& classes);

        ItemNumbering numbering;
        /// By ascending support: the first class around an itemset gives its upper bound.
        ItemsetTable closed_itemsets;
        std::vector<Count> supports;
        /// Whether every itemset has items, and every essential itemset lies within its closed itemset.
        bool well_formed = true;
    };

    static KeyIndex make_key_index(const std::map<Itemset, data>& of, const Classes& classes);
    bool classes_agree();
    SupportBounds find_bounds(const Itemset& itemset);
    Column first_class_of_support(Count support) const;

    const Classes classes_;
    const ItemIndex class_index_;
    KeyIndex key_index_;
    /// Whether all classes are well formed and none holds a key of more support than its own.
    bool consistent_;

    Itemset numbers_;
    BoundsCache known_;
};

}  // namespace korv
