#include "index/key_index.h"

#include <algorithm>
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

}  // namespace

/// Lays out the nodes, level by level.
class KeyIndex::Builder {
public:
    Builder(const ItemsetTable& keys, const std::vector<Count>& supports, std::size_t items)
        : supports_(supports), order_(keys.size()) {
        make_paths(keys, items);
        std::iota(order_.begin(), order_.end(), std::uint32_t{0});
        std::ranges::sort(order_, [this](std::uint32_t a, std::uint32_t b) {
            return std::ranges::lexicographical_compare(paths_[a], paths_[b]);
        });
    }

    std::vector<Node> nodes() {
        nodes_.push_back({});
        std::vector<Keys> level = {order_};
        for (std::size_t depth = 0; !level.empty(); ++depth) {
            level = add_children(level, depth);
        }
        nodes_.push_back({.first_child = static_cast<std::uint32_t>(nodes_.size())});
        return std::move(nodes_);
    }

private:
    /// The keys whose paths go through a node, in the order of their paths.
    using Keys = std::span<const std::uint32_t>;

    void make_paths(const ItemsetTable& keys, std::size_t items) {
        std::vector<Count> smallest_support(items, std::numeric_limits<Count>::max());
        for (std::size_t key = 0; key < keys.size(); ++key) {
            for (const Item item : keys[key]) {
                smallest_support[item] = std::min(smallest_support[item], supports_[key]);
            }
        }
        Itemset path;
        for (std::size_t key = 0; key < keys.size(); ++key) {
            path.assign(keys[key].begin(), keys[key].end());
            // Stable, so that items of one support stand in one order everywhere.
            std::ranges::stable_sort(path, std::greater{}, [&](Item item) { return smallest_support[item]; });
            paths_.push_back(path);
        }
    }

    /// Completes the nodes of a level, the last ones so far, and adds their children. `level`: the keys of
    /// each node. Returns those of each child.
    std::vector<Keys> add_children(const std::vector<Keys>& level, std::size_t depth) {
        std::vector<Keys> next;
        std::size_t node = nodes_.size() - level.size();
        for (Keys keys : level) {
            nodes_[node].first_child = static_cast<std::uint32_t>(nodes_.size());
            // A path that ends here comes before those that go on.
            for (; !keys.empty() && paths_[keys.front()].size() == depth; keys = keys.subspan(1)) {
                nodes_[node].own = std::max(nodes_[node].own, supports_[keys.front()]);
            }
            add_siblings(keys, depth, next);
            ++node;
        }
        return next;
    }

    /// Adds a node for each item that `keys` have at `depth` of their paths.
    void add_siblings(Keys keys, std::size_t depth, std::vector<Keys>& next) {
        siblings_.clear();
        while (!keys.empty()) {
            const Item item = paths_[keys.front()][depth];
            const auto end =
                std::ranges::find_if(keys, [&](std::uint32_t key) { return paths_[key][depth] != item; });
            const Keys of_item = keys.first(static_cast<std::size_t>(end - keys.begin()));
            siblings_.emplace_back(largest_support(of_item), of_item);
            keys = keys.subspan(of_item.size());
        }
        std::ranges::stable_sort(siblings_, std::greater{}, &std::pair<Count, Keys>::first);
        for (const auto& [largest, of_item] : siblings_) {
            nodes_.push_back({.item = paths_[of_item.front()][depth], .largest = largest});
            next.push_back(of_item);
        }
    }

    Count largest_support(Keys keys) const {
        Count largest = 0;
        for (const std::uint32_t key : keys) {
            largest = std::max(largest, supports_[key]);
        }
        return largest;
    }

    const std::vector<Count>& supports_;
    ItemsetTable paths_;                ///< of each key
    std::vector<std::uint32_t> order_;  ///< the keys by their paths
    std::vector<Node> nodes_;
    std::vector<std::pair<Count, Keys>> siblings_;
};

KeyIndex::KeyIndex(const ItemsetTable& keys, const std::vector<Count>& supports, std::size_t items)
    : nodes_(Builder(keys, supports, items).nodes()), top_(items, no_node), is_wanted_(items) {
    const Siblings tops = children(0);
    for (std::uint32_t node = tops.first; node < tops.end; ++node) {
        top_[nodes_[node].item] = node;
    }
}

Count KeyIndex::largest_support_within(ItemSpan itemset, Count least) {
    for (const Item item : itemset) {
        is_wanted_[item] = 1;
    }
    const bool few_tops = children(0).end - children(0).first <= few_tops_for_each_item * itemset.size();
    const Count largest = few_tops ? search_below(0, least) : search_below_wanted_tops(itemset, least);
    for (const Item item : itemset) {
        is_wanted_[item] = 0;
    }
    return largest;
}

/// The same from the root, without looking at those of its children whose item is not wanted.
Count KeyIndex::search_below_wanted_tops(ItemSpan itemset, Count largest) {
    wanted_tops_.clear();
    for (const Item item : itemset) {
        if (top_[item] != no_node) {
            wanted_tops_.push_back(top_[item]);
        }
    }
    std::ranges::sort(wanted_tops_);
    for (const std::uint32_t node : wanted_tops_) {
        if (nodes_[node].largest <= largest) {
            break;
        }
        largest = search_below(node, std::max(largest, nodes_[node].own));
    }
    return largest;
}

/// The largest support of a key below a node, if it is more than `largest`; otherwise `largest`.
Count KeyIndex::search_below(std::uint32_t node, Count largest) {
    pending_.assign(1, children(node));
    while (!pending_.empty()) {
        Siblings& siblings = pending_.back();
        if (siblings.first == siblings.end || nodes_[siblings.first].largest <= largest) {
            pending_.pop_back();
            continue;
        }
        const std::uint32_t next = siblings.first++;
        if (is_wanted_[nodes_[next].item] != 0) {
            largest = std::max(largest, nodes_[next].own);
            pending_.push_back(children(next));
        }
    }
    return largest;
}

}  // namespace korv
