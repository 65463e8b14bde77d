#include "index/key_index.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <functional>
#include <limits>
#include <numeric>
#include <span>
#include <utility>

namespace korv {

namespace {

/// The children of the root are searched like any others if there are no more than so many for each item of
/// the itemset asked for. With many thousand items there are many more.
constexpr std::size_t few_tops_for_each_item = 16;

constexpr std::uint32_t no_position = std::numeric_limits<std::uint32_t>::max();

/// The items in the order in which they stand on paths: by descending smallest support of a key that holds
/// them, then ascending.
Itemset items_by_rank(const ItemsetTable& keys, const std::vector<KeyOwner>& owners, std::size_t items) {
    std::vector<Count> smallest_support(items, std::numeric_limits<Count>::max());
    for (std::size_t key = 0; key < keys.size(); ++key) {
        for (const Item item : keys[key]) {
            smallest_support[item] = std::min(smallest_support[item], owners[key].support);
        }
    }
    Itemset by_rank(items);
    std::iota(by_rank.begin(), by_rank.end(), Item{0});
    std::ranges::sort(by_rank, [&](Item a, Item b) {
        return smallest_support[a] != smallest_support[b] ? smallest_support[a] > smallest_support[b] : a < b;
    });
    return by_rank;
}

}  // namespace

/// Lays out the nodes, level by level.
class KeyIndex::Builder {
public:
    Builder(ItemsetTable keys, const std::vector<KeyOwner>& owners, std::size_t items)
        : item_of_rank_(items_by_rank(keys, owners, items)) {
        turn_into_paths(keys);
        sort(keys, owners);
    }

    /// Fills what an index is made of.
    void build(KeyIndex& index) {
        index.nodes_.push_back({});
        index.positions_.push_back({no_position, no_position});
        std::vector<Keys> level = {{0, owners_.size()}};
        for (std::size_t depth = 0; !level.empty(); ++depth) {
            level = add_children(index, level, depth);
        }
        index.nodes_.push_back({.first_child = static_cast<std::uint32_t>(index.nodes_.size())});
    }

private:
    /// The keys whose paths go through a node: those from `begin` to `end` - 1.
    struct Keys {
        std::size_t begin;
        std::size_t end;
    };
    struct Child {
        Count largest;
        Keys keys;
    };

    /// Turns each key into its path: the ranks of its items, ascending.
    void turn_into_paths(ItemsetTable& keys) const {
        Itemset rank_of_item(item_of_rank_.size());
        for (Item rank = 0; rank < item_of_rank_.size(); ++rank) {
            rank_of_item[item_of_rank_[rank]] = rank;
        }
        for (std::size_t key = 0; key < keys.size(); ++key) {
            const std::span<Item> items = keys.mutable_items(key);
            std::ranges::transform(items, items.begin(), [&](Item item) { return rank_of_item[item]; });
            std::ranges::sort(items);
        }
    }

    /// Fills `paths_` and `owners_` with the paths in lexicographic order.
    void sort(const ItemsetTable& paths, const std::vector<KeyOwner>& owners) {
        // Of few items many fit into the number that decides most comparisons.
        const auto item_bits = std::max(2U, static_cast<unsigned>(std::bit_width(item_of_rank_.size() + 1)));
        std::vector<std::pair<std::uint64_t, std::uint32_t>> order;
        order.reserve(paths.size());
        for (std::uint32_t key = 0; key < paths.size(); ++key) {
            order.emplace_back(beginning(paths[key], item_bits), key);
        }
        std::ranges::sort(order, [&paths](const auto& a, const auto& b) {
            return a.first != b.first
                       ? a.first < b.first
                       : std::ranges::lexicographical_compare(paths[a.second], paths[b.second]);
        });
        paths_.reserve(paths.size(), paths.items());
        owners_.reserve(owners.size());
        for (const auto& [begin, key] : order) {
            paths_.push_back(paths[key]);
            owners_.push_back(owners[key]);
        }
    }

    /// Completes the nodes of a level, the last ones so far, and adds their children. `level`: the keys of
    /// each node. Returns those of each child.
    std::vector<Keys> add_children(KeyIndex& index, const std::vector<Keys>& level, std::size_t depth) {
        std::vector<Keys> next;
        std::size_t node = index.nodes_.size() - level.size();
        for (Keys keys : level) {
            index.nodes_[node].first_child = static_cast<std::uint32_t>(index.nodes_.size());
            // A path that ends here comes before those that go on.
            const std::size_t first = keys.begin;
            while (keys.begin < keys.end && paths_[keys.begin].size() == depth) {
                ++keys.begin;
            }
            if (first < keys.begin) {
                set_own(index, node, {first, keys.begin});
            }
            add_siblings(index, keys, depth, next);
            ++node;
        }
        return next;
    }

