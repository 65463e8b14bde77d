#include "rules/page_rules.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace korv::tools {

namespace {

constexpr std::uint32_t no_position = std::numeric_limits<std::uint32_t>::max();

/// The two tables of a rule.
struct Tables {
    Contingency first;
    Contingency second;
};

/// The tables in the order in which the counts of the sides rise. False where these do not rise together.
bool rise(const Tables& tables) {
    return tables.first.premise <= tables.second.premise &&
           tables.first.conclusion <= tables.second.conclusion;
}

Tables in_rising_order(const FoundRule& rule) {
    const Tables tables = {rule.at_low, rule.at_high};
    return rise(tables) ? tables : Tables{tables.second, tables.first};
}

Count spread(const CountRange& range) {
    return range.high - range.low;
}

/// The slope with which the number of transactions that meet both sides follows from those of the sides;
/// nothing where the counts of a rule do not follow from those of its sides.
std::optional<std::int8_t> slope_of(const Tables& tables, const CountRange& premise,
                                    const CountRange& conclusion) {
    const bool are_those_of_the_sides =
        tables.first.premise == premise.low && tables.second.premise == premise.high &&
        tables.first.conclusion == conclusion.low && tables.second.conclusion == conclusion.high;
    const bool is_one_open = premise.low == premise.high || conclusion.low == conclusion.high;
    if (!are_those_of_the_sides || !is_one_open) {
        return std::nullopt;
    }
    const auto step = std::int64_t{std::max(spread(premise), spread(conclusion))};
    const std::int64_t rise = std::int64_t{tables.second.both} - tables.first.both;
    if (rise == 0) {
        return std::int8_t{0};
    }
    if (rise != step && rise != -step) {
        return std::nullopt;
    }
    return rise > 0 ? std::int8_t{1} : std::int8_t{-1};
}

/// The columns of the rules, rule by rule.
class RuleLists {
public:
    RuleLists(const PageSides& sides, std::size_t rules) : sides_(sides) {
        for (auto* const list : {&premises_, &conclusions_, &exceptions_, &forms_, &wordings_, &readings_}) {
            list->reserve(rules);
        }
        slopes_.reserve(rules);
    }

    void add(const FoundRule& rule) {
        Tables tables = in_rising_order(rule);
        const auto slope = slope_of(tables, sides_.count(rule.premise), sides_.count(rule.conclusion));
        if (!slope) {
            odd_rules_.push_back(static_cast<std::uint32_t>(premises_.size()));
            for (const Contingency& table : {tables.first, tables.second}) {
                odd_counts_.insert(odd_counts_.end(), {table.premise, table.conclusion, table.both});
            }
        }
        premises_.push_back(sides_.position(rule.premise));
        conclusions_.push_back(sides_.position(rule.conclusion));
        exceptions_.push_back(tables.first.premise - tables.first.both);
        slopes_.push_back(slope.value_or(0));
        forms_.push_back(static_cast<std::uint32_t>(rule.form));
        wordings_.push_back(rule.wordings);
        readings_.push_back(rule.readings);
    }

    void move_to(PageArrays& arrays, bool has_forms) const {
        constexpr PageCoding planes = {.in_planes = true};
        arrays.add("premises", premises_, planes);
        arrays.add("conclusions", conclusions_, planes);
        arrays.add("exceptions", exceptions_, planes);
        if (std::ranges::any_of(slopes_, [](std::int8_t slope) { return slope != 0; })) {
            arrays.add_signed("slopes", slopes_);
        }
        if (has_forms) {
            arrays.add("forms", forms_);
        }
        arrays.add_unless_all(1, "wordings", wordings_, planes);
        arrays.add_unless_all(1, "readings", readings_, planes);
        arrays.add("odd_rules", odd_rules_);
        arrays.add("odd_counts", odd_counts_);
    }

private:
    const PageSides& sides_;
    std::vector<std::uint32_t> premises_;
    std::vector<std::uint32_t> conclusions_;
    std::vector<std::uint32_t> exceptions_;
    std::vector<std::int8_t> slopes_;
    std::vector<std::uint32_t> forms_;
    std::vector<std::uint32_t> wordings_;
    std::vector<std::uint32_t> readings_;
    std::vector<std::uint32_t> odd_rules_;
    std::vector<std::uint32_t> odd_counts_;
};

}  // namespace

PageSides::PageSides(const std::vector<FoundRule>& rules, const ItemsetPool& itemsets)
    : positions_(2 * itemsets.size(), no_position) {
    for (const FoundRule& rule : rules) {
        add(rule.premise, range_of(rule, &Contingency::premise));
        add(rule.conclusion, range_of(rule, &Contingency::conclusion));
    }
    std::ranges::sort(sides_, [&itemsets](const CountedSide& one, const CountedSide& other) {
        if (one.side.is_negated() != other.side.is_negated()) {
            return other.side.is_negated();
        }
        return std::ranges::lexicographical_compare(itemsets[one.side.itemset()],
                                                    itemsets[other.side.itemset()]);
    });
    for (std::size_t i = 0; i < sides_.size(); ++i) {
        positions_[slot(sides_[i].side)] = static_cast<std::uint32_t>(i);
    }
}

std::size_t PageSides::plain() const {
    const auto first_negated =
        std::ranges::partition_point(sides_, [](const CountedSide& each) { return !each.side.is_negated(); });
    return static_cast<std::size_t>(first_negated - sides_.begin());
}

void PageSides::add(Side side, const CountRange& count) {
    std::uint32_t& position = positions_[slot(side)];
    if (position == no_position) {
        position = static_cast<std::uint32_t>(sides_.size());
        sides_.push_back({side, count});
        return;
    }
    CountRange& known = sides_[position].count;
    known = {std::max(known.low, count.low), std::min(known.high, count.high)};
}

void add_sides(const PageSides& sides, const ItemsetPool& itemsets, const PageItems& items,
               PageArrays& arrays) {
    std::vector<std::uint32_t> sizes;
    std::vector<std::uint32_t> positions;
    std::vector<std::uint32_t> counts;
    std::vector<std::uint32_t> spreads;
    for (const PageSides::CountedSide& each : sides.all()) {
        const ItemSpan itemset = itemsets[each.side.itemset()];
        sizes.push_back(static_cast<std::uint32_t>(itemset.size()));
        items.append(itemset, positions);
        counts.push_back(each.count.low);
        spreads.push_back(spread(each.count));
    }
    arrays.add("side_sizes", sizes);
    arrays.add("side_items", positions, {.in_planes = true});
    arrays.add("side_counts", counts, {.in_planes = true});
    arrays.add_unless_all(0, "side_spreads", spreads, {.in_planes = true});
}

void add_rules(const std::vector<FoundRule>& rules, const PageSides& sides, bool has_forms,
               PageArrays& arrays) {
    RuleLists lists(sides, rules.size());
    for (const FoundRule& rule : rules) {
        lists.add(rule);
    }
    lists.move_to(arrays, has_forms);
}

void add_holdout(const std::vector<HoldoutCounts>& holdout, PageArrays& arrays) {
    std::vector<std::uint32_t> premises;
    std::vector<std::uint32_t> exceptions;
    std::vector<float> surprises;
    for (const HoldoutCounts& each : holdout) {
        premises.push_back(each.counts.premise);
        exceptions.push_back(each.counts.premise - each.counts.both);
        surprises.push_back(static_cast<float>(each.surprise));
    }
    arrays.add("holdout_premises", premises, {.in_planes = true});
    arrays.add("holdout_exceptions", exceptions, {.in_planes = true});
    arrays.add_floats("holdout_ps", surprises);
}

}  // namespace korv::tools
