#include "engine/difference_supports.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

#include "base/itemset_table.h"
#include "index/item_numbering.h"

namespace korv {

namespace {

/// Whether every essential itemset has items and lies within the closed itemset.
bool is_regular(const LatticeEntry& entry) {
    return std::ranges::all_of(entry.essentials(), [&entry](const Itemset& essential) {
        return !essential.empty() && is_contained(essential, entry.itemset());
    });
}

/// The classes by ascending support. Those of one support stand about in the order of their itemsets, so that
/// classes side by side share items: bitmaps over them then have many empty words.
std::vector<std::uint32_t> by_support(const LatticeEntries& entries) {
    constexpr unsigned item_bits = 16;
    std::vector<std::tuple<Count, std::uint64_t, std::uint32_t>> order;
    order.reserve(entries.size());
    for (const LatticeEntry& entry : entries) {
        order.emplace_back(entry.support(), beginning(entry.itemset(), item_bits), order.size());
    }
    std::ranges::sort(order);
    std::vector<std::uint32_t> positions(order.size());
    std::ranges::transform(order, positions.begin(), [](const auto& each) { return std::get<2>(each); });
    return positions;
}

/// A position of a class in the order of the entries.
using Position = std::uint32_t;

/// What the indexes are made of, in numbers and in the order of the entries.
struct Numbered {
    explicit Numbered(const LatticeEntries& entries);

    std::vector<Position> positions_by_support;
    ItemNumbering numbering;
    ItemsetTable closed_itemsets;
    std::vector<Position> irregular;
    /// Those of the regular classes.
    ItemsetTable keys;
    std::vector<KeyOwner> owners;

private:
    void reserve(const LatticeEntries& entries);
};

/// The classes by ascending support: the first one around an itemset gives its upper bound.
struct Classes {
    /// `in_order`: the closed itemsets in the order of the entries.
    Classes(const LatticeEntries& entries, std::vector<Position> by_support, const ItemsetTable& in_order);

    std::vector<Position> positions;
    ItemsetTable closed_itemsets;
    std::vector<Count> supports;
};

/// One pass over the entries, in their order.
Numbered::Numbered(const LatticeEntries& entries)
    : positions_by_support(by_support(entries)), numbering(korv::closed_itemsets(entries)) {
    reserve(entries);
    Itemset numbers;
    for (Position position = 0; position < entries.size(); ++position) {
        const LatticeEntry& entry = entries[position];
        numbering.translate(entry.itemset(), numbers);
        closed_itemsets.push_back(numbers);
        if (!is_regular(entry)) {
            irregular.push_back(position);
            continue;
        }
        if (entry.essentials().empty()) {
            keys.push_back(numbers);
            owners.push_back({entry.support(), position});
        }
        for (const Itemset& essential : entry.essentials()) {
            numbering.translate(essential, numbers);
            keys.push_back(numbers);
            owners.push_back({entry.support(), position});
        }
    }
}

/// Makes room for what the tables will hold: growing would take up to twice as much.
void Numbered::reserve(const LatticeEntries& entries) {
    std::size_t items = 0;
    std::size_t most_keys = 0;
    std::size_t items_of_keys = 0;
    for (const LatticeEntry& entry : entries) {
        items += entry.cardinality;
        most_keys += std::max<std::size_t>(1, entry.essentials().size());
        items_of_keys += entry.essentials().empty() ? entry.cardinality : 0;
        for (const Itemset& essential : entry.essentials()) {
            items_of_keys += essential.size();
        }
    }
    closed_itemsets.reserve(entries.size(), items);
    keys.reserve(most_keys, items_of_keys);
    owners.reserve(most_keys);
}

Classes::Classes(const LatticeEntries& entries, std::vector<Position> by_support,
                 const ItemsetTable& in_order)
    : positions(std::move(by_support)) {
    closed_itemsets.reserve(in_order.size(), in_order.items());
    supports.reserve(in_order.size());
    for (const Position position : positions) {
        closed_itemsets.push_back(in_order[position]);
        supports.push_back(entries[position].support());
    }
}

}  // namespace

struct DifferenceSupports::Indexes {
    explicit Indexes(const LatticeEntries& of_entries) : Indexes(of_entries, Numbered(of_entries)) {}
    Indexes(const Indexes&) = delete;
    Indexes& operator=(const Indexes&) = delete;
    ~Indexes() = default;

    /// The first class of at least this support, or the number of classes.
    Column first_class_of_support(Count support) const;

