#include "check/class_order_check.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/itemset_table.h"
#include "base/number_text.h"
#include "common/class_agreement.h"
#include "index/item_index.h"
#include "index/item_numbering.h"

namespace korv::tools {

namespace {

/// A class with its line.
struct ColumnClass {
    NodeRef node;
    std::uint32_t line;
    KnownSupports::Position closed;  ///< its position among all classes

    const Itemset& closed_itemset() const { return node->first; }
    Count support() const { return node->second.support; }
    const std::vector<Itemset>& essentials() const { return node->second.essentials; }
};

/// The classes by support, then by size, then in their order.
std::vector<ColumnClass> by_support(const CheckedClasses& checked) {
    std::vector<ColumnClass> placed;
    placed.reserve(checked.classes.size());
    KnownSupports::Position closed = 0;
    for (NodeRef node = checked.classes.begin(); node != checked.classes.end(); ++node, ++closed) {
        placed.push_back({node, checked.lines[closed], closed});
    }
    std::ranges::stable_sort(placed, [](const ColumnClass& a, const ColumnClass& b) {
        return std::pair(a.support(), a.closed_itemset().size()) <
               std::pair(b.support(), b.closed_itemset().size());
    });
    return placed;
}

ItemNumbering numbering_of(const std::vector<ColumnClass>& placed) {
    std::vector<const Itemset*> family;
    family.reserve(placed.size());
    for (const ColumnClass& each : placed) {
        family.push_back(&each.closed_itemset());
    }
    return ItemNumbering(family);
}

ItemsetTable in_numbers(const std::vector<ColumnClass>& placed, const ItemNumbering& numbering) {
    std::size_t items = 0;
    for (const ColumnClass& each : placed) {
        items += each.closed_itemset().size();
    }
    ItemsetTable table;
    table.reserve(placed.size(), items);
    Itemset numbers;
    for (const ColumnClass& each : placed) {
        numbering.translate(each.closed_itemset(), numbers);
        table.push_back(numbers);
    }
    return table;
}

std::size_t count(const ColumnSet& columns) {
    std::size_t count = 0;
    for (const ColumnWord& word : columns) {
        count += static_cast<std::size_t>(std::popcount(word.bits));
    }
    return count;
}

/// Calls `visit` with the columns, ascending, until it returns false.
template <typename Visit>
void for_each_column(const ColumnSet& columns, Visit visit) {
    for (ColumnWord word : columns) {
        for (; word.bits != 0; word.bits &= word.bits - 1) {
            if (!visit(lowest_column(word))) {
                return;
            }
        }
    }
}

std::string shown_items(const Itemset& itemset) {
    std::string text;
    append_items(itemset, text);
    return shown(text);
}

class OrderCheck {
public:
    OrderCheck(const CheckedClasses& checked, const KnownSupports& known, Findings& findings)
        : findings_(findings),
          known_(known),
          classes_(by_support(checked)),
          numbering_(numbering_of(classes_)),
          closed_itemsets_(in_numbers(classes_, numbering_)),
          index_(closed_itemsets_, numbering_.size()) {}

    void check_up_to(Count transactions) {
        for (const ColumnClass& each : classes_) {
            if (each.support() > transactions) {
                const Disagreement words = support_above(each.support(), transactions);
                add(FindingKind::support_above_size, each.line, words.found, words.expected, 0);
            }
        }
    }

    void check() {
        number_columns();
        is_suspect_.assign(known_.size(), false);
        for (const KnownSupports::Known& each : known_.shared()) {
            is_suspect_[known_.find(*each.itemset)] = true;
            look_closely(*each.itemset, column_of_[each.closed]);
        }
        for (const Position key : keys_by_size()) {
            check_key(key);
        }
        for (const ColumnClass& each : classes_) {
            check_nesting(each);
        }
        for (const auto& [column, contradiction] : contradictions_) {
            add_contradiction(classes_[column], contradiction);
        }
    }

private:
    using Position = KnownSupports::Position;

    /// What says that the support of a class is too small.
    struct Contradiction {
        Column other;        ///< the class of at least its support
        const Itemset* key;  ///< of that class, within this one
    };

