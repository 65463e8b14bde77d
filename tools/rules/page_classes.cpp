#include "rules/page_classes.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <numeric>
#include <optional>
#include <unordered_map>

#include "base/itemset_table.h"
#include "index/item_index.h"
#include "rules/class_numbers.h"

namespace korv::tools {

namespace {

constexpr std::uint32_t left_out = std::numeric_limits<std::uint32_t>::max();

/// How many transactions meet one of the items of a rule, which is known although a side may not be.
Count meeting_either(const FoundRule& rule, Count transactions) {
    const auto [premise, conclusion, both] = rule.at_low;
    const bool is_premise_plain = !rule.premise.is_negated();
    const bool is_conclusion_plain = !rule.conclusion.is_negated();
    if (is_premise_plain && is_conclusion_plain) {
        return premise + conclusion - both;
    }
    const Count neither = is_premise_plain ? conclusion - both : is_conclusion_plain ? premise - both : both;
    return transactions - neither;
}

/// Finds the smallest class around some items.
class SmallestClass {
public:
    explicit SmallestClass(const PageLattice& lattice)
        : lattice_(lattice),
          numbers_(numbers_by_rarity(lattice)),
          index_(index_itemsets(), numbers_.size()) {}

    /// Nothing where there is none that `meeting` transactions meet.
    std::optional<std::uint32_t> around(const Itemset& items, Count meeting) {
        if (items.empty() || !translate(items)) {
            return std::nullopt;
        }
        const auto end = static_cast<Column>(lattice_.size());
        const Column found = index_.first_superset(translated_, 0, end);
        // Around the same items, a larger class is one that more transactions meet.
        return found < end && lattice_.entry(found).support() == meeting ? std::optional(found)
                                                                         : std::nullopt;
    }

private:
    /// As the index wants them: the rarer items first.
    static std::unordered_map<Item, Item> numbers_by_rarity(const PageLattice& lattice) {
        std::unordered_map<Item, std::size_t> frequencies;
        for (std::uint32_t position = 0; position < lattice.size(); ++position) {
            for (const Item item : lattice.entry(position).itemset()) {
                ++frequencies[item];
            }
        }
        std::vector<std::pair<std::size_t, Item>> order;
        order.reserve(frequencies.size());
        for (const auto& [item, frequency] : frequencies) {
            order.emplace_back(frequency, item);
        }
        std::ranges::sort(order);
        std::unordered_map<Item, Item> numbers;
        for (const auto& [frequency, item] : order) {
            numbers.emplace(item, static_cast<Item>(numbers.size()));
        }
        return numbers;
    }

    const ItemsetTable& index_itemsets() {
        for (std::uint32_t position = 0; position < lattice_.size(); ++position) {
            translate(lattice_.entry(position).itemset());
            itemsets_.push_back(translated_);
        }
        return itemsets_;
    }

    /// Makes `translated_` the numbers of items. False where no class has one of them.
    bool translate(const Itemset& items) {
        translated_.clear();
        for (const Item item : items) {
            const auto found = numbers_.find(item);
            if (found == numbers_.end()) {
                return false;
            }
            translated_.push_back(found->second);
        }
        std::ranges::sort(translated_);
        return true;
    }

    const PageLattice& lattice_;
    std::unordered_map<Item, Item> numbers_;
    Itemset translated_;
    ItemsetTable itemsets_;
    ItemIndex index_;
};

/// Classes in the order in which they are first needed.
class Needed {
public:
    explicit Needed(std::size_t classes) : is_there_(classes) { order_.reserve(classes); }

    void add(std::uint32_t position) {
        if (!is_there_[position]) {
            is_there_[position] = true;
            order_.push_back(position);
        }
    }

    void add(std::span<const std::uint32_t> positions) {
        for (const std::uint32_t position : positions) {
            add(position);
        }
    }

    bool are_all() const { return order_.size() == is_there_.size(); }