    /// Sets a node's own support and position to those of the equal keys whose paths end there.
    void set_own(KeyIndex& index, std::size_t node, Keys keys) {
        const auto begin = owners_.begin() + static_cast<std::ptrdiff_t>(keys.begin);
        const auto end = owners_.begin() + static_cast<std::ptrdiff_t>(keys.end);
        // The largest support first; of equal ones the smallest position.
        const auto own = std::min_element(begin, end, [](const KeyOwner& a, const KeyOwner& b) {
            return a.support != b.support ? a.support > b.support : a.position < b.position;
        });
        index.nodes_[node].own = own->support;
        index.positions_[node].own = own->position;
        for (auto twin = begin; twin != end; ++twin) {
            if (twin->position < own->position) {
                index.earlier_twins_.push_back({items_of(keys.begin), *twin});
            }
        }
    }

    Itemset items_of(std::size_t key) const {
        Itemset items;
        for (const Item rank : paths_[key]) {
            items.push_back(item_of_rank_[rank]);
        }
        return items;
    }

    /// Adds a node for each rank that `keys` have at `depth` of their paths.
    void add_siblings(KeyIndex& index, Keys keys, std::size_t depth, std::vector<Keys>& next) {
        siblings_.clear();
        while (keys.begin < keys.end) {
            const Item rank = paths_[keys.begin][depth];
            Child child = {0, {keys.begin, keys.begin}};
            for (; child.keys.end < keys.end && paths_[child.keys.end][depth] == rank; ++child.keys.end) {
                child.largest = std::max(child.largest, owners_[child.keys.end].support);
            }
            siblings_.push_back(child);
            keys.begin = child.keys.end;
        }
        std::ranges::sort(siblings_, [](const Child& a, const Child& b) {
            return a.largest != b.largest ? a.largest > b.largest : a.keys.begin < b.keys.begin;
        });
        for (const auto& [largest, of_child] : siblings_) {
            index.nodes_.push_back(
                {.item = item_of_rank_[paths_[of_child.begin][depth]], .largest = largest});
            index.positions_.push_back({smallest_position(of_child), no_position});
            next.push_back(of_child);
        }
    }

    std::uint32_t smallest_position(Keys keys) const {
        std::uint32_t smallest = no_position;
        for (std::size_t key = keys.begin; key < keys.end; ++key) {
            smallest = std::min(smallest, owners_[key].position);
        }
        return smallest;
    }

    Itemset item_of_rank_;
    ItemsetTable paths_;            ///< in lexicographic order
    std::vector<KeyOwner> owners_;  ///< of each path
    std::vector<Child> siblings_;
};

KeyIndex::KeyIndex(ItemsetTable keys, const std::vector<KeyOwner>& owners, std::size_t items)
    : top_(items, no_node) {
    Builder(std::move(keys), owners, items).build(*this);
    const Siblings tops = children(0);
    for (std::uint32_t node = tops.first; node < tops.end; ++node) {
        top_[nodes_[node].item] = node;
    }
}

/// Marks the items of an itemset as wanted, in its scope.
class KeySearch::Wanted {
public:
    Wanted(ItemSpan itemset, std::vector<char>& is_wanted) : itemset_(itemset), is_wanted_(is_wanted) {
        mark(1);
    }
    ~Wanted() { mark(0); }
    Wanted(const Wanted&) = delete;
    Wanted& operator=(const Wanted&) = delete;

private:
    void mark(char wanted) {
        for (const Item item : itemset_) {
            is_wanted_[item] = wanted;
        }
    }

