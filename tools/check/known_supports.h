#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "check/checked_classes.h"

namespace korv::tools {

/// The itemsets whose supports a class file tells: closed itemsets and essential itemsets. Some 32 to 48
/// bytes for each of them.
class KnownSupports {
public:
    struct Known {
        const Itemset* itemset;
        NodeRef node;  ///< its class
        std::uint32_t line;
        bool is_closed;

        Count support() const { return node->second.support; }
    };

    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    /// `checked` must outlive it unchanged.
    explicit KnownSupports(const CheckedClasses& checked);

    /// What is known of an itemset; nullptr when nothing is. Where several classes tell of it, the one whose
    /// closed itemset it is, or else any of them. O(items).
    const Known* find(const Itemset& itemset) const;

    /// The same of an itemset without the items at one or two positions; the second may be none.
    /// `hash`: of the whole itemset. O(items) where there is one, as a rule O(1) where there is none.
    const Known* find_part(const Itemset& itemset, std::uint64_t hash, std::size_t without,
                           std::size_t without_too = none) const;

    /// Of all items of an itemset, whatever their order.
    static std::uint64_t hash_of_items(const Itemset& itemset);

    /// All of them: the closed itemsets, in the order of the classes, then the essential itemsets.
    const std::vector<Known>& all() const { return known_; }

    /// The position in all() of one that was found.
    std::size_t position(const Known& known) const {
        return static_cast<std::size_t>(&known - known_.data());
    }

private:
    static constexpr std::uint32_t empty_slot = ~std::uint32_t{0};

    struct Slot {
        std::uint32_t tag = 0;                ///< a part of the hash
        std::uint32_t position = empty_slot;  ///< in `known_`
    };

    template <typename IsWanted>
    std::size_t slot_of(std::uint64_t hash, IsWanted is_wanted) const;
    void add(const Known& known);

    std::vector<Known> known_;
    std::vector<Slot> slots_;  ///< open addressing
};

}  // namespace korv::tools