    std::vector<std::uint32_t> take() { return std::move(order_); }

private:
    std::vector<bool> is_there_;
    std::vector<std::uint32_t> order_;
};

/// What is told of the classes that are chosen, class by class.
class ClassLists {
public:
    ClassLists(const PageLattice& lattice, std::span<const std::uint32_t> chosen, const PageItems& items)
        : lattice_(lattice), items_(items), places_(lattice.size(), left_out) {
        for (std::size_t place = 0; place < chosen.size(); ++place) {
            places_[chosen[place]] = static_cast<std::uint32_t>(place);
        }
    }

    void add(std::uint32_t position) {
        counts_.push_back(lattice_.entry(position).support());
        add_neighbours(position);
        add_own_items(position);
        add_essentials(lattice_.entry(position).essentials());
    }

    void move_to(PageArrays& arrays) const {
        constexpr PageCoding planes = {.in_planes = true};
        arrays.add("class_counts", counts_, planes);
        arrays.add("class_own_sizes", own_sizes_);
        arrays.add("class_own_items", own_items_, planes);
        arrays.add("class_lower_sizes", lower_sizes_);
        arrays.add("class_lowers", lowers_, planes);
        arrays.add_unless_all(0, "class_more_lowers", more_lowers_);
        arrays.add_unless_all(0, "class_more_uppers", more_uppers_);
        arrays.add("class_essential_sizes", essentials_of_classes_);
        arrays.add("essential_sizes", essential_sizes_);
        arrays.add("essential_items", essential_items_, planes);
    }

private:
    std::uint32_t number_left_out(std::span<const std::uint32_t> positions) const {
        return static_cast<std::uint32_t>(std::ranges::count_if(
            positions, [this](std::uint32_t position) { return places_[position] == left_out; }));
    }

    void add_neighbours(std::uint32_t position) {
        const std::span<const std::uint32_t> lowers = lattice_.lowers(position);
        const std::uint32_t more = number_left_out(lowers);
        lower_sizes_.push_back(static_cast<std::uint32_t>(lowers.size()) - more);
        more_lowers_.push_back(more);
        more_uppers_.push_back(number_left_out(lattice_.uppers(position)));
        // The larger a neighbour's position is the smaller is the difference.
        for (std::size_t i = lowers.size(); i-- > 0;) {
            if (places_[lowers[i]] != left_out) {
                lowers_.push_back(places_[position] - places_[lowers[i]]);
            }
        }
    }

    /// The items that none of the neighbours below has.
    void add_own_items(std::uint32_t position) {
        below_.clear();
        for (const std::uint32_t lower : lattice_.lowers(position)) {
            if (places_[lower] != left_out) {
                const Itemset& itemset = lattice_.entry(lower).itemset();
                below_.insert(below_.end(), itemset.begin(), itemset.end());
            }
        }
        std::ranges::sort(below_);
        own_.clear();
        std::ranges::set_difference(lattice_.entry(position).itemset(), below_, std::back_inserter(own_));
        own_sizes_.push_back(static_cast<std::uint32_t>(own_.size()));
        items_.append(own_, own_items_);
    }

    void add_essentials(const std::vector<Itemset>& essentials) {
        essentials_of_classes_.push_back(static_cast<std::uint32_t>(essentials.size()));
        for (const Itemset& essential : essentials) {
            essential_sizes_.push_back(static_cast<std::uint32_t>(essential.size()));
            items_.append(essential, essential_items_);
        }
    }