    ItemSpan itemset_;
    std::vector<char>& is_wanted_;
};

Count KeySearch::largest_support_within(ItemSpan itemset, Count least) {
    const Wanted wanted(itemset, is_wanted_);
    const bool few_tops =
        index_.children(0).end - index_.children(0).first <= few_tops_for_each_item * itemset.size();
    return few_tops ? search_below(0, least) : search_below_wanted_tops(itemset, least);
}

/// Fills wanted_tops_, by falling support.
void KeySearch::want_tops(ItemSpan itemset) {
    wanted_tops_.clear();
    for (const Item item : itemset) {
        if (index_.top_[item] != KeyIndex::no_node) {
            wanted_tops_.push_back(index_.top_[item]);
        }
    }
    std::ranges::sort(wanted_tops_);
}

/// The largest support, entering the tree only by the items of the itemset.
Count KeySearch::search_below_wanted_tops(ItemSpan itemset, Count largest) {
    want_tops(itemset);
    for (const std::uint32_t node : wanted_tops_) {
        if (index_.nodes_[node].largest <= largest) {
            break;
        }
        largest = search_below(node, take_own(node, largest));
    }
    return largest;
}

/// The largest support of a key below a node, if it is more than `largest`; otherwise `largest`.
Count KeySearch::search_below(std::uint32_t node, Count largest) {
    pending_.assign(1, index_.children(node));
    while (!pending_.empty()) {
        Siblings& siblings = pending_.back();
        if (siblings.first == siblings.end || index_.nodes_[siblings.first].largest <= largest) {
            pending_.pop_back();
            continue;
        }
        const std::uint32_t next = siblings.first++;
        if (is_wanted_[index_.nodes_[next].item] != 0) {
            largest = take_own(next, largest);
            pending_.push_back(index_.children(next));
        }
    }
    return largest;
}

/// The larger of a node's own support and `largest`.
Count KeySearch::take_own(std::uint32_t node, Count largest) {
    if (index_.nodes_[node].own > largest) {
        found_ = node;
        return index_.nodes_[node].own;
    }
    return largest;
}

bool KeySearch::has_other_within(ItemSpan itemset, Count least, std::uint32_t position) {
    const Wanted wanted(itemset, is_wanted_);
    const bool few_tops =
        index_.children(0).end - index_.children(0).first <= few_tops_for_each_item * itemset.size();
    if (few_tops) {
        return has_other_below(0, least, position);
    }
    want_tops(itemset);
    for (const std::uint32_t node : wanted_tops_) {
        if (index_.nodes_[node].largest < least) {
            return false;
        }
        if (is_other(node, least, position) || has_other_below(node, least, position)) {
            return true;
        }
    }
    return false;
}

bool KeySearch::has_other_below(std::uint32_t node, Count least, std::uint32_t position) {
    pending_.assign(1, index_.children(node));
    while (!pending_.empty()) {
        Siblings& siblings = pending_.back();
        if (siblings.first == siblings.end || index_.nodes_[siblings.first].largest < least) {
            pending_.pop_back();
            continue;
        }
        const std::uint32_t next = siblings.first++;
        if (is_wanted_[index_.nodes_[next].item] != 0) {
            if (is_other(next, least, position)) {
                return true;
            }
            pending_.push_back(index_.children(next));
        }
    }
    return false;
}

bool KeySearch::has_position_within(ItemSpan itemset, Count least, std::uint32_t before) {
    // Most often the key of the largest support will do, and it is found fastest.
    const bool is_there = largest_support_within(itemset, least) > least;
    return is_there &&
           (index_.positions_[found_].own < before || first_position_within(itemset, least, before) < before);
}

std::uint32_t KeySearch::first_position_within(ItemSpan itemset, Count least, std::uint32_t before) {
    const Wanted wanted(itemset, is_wanted_);
    const auto visit = [&](std::uint32_t node) {
        if (index_.nodes_[node].largest <= least || index_.positions_[node].smallest >= before) {
            return;
        }
        if (index_.nodes_[node].own > least) {
            before = std::min(before, index_.positions_[node].own);
        }
        pending_.push_back(index_.children(node));
    };
    pending_.clear();
    for (const Item item : itemset) {
        if (index_.top_[item] != KeyIndex::no_node) {
            visit(index_.top_[item]);
        }
    }
    while (!pending_.empty()) {
        Siblings& siblings = pending_.back();
        if (siblings.first == siblings.end || index_.nodes_[siblings.first].largest <= least) {
            pending_.pop_back();
            continue;
        }
        const std::uint32_t next = siblings.first++;
        if (is_wanted_[index_.nodes_[next].item] != 0) {
            visit(next);
        }
    }
    for (const auto& [key, owner] : index_.earlier_twins_) {
        const bool is_candidate = owner.support > least && owner.position < before;
        if (is_candidate && std::ranges::all_of(key, [this](Item item) { return is_wanted_[item] != 0; })) {
            before = owner.position;
        }
    }
    return before;
}

}  // namespace korv