    void number_columns() {
        const auto all = static_cast<Column>(classes_.size());
        column_of_.resize(all);
        ends_.resize(all);
        for (Column column = all; column-- > 0;) {
            column_of_[classes_[column].closed] = column;
            const bool is_last =
                column + 1 == all || classes_[column + 1].support() != classes_[column].support();
            ends_[column] = is_last ? column + 1 : ends_[column + 1];
        }
    }

    /// All keys, so that the parts of an itemset come before it.
    std::vector<Position> keys_by_size() const {
        std::vector<Position> keys;
        keys.reserve(known_.size());
        for (Position position = 0; position < known_.size(); ++position) {
            if (known_.is_key(position)) {
                keys.push_back(position);
            }
        }
        std::ranges::stable_sort(keys, {}, [this](Position each) { return known_[each].itemset->size(); });
        return keys;
    }

    /// Looks closely at the classes around a key only where there is a reason: a class around it of no larger
    /// support, one that lacks an item of its class, or a part of it of which the same was found. (What
    /// contains the key contains its parts, and so their classes, unless that was found of the parts.)
    void check_key(Position key) {
        const Itemset& itemset = *known_[key].itemset;
        const Column column = column_of_[known_[key].closed];
        if (is_suspect_[key] || has_suspect_part(key) || has_strangers(key, itemset, column)) {
            is_suspect_[key] = true;
            look_closely(itemset, column);
        }
    }

    bool has_suspect_part(Position key) const {
        return std::ranges::any_of(known_.parts(key), [this](Position part) {
            return part != KnownSupports::unknown && is_suspect_[part];
        });
    }

    /// Whether there is a class around a key that has no larger support, or lacks an item of its class.
    bool has_strangers(Position key, const Itemset& itemset, Column column) {
        look_at_parts(key);
        return !is_first_around(itemset, column) || lacks_items(itemset, column);
    }

    void look_closely(const Itemset& key, Column column) {
        check_around_class(column);
        if (!classes_[column].essentials().empty()) {
            check_around(key, column);
        }
    }

    /// Collects in `rest_` the items of the class that are in the class of no part of the key, and in
    /// `first_` the first column that can contain the key.
    void look_at_parts(Position key) {
        rest_ = difference(known_[key].node->first, *known_[key].itemset);
        first_ = 0;
        for (const Position part : known_.parts(key)) {
            if (part == KnownSupports::unknown) {
                continue;
            }
            first_ = std::max(first_, column_of_[known_[part].closed]);
            if (!rest_.empty()) {
                rest_ = difference(rest_, known_[part].node->first);
            }
        }
    }

    /// Whether the class of a key is the only one around it that has no larger support.
    bool is_first_around(const Itemset& key, Column column) {
        numbering_.translate(key, numbers_);
        return first_ <= column && index_.first_superset(numbers_, first_, column + 1) == column &&
               index_.first_superset(numbers_, column + 1, ends_[column]) == ends_[column];
    }

    /// Whether a class around the key, of which that of `column` is the first, lacks one of the items in
    /// `rest_`.
    bool lacks_items(const Itemset& key, Column column) {
        if (rest_.empty()) {
            return false;
        }
        index_.find_supersets(numbers_, column, around_key_);
        const std::size_t around = count(around_key_);
        rest_.insert(rest_.end(), key.begin(), key.end());
        std::ranges::sort(rest_);
        numbering_.translate(rest_, numbers_);
        index_.find_supersets(numbers_, column, around_key_);
        return count(around_key_) != around;
    }

    /// Looks at the classes around a closed itemset, once.
    void check_around_class(Column column) {
        if (looked_around_ == column) {
            return;
        }
        looked_around_ = column;
        index_.find_supersets(closed_itemsets_[column], 0, around_class_);
        around_count_ = count(around_class_);
        const ColumnClass& of_class = classes_[column];
        for_each_column(around_class_, [&](Column around) {
            if (around != column && classes_[around].support() <= of_class.support()) {
                contradict(around, {column, key_within(of_class.node, classes_[around].closed_itemset())});
            }
            return classes_[around].support() <= of_class.support();
        });
    }