    const PageLattice& lattice_;
    const PageItems& items_;
    std::vector<std::uint32_t> places_;  ///< among the chosen ones, by position
    std::vector<std::uint32_t> counts_;
    std::vector<std::uint32_t> own_sizes_;
    std::vector<std::uint32_t> own_items_;
    std::vector<std::uint32_t> lower_sizes_;
    std::vector<std::uint32_t> lowers_;
    std::vector<std::uint32_t> more_lowers_;
    std::vector<std::uint32_t> more_uppers_;
    std::vector<std::uint32_t> essentials_of_classes_;
    std::vector<std::uint32_t> essential_sizes_;
    std::vector<std::uint32_t> essential_items_;
    Itemset below_;  ///< working space
    Itemset own_;    ///< working space
};

std::vector<std::uint32_t> ascending(std::span<const std::uint32_t> positions) {
    std::vector<std::uint32_t> sorted(positions.begin(), positions.end());
    std::ranges::sort(sorted);
    return sorted;
}

}  // namespace

PageLattice::PageLattice(const LatticeEntries& entries) : entries_(entries) {
    const ClassNumbers numbers(entries);
    upper_ends_.resize(entries.size());
    for (const LatticeEntry& entry : entries) {
        const auto first = static_cast<std::ptrdiff_t>(lowers_.size());
        for (const NodeRef successor : entry.successors) {
            lowers_.push_back(static_cast<std::uint32_t>(numbers.of(successor) - 1));
            ++upper_ends_[lowers_.back()];
        }
        std::sort(lowers_.begin() + first, lowers_.end());
        lower_ends_.push_back(lowers_.size());
    }
    std::partial_sum(upper_ends_.begin(), upper_ends_.end(), upper_ends_.begin());
    std::vector<std::size_t> next(entries.size());
    for (std::size_t i = 1; i < next.size(); ++i) {
        next[i] = upper_ends_[i - 1];
    }
    uppers_.resize(lowers_.size());
    for (std::uint32_t position = 0; position < entries.size(); ++position) {
        for (const std::uint32_t lower : lowers(position)) {
            uppers_[next[lower]++] = position;
        }
    }
}

std::vector<std::uint32_t> classes_by_need(const PageLattice& lattice, const std::vector<FoundRule>& rules,
                                           const ItemsetPool& itemsets, Count transactions) {
    Needed needed(lattice.size());
    if (lattice.size() > 0) {
        SmallestClass smallest(lattice);
        Itemset items;
        for (const FoundRule& rule : rules) {
            if (needed.are_all()) {
                break;
            }
            items.clear();
            std::ranges::set_union(itemsets[rule.premise.itemset()], itemsets[rule.conclusion.itemset()],
                                   std::back_inserter(items));
            const auto found = smallest.around(items, meeting_either(rule, transactions));
            if (found) {
                needed.add(*found);
                needed.add(lattice.lowers(*found));
                needed.add(lattice.uppers(*found));
            }
        }
    }
    for (std::uint32_t position = 0; position < lattice.size(); ++position) {
        needed.add(position);
    }
    return needed.take();
}

void add_classes(const PageLattice& lattice, std::span<const std::uint32_t> chosen, const PageItems& items,
                 PageArrays& arrays) {
    ClassLists lists(lattice, chosen, items);
    for (const std::uint32_t position : chosen) {
        lists.add(position);
    }
    lists.move_to(arrays);
}

std::vector<std::uint32_t> classes_within(const PageLattice& lattice, std::span<const std::uint32_t> by_need,
                                          const PageItems& items, std::size_t most,
                                          const std::function<std::size_t(const PageArrays&)>& cost) {
    const auto fits = [&](std::size_t number) {
        PageArrays arrays;
        add_classes(lattice, ascending(by_need.first(number)), items, arrays);
        return cost(arrays) <= most;
    };
    if (fits(by_need.size())) {
        return ascending(by_need);
    }
    constexpr std::size_t steps = 128;  // as finely as it is worth looking
    std::size_t fitting = 0;
    std::size_t too_many = by_need.size();
    while (too_many - fitting > by_need.size() / steps + 1) {
        const std::size_t middle = fitting + (too_many - fitting) / 2;
        (fits(middle) ? fitting : too_many) = middle;
    }
    return ascending(by_need.first(fitting));
}

}  // namespace korv::tools
