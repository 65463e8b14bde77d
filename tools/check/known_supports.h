#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "check/checked_classes.h"

namespace korv::tools {

/// The itemsets whose supports a class file tells: closed itemsets and essential itemsets; and of the keys,
/// which are the essential itemsets and the closed itemsets of classes that store none, the parts that lack
/// one item.
///
/// An itemset is known by its position: first the closed itemsets, in the order of the classes, then the
/// essential itemsets, class by class, each once. Some 40 bytes for each, and 4 for each item of a key.
class KnownSupports {
public:
    using Position = std::uint32_t;

    static constexpr Position unknown = std::numeric_limits<Position>::max();
    /// A key of more items has no parts.
    static constexpr std::size_t most_items_of_parts = 40;

    struct Known {
        const Itemset* itemset;
        NodeRef node;        ///< of the class whose closed itemset it is, or else of the first one with it
        std::uint32_t line;  ///< of this class
        Position closed;     ///< of the closed itemset of this class

        Count support() const { return node->second.support; }
    };

    /// `checked` must outlive it unchanged. O(items of all itemsets + items^2 of the keys).
    explicit KnownSupports(const CheckedClasses& checked);

    std::size_t size() const { return known_.size(); }
    const Known& operator[](Position position) const { return known_[position]; }

    /// O(items).
    Position find(const Itemset& itemset) const;

    bool is_closed(Position position) const { return known_[position].closed == position; }
    bool is_key(Position position) const {
        return !is_closed(position) || known_[position].node->second.essentials.empty();
    }

    /// Of a key of two items or more: what is left without its first item, without its second one, and so on,
    /// each unknown where nothing is known of it. Empty for other itemsets.
    std::span<const Position> parts(Position position) const {
        return std::span(parts_).subspan(part_begins_[position],
                                         part_begins_[position + 1] - part_begins_[position]);
    }

    /// The essential itemsets that are also essential in an earlier class, or closed.
    const std::vector<Known>& shared() const { return shared_; }

private:
    struct Slot {
        std::uint32_t tag = 0;  ///< a part of the hash
        Position position = unknown;
    };

    template <typename IsWanted>
    std::size_t slot_of(std::uint64_t hash, IsWanted is_wanted) const;
    void add(const Known& known);
    void add_parts(Position position);
    Position find_part(const Itemset& itemset, std::uint64_t hash, std::size_t without) const;

    std::vector<Known> known_;
    std::vector<Known> shared_;
    std::vector<Slot> slots_;  ///< open addressing
    std::vector<std::size_t> part_begins_;
    std::vector<Position> parts_;
};

}  // namespace korv::tools
