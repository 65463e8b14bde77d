#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "base/itemset.h"
#include "engine/lattice_entries.h"
#include "rules/found_rule.h"
#include "rules/itemset_pool.h"
#include "rules/page_arrays.h"
#include "rules/page_items.h"

namespace korv::tools {

/// The lattice as the page looks at it: classes by their positions in the entries.
class PageLattice {
public:
    /// `entries`, with their successors, must outlive it unchanged. O(classes + edges).
    explicit PageLattice(const LatticeEntries& entries);

    const LatticeEntry& entry(std::uint32_t position) const { return entries_[position]; }
    std::size_t size() const { return entries_.size(); }

    /// The immediate subsets of a class, ascending.
    std::span<const std::uint32_t> lowers(std::uint32_t position) const {
        return part(lowers_, lower_ends_, position);
    }

    /// The classes of which it is an immediate subset, ascending.
    std::span<const std::uint32_t> uppers(std::uint32_t position) const {
        return part(uppers_, upper_ends_, position);
    }

private:
    static std::span<const std::uint32_t> part(const std::vector<std::uint32_t>& all,
                                               const std::vector<std::size_t>& ends, std::uint32_t position) {
        const std::size_t begin = position == 0 ? 0 : ends[position - 1];
        return std::span(all).subspan(begin, ends[position] - begin);
    }

    const LatticeEntries& entries_;
    std::vector<std::uint32_t> lowers_;
    std::vector<std::size_t> lower_ends_;
    std::vector<std::uint32_t> uppers_;
    std::vector<std::size_t> upper_ends_;
};

/// All classes in the order in which a page needs them: that of each rule (the smallest class around both of
/// its sides, where the same transactions meet it) with its immediate neighbours, rule by rule, then the
/// others in the order of the lattice. One search among the classes for each rule.
std::vector<std::uint32_t> classes_by_need(const PageLattice& lattice, const std::vector<FoundRule>& rules,
                                           const ItemsetPool& itemsets, Count transactions);

/// Adds the arrays of the classes `chosen` (positions in the lattice, ascending). Their items must be among
/// `items`.
void add_classes(const PageLattice& lattice, std::span<const std::uint32_t> chosen, const PageItems& items,
                 PageArrays& arrays);

/// The first classes of `by_need`, ascending: as many as `cost` (of the arrays of some classes) lets into
/// `most`, about. Takes a dozen costs at most.
std::vector<std::uint32_t> classes_within(const PageLattice& lattice, std::span<const std::uint32_t> by_need,
                                          const PageItems& items, std::size_t most,
                                          const std::function<std::size_t(const PageArrays&)>& cost);

}  // namespace korv::tools
