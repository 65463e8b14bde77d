#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "check/checked_classes.h"

namespace korv::tools {

/// The itemsets whose supports a class file tells: closed itemsets and essential itemsets. Four bytes for
/// each class, and four to eight for each itemset.
class KnownSupports {
public:
    struct Known {
        const Itemset* itemset;
        Count support;
        std::uint32_t line;
        bool is_closed;
    };

    /// `checked` must outlive it unchanged.
    explicit KnownSupports(const CheckedClasses& checked);

    /// What is known of an itemset; nullptr when nothing is. Where several classes tell of it, the one
    /// whose closed itemset it is, or else any of them.
    /// O(items).
    const Known* find(const Itemset& itemset) const;

    /// All of them: the closed itemsets, in the order of the classes, then the essential itemsets.
    const std::vector<Known>& all() const { return known_; }

private:
    static constexpr std::uint32_t empty_slot = ~std::uint32_t{0};

    std::size_t slot_of(const Itemset& itemset) const;
    void add(const Known& known);

    std::vector<Known> known_;
    std::vector<std::uint32_t> slots_;  ///< open addressing: positions in `known_`
};

}  // namespace korv::tools