    const LatticeEntries& entries;
    const bool empty_itemset_is_closed;
    const ItemNumbering numbering;
    const std::vector<Position> irregular;  ///< ascending
    // In this order, since making the key index takes the most memory besides.
    const KeyIndex key_index;
    const Classes classes;
    const ItemIndex class_index;
    /// Whether no class holds a key of more support than its own. The classes around an itemset then begin
    /// at its lower bound.
    const bool consistent;

private:
    Indexes(const LatticeEntries& of_entries, Numbered numbered);

    bool classes_agree() const;
};

DifferenceSupports::Indexes::Indexes(const LatticeEntries& of_entries, Numbered numbered)
    : entries(of_entries),
      empty_itemset_is_closed(!entries.empty() && entries.front().itemset().empty()),
      numbering(std::move(numbered.numbering)),
      irregular(std::move(numbered.irregular)),
      key_index(std::move(numbered.keys), numbered.owners, numbering.size()),
      classes(entries, std::move(numbered.positions_by_support), std::exchange(numbered.closed_itemsets, {})),
      class_index(classes.closed_itemsets, numbering.size()),
      consistent(irregular.empty() && classes_agree()) {}

bool DifferenceSupports::Indexes::classes_agree() const {
    KeySearch search(key_index);
    for (std::size_t column = 0; column < classes.supports.size(); ++column) {
        const Count support = classes.supports[column];
        if (search.largest_support_within(classes.closed_itemsets[column], support) != support) {
            return false;
        }
    }
    return true;
}

Column DifferenceSupports::Indexes::first_class_of_support(Count support) const {
    return static_cast<Column>(std::ranges::lower_bound(classes.supports, support) -
                               classes.supports.begin());
}

DifferenceSupports::DifferenceSupports(const LatticeEntries& entries)
    : DifferenceSupports(std::make_shared<const Indexes>(entries)) {}

DifferenceSupports::DifferenceSupports(std::shared_ptr<const Indexes> indexes)
    : indexes_(std::move(indexes)), key_search_(indexes_->key_index), walk_(indexes_->entries) {}

std::vector<NodeRef> DifferenceSupports::contradicted_classes() {
    std::vector<Position> found;
    for (std::size_t column = 0; column < indexes_->classes.supports.size(); ++column) {
        const Position position = indexes_->classes.positions[column];
        if (key_search_.has_other_within(indexes_->classes.closed_itemsets[column],
                                         indexes_->classes.supports[column], position)) {
            found.push_back(position);
        }
    }
    std::ranges::sort(found);
    std::vector<NodeRef> classes;
    for (const Position position : found) {
        classes.push_back(indexes_->entries[position].node);
    }
    return classes;
}

/// L and U of an itemset.
SupportBounds DifferenceSupports::find_bounds(const Itemset& itemset) {
    indexes_->numbering.translate(itemset, numbers_);
    Count lower = key_search_.largest_support_within(numbers_);
    for (const Position position : indexes_->irregular) {
        const LatticeEntry& entry = indexes_->entries[position];
        if (entry.support() > lower && (entry.itemset() == itemset || bounds_from_below(entry, itemset))) {
            lower = entry.support();
        }
    }
    const Column from = indexes_->consistent ? indexes_->first_class_of_support(lower) : 0;
    const Column around = indexes_->class_index.first_superset(
        numbers_, from, static_cast<Column>(indexes_->classes.supports.size()));
    return {lower, indexes_->classes.supports[around]};
}

Count DifferenceSupports::settle(const Itemset& itemset, SupportBounds& bounds) {
    if (indexes_->empty_itemset_is_closed || itemset.empty()) {
        return walk_.settle(itemset, bounds);
    }
    const auto [known, is_new] = known_.try_emplace(itemset);
    if (is_new) {
        known = find_bounds(itemset);
    }
    const bool is_contradicted = known.upper < known.lower;
    const Count upper = is_contradicted ? upper_before_contradiction(itemset, known.lower) : known.upper;
    const Count low = std::max(bounds.lower, known.lower);
    const Count high = std::min(bounds.upper, upper);
    if (low > high || high == 0) {
        return replay(itemset, known, bounds);
    }
    bounds = {low, std::min(bounds.upper, known.upper)};
    return low == high ? low : 0;
}

/// U' of an itemset whose L is `lower`, or only_replay_tells.
Count DifferenceSupports::upper_before_contradiction(const Itemset& itemset, Count lower) {
    const auto [known, is_new] = contradicted_.try_emplace(itemset);
    if (is_new) {
        const Count upper = find_upper_before_contradiction(itemset, lower);
        known = {upper, upper};
    }
    return known.upper;
}

Count DifferenceSupports::find_upper_before_contradiction(const Itemset& itemset, Count lower) {
    constexpr Count no_class_around = std::numeric_limits<Count>::max();
    indexes_->numbering.translate(itemset, numbers_);
    const auto all = static_cast<Position>(indexes_->entries.size());
    const Position contradiction = first_of_less_support(lower, all);
    const auto closed =
        static_cast<Position>(find_closed(indexes_->entries, itemset) - indexes_->entries.begin());
    const bool ends_at_its_class = closed < all && contradiction == closed;
    const bool reaches_lower = key_search_.has_position_within(numbers_, lower - 1, contradiction) ||
                               first_irregular_to_raise(itemset, lower - 1, contradiction) < contradiction;
    if (ends_at_its_class || !reaches_lower) {
        return only_replay_tells;
    }
    // Usually the class of smallest support comes early enough.
    const Column first =
        indexes_->class_index.first_superset(numbers_, indexes_->first_class_of_support(lower), all);
    if (first < all && indexes_->classes.positions[first] < contradiction) {
        return indexes_->classes.supports[first];
    }
    indexes_->class_index.find_supersets(numbers_, first, all, around_);
    for (const ColumnWord& word : around_) {
        for (std::uint64_t bits = word.bits; bits != 0; bits &= bits - 1) {
            const Column column = lowest_column({word.index, bits});
            if (indexes_->classes.positions[column] < contradiction) {
                return indexes_->classes.supports[column];
            }
        }
    }
    return no_class_around;
}

/// Retraces the walk in jumps from one class that lowers the upper bound to the next; in between it looks up
/// where the lower bound reaches the upper one. `known`: L and U.
Count DifferenceSupports::replay(const Itemset& itemset, const SupportBounds& known, SupportBounds& bounds) {
    indexes_->numbering.translate(itemset, numbers_);
    // Where the walk ends: at the class of the itemset, or behind the last one.
    const auto end =
        static_cast<Position>(find_closed(indexes_->entries, itemset) - indexes_->entries.begin());
    Count upper = bounds.upper;
    for (Position from = 0; from < end;) {
        const Position next = first_of_less_support(upper, end);
        const Position reached =
            bounds.lower >= upper ? from : std::max(from, first_to_raise(itemset, upper - 1, next));
        if (reached < next) {
            const bool have_crossed =
                bounds.lower > upper || first_to_raise(itemset, upper, reached + 1) <= reached;
            if (!have_crossed) {
                bounds = {upper, upper};
                return upper;
            }
            break;  // they never meet
        }
        from = next;
        upper = next < end ? indexes_->entries[next].support() : upper;
    }
    if (end == indexes_->entries.size()) {
        bounds = {std::max(bounds.lower, known.lower), std::min(bounds.upper, known.upper)};
        return 0;
    }
    // No class before that of the itemset is around it, so the upper bound is where it started.
    for (Position next = 0; (next = first_to_raise(itemset, bounds.lower, end)) < end;) {
        bounds.lower = indexes_->entries[next].support();
    }
    return indexes_->entries[end].support();
}

/// The first class before `before` that raises the lower bound of an itemset, whose numbers are in
/// `numbers_`, beyond `lower`; otherwise `before`.
DifferenceSupports::Position DifferenceSupports::first_to_raise(const Itemset& itemset, Count lower,
                                                                Position before) {
    return first_irregular_to_raise(itemset, lower,
                                    key_search_.first_position_within(numbers_, lower, before));
}

/// first_to_raise among the irregular classes.
DifferenceSupports::Position DifferenceSupports::first_irregular_to_raise(const Itemset& itemset, Count lower,
                                                                          Position before) const {
    for (const Position position : indexes_->irregular) {
        if (position >= before) {
            break;
        }
        if (indexes_->entries[position].support() > lower &&
            bounds_from_below(indexes_->entries[position], itemset)) {
            return position;
        }
    }
    return before;
}

/// The first class before `before` that is around the itemset whose numbers are in `numbers_` and has less
/// than `support`; otherwise `before`.
DifferenceSupports::Position DifferenceSupports::first_of_less_support(Count support, Position before) {
    indexes_->class_index.find_supersets(numbers_, 0, indexes_->first_class_of_support(support), around_);
    for (const ColumnWord& word : around_) {
        for (std::uint64_t bits = word.bits; bits != 0; bits &= bits - 1) {
            before = std::min(before, indexes_->classes.positions[lowest_column({word.index, bits})]);
        }
    }
    return before;
}

}  // namespace korv