    /// Looks at the classes around an essential itemset of a class whose surroundings are `around_class_`.
    void check_around(const Itemset& essential, Column column) {
        numbering_.translate(essential, numbers_);
        index_.find_supersets(numbers_, 0, around_key_);
        if (count(around_key_) == around_count_) {
            return;
        }
        const std::optional<Column> stranger = first_stranger(essential, column);
        if (stranger) {
            const ColumnClass& around = classes_[*stranger];
            const EssentialDisagreement told =
                essential_disagreement(essential, classes_[column].node, around.node, around.line);
            add(told.kind, classes_[column].line, told.words.found, told.words.expected, around.line);
        }
    }

    /// The class around an essential itemset that is told of it, as one that does not contain its class: one
    /// of no larger support before others, and then the first one in the file. Nothing where only others are
    /// told of, whose essential itemset it is, too.
    std::optional<Column> first_stranger(const Itemset& essential, Column column) {
        const ColumnClass& of_class = classes_[column];
        std::optional<Column> first;
        const auto key = [&](Column each) {
            return std::pair(classes_[each].support() > of_class.support(), classes_[each].line);
        };
        for_each_column(around_key_, [&](Column around) {
            const bool is_told = is_stranger(essential, of_class.node, of_class.line, classes_[around].node,
                                             classes_[around].line);
            if (is_told && (!first || key(around) < key(*first))) {
                first = around;
            }
            return true;
        });
        return first;
    }

    /// Notes that the support of a class is too small. Of several reasons the one that stands first counts.
    void contradict(Column column, const Contradiction& contradiction) {
        const auto [known, is_new] = contradictions_.try_emplace(column, contradiction);
        if (!is_new && classes_[contradiction.other].line < classes_[known->second.other].line) {
            known->second = contradiction;
        }
    }

    void add_contradiction(const ColumnClass& of_class, const Contradiction& contradiction) {
        const ColumnClass& other = classes_[contradiction.other];
        const Disagreement words =
            support_not_larger(of_class.support(), other.support(), other.line, *contradiction.key);
        add(FindingKind::support_not_larger, of_class.line, words.found, words.expected, other.line);
    }

    void check_nesting(const ColumnClass& of_class) {
        const std::vector<Itemset>& essentials = of_class.essentials();
        for (const Itemset& larger : essentials) {
            const auto within = std::ranges::find_if(essentials, [&larger](const Itemset& smaller) {
                return smaller.size() < larger.size() && is_contained(smaller, larger);
            });
            if (within != essentials.end()) {
                add(FindingKind::nested_essential, of_class.line,
                    "the essential itemset " + shown_items(larger) + " around " + shown_items(*within),
                    "essential itemsets of which none contains another", 0);
            }
        }
    }

    void add(FindingKind kind, std::uint32_t line, std::string found, std::string expected,
             std::size_t other_line) {
        findings_.add({.kind = kind,
                       .severity = Severity::warning,
                       .place = {line, 1},
                       .found = std::move(found),
                       .expected = std::move(expected),
                       .other_line = other_line});
    }

    Findings& findings_;
    const KnownSupports& known_;
    const std::vector<ColumnClass> classes_;  ///< by column
    const ItemNumbering numbering_;
    const ItemsetTable closed_itemsets_;  ///< in numbers, by column
    const ItemIndex index_;
    std::unordered_map<Column, Contradiction> contradictions_;
    std::vector<Column> column_of_;  ///< by position of the closed itemset in `known_`
    std::vector<Column> ends_;       ///< by column: behind the last one of the same support
    std::vector<bool> is_suspect_;   ///< by position in `known_`
    std::optional<Column> looked_around_;
    // Working space.
    Itemset numbers_;
    Itemset rest_;
    Column first_ = 0;
    ColumnSet around_class_;
    std::size_t around_count_ = 0;
    ColumnSet around_key_;
};

}  // namespace

void check_order_of_classes(const CheckedClasses& checked, const KnownSupports& known,
                            std::optional<Count> transactions, Findings& findings) {
    if (checked.classes.empty()) {
        return;
    }
    OrderCheck check(checked, known, findings);
    if (transactions) {
        check.check_up_to(*transactions);
    }
    check.check();
}

}  // namespace korv::tools
