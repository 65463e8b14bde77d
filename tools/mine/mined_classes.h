#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/itemset.h"
#include "mine/essential_tree.h"

namespace korv::tools {

/// A class: all essential itemsets of one closure.
struct MinedClass {
    Itemset closure;
    Count support = 0;                ///< disjunctive, in transactions
    std::vector<Itemset> essentials;  ///< by size, then lexicographically; at least one

    bool operator==(const MinedClass&) const = default;
};

/// A closure as classes keep it.
struct EncodedClosure {
    std::string_view bytes;      ///< as append_encoded writes them
    std::uint32_t hash = 0;      ///< as hash_of_closure gives it
    std::size_t items = 0;       ///< how many it has
    std::size_t text_bytes = 0;  ///< that they take in a class file, with a blank for each
    std::size_t rare_bytes = 0;  ///< of these, those of items that are not frequent
};

/// How many classes there are, and what they take.
struct ClassFigures {
    std::size_t classes = 0;
    std::size_t essentials = 0;       ///< itemsets; where these are too many for 64 bits, the largest number
    std::size_t file_bytes = 0;       ///< of their records in a class file, likewise
    std::size_t rare_bytes = 0;       ///< of these bytes, those of items of closures that are not frequent
    std::size_t largest_closure = 0;  ///< the number of its items

    /// Adds the figures of other classes.
    ClassFigures& operator+=(const ClassFigures& others);

    bool operator==(const ClassFigures&) const = default;
};

/// Classes are in the order of their keys.
struct ClassKey {
    std::uint32_t items = 0;   ///< of the closure
    std::string_view closure;  ///< as append_encoded writes it

    auto operator<=>(const ClassKey&) const = default;  // NOLINT(modernize-use-nullptr): no pointer here
};

/// Classes as they are found, in little memory: closures as strings of bytes, one behind the other, and
/// essential itemsets as nodes of a prefix tree.
class MinedClasses {
public:
    /// Without classes. `items`: those for which each rank of the tree stands. `most`: of classes.
    explicit MinedClasses(std::vector<Itemset> items,
                          std::size_t most = std::numeric_limits<std::uint32_t>::max() - 1);

    /// Adds an essential itemset to the class of its closure, which is ascending. `node` stands for it, with
    /// its parents and its support in `tree`. `rare_bytes`: how many bytes of the closure are items that are
    /// not frequent. Returns false, and changes nothing, when its class would be one too many. O(closure).
    bool add(EssentialTree::Node node, const EssentialTree& tree, const Itemset& closure,
             std::size_t rare_bytes = 0);

    /// The same where all that is needed of the closure is known.
    bool add_encoded(EssentialTree::Node node, const EssentialTree& tree, const EncodedClosure& closure);

    /// Whether there is a class with this closure. Not to be asked behind finish.
    bool holds(std::string_view encoded) const;

    /// Puts the classes in the order in which they are visited: by size of the closure, then
    /// lexicographically. Call this once, behind the last add, with the tree that has all nodes.
    void finish(EssentialTree tree);

    /// Calls `visit` with each class, in order. Requires finish.
    void for_each(const std::function<void(const MinedClass&)>& visit) const { for_each(0, size(), visit); }

    /// The same with the classes at the positions from `begin` up to `end`.
    void for_each(std::size_t begin, std::size_t end,
                  const std::function<void(const MinedClass&)>& visit) const;

    /// The key of the class at a position. Valid as long as these classes. Requires finish.
    ClassKey key(std::size_t position) const { return key_of(classes_[position]); }

    /// The position of the first class whose key is not less than this one; of the end, if there is none.
    /// Requires finish.
    std::size_t lower_bound(const ClassKey& key) const;

    /// How many classes there are so far.
    std::size_t size() const { return classes_.size(); }
    /// Of the classes so far.
    const ClassFigures& figures() const { return figures_; }
    /// The bytes that the items for which a rank stands take in a closure, with a blank for each.
    std::size_t closure_bytes(Rank rank) const { return digits_[rank] + items_[rank].size(); }

private:
    struct Class {
        std::size_t closure;  ///< where its bytes begin
        std::uint32_t bytes;
        std::uint32_t items;       ///< of the closure
        EssentialTree::Node last;  ///< the essential itemset that was found last; the others are linked to it
        Count support;
    };

    static constexpr std::uint32_t empty_slot = ~std::uint32_t{0};

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t position = empty_slot;  ///< in `classes_`
    };

    std::string_view encoded_closure(const Class& each) const {
        return std::string_view(closures_).substr(each.closure, each.bytes);
    }
    ClassKey key_of(const Class& each) const { return {each.items, encoded_closure(each)}; }
    template <typename Describe>
    bool insert(EssentialTree::Node node, const EssentialTree& tree, std::string_view encoded,
                std::uint32_t hash, Describe describe);
    std::size_t slot_of(std::uint32_t hash, std::string_view bytes) const;
    void grow_slots();
    void count_essentials(EssentialTree::Node node, const EssentialTree& tree);
    void put_essentials(EssentialTree::Node node, std::size_t& position,
                        std::vector<Itemset>& essentials) const;

    std::vector<Itemset> items_;       ///< by rank
    std::size_t most_;                 ///< of classes
    std::vector<std::size_t> digits_;  ///< by rank: of the numbers of all its items
    std::string closures_;             ///< of all classes
    std::string encoded_;              ///< set and used in one call
    std::vector<Class> classes_;
    std::vector<Slot> slots_;                ///< open addressing
    std::vector<EssentialTree::Node> next_;  ///< by node: another essential itemset of the same class
    EssentialTree tree_;
    ClassFigures figures_;
};

/// Appends an ascending itemset as bytes. Those of itemsets with the same number of items are in the
/// lexicographic order of the itemsets. Small differences between consecutive items take one byte.
void append_encoded(std::span<const Item> itemset, std::string& bytes);

/// Replaces `itemset` by that from which append_encoded made `bytes`.
void decode(std::string_view bytes, Itemset& itemset);

/// A number that is as good as random, and the same for the same closure, as append_encoded writes it, in all
/// processes of a run: they divide the classes by it.
std::uint32_t hash_of_closure(std::string_view encoded);

/// The bytes that an item takes in a class file, with a blank.
std::size_t text_bytes_of(Item item);

}  // namespace korv::tools
