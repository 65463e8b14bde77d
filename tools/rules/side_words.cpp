#include "rules/side_words.h"

#include <algorithm>
#include <utility>

#include "common/printable.h"
#include "common/quantity.h"
#include "common/utf8.h"
#include "rules/display_text.h"

namespace korv::tools {

namespace {

/// Items of a side that are said together.
struct Group {
    const ItemNames::Column* column;  ///< nullptr: they are in none
    Itemset items;
    bool is_negated;  ///< whether they are denied
};

class SideSpeaker {
public:
    SideSpeaker(const RuleBook& book, const SideStyle& style)
        : names_(book.names), columns_(book.columns), style_(style) {}

    std::string said(Side side, ItemSpan items) const {
        if (items.empty()) {
            return side.is_negated() ? "anything" : "nothing";
        }
        const std::size_t named =
            style_.most_items == 0 ? items.size() : std::min(items.size(), style_.most_items);
        std::vector<Group> groups = groups_of(items.first(named), side.is_negated());
        const std::size_t others = items.size() - named;
        if (columns_ != nullptr && others == 0) {
            std::ranges::for_each(groups, [this](Group& group) { say_by_rest(group); });
        }
        std::string text;
        std::string_view between;
        for (const Group& group : groups) {
            text += std::exchange(between, side.is_negated() ? " and " : " or ");
            text += said(group);
        }
        if (others == 0) {
            return text;
        }
        return text + (side.is_negated() ? " and not " : " or ") + with_commas(others) + " more";
    }

private:
    /// Turns a group of an exhaustive column into the rest of the column where that says the same in fewer
    /// items, or else plain.
    void say_by_rest(Group& group) const {
        const WordedItemset worded = columns_->worded(group.items);
        const WordedSide side = worded.side(group.is_negated);
        group = {group.column, Itemset(side.items.begin(), side.items.end()), side.is_negated};
    }

    /// The items by column, in the order of the first of each. Those of no column are parts of their own in a
    /// plain side, and the last part of a negated one.
    std::vector<Group> groups_of(ItemSpan items, bool is_negated) const {
        std::vector<Group> groups;
        Group rest = {nullptr, {}, is_negated};
        for (const Item item : items) {
            const ItemNames::Column* column = names_.column_of(item);
            if (column == nullptr) {
                if (is_negated) {
                    rest.items.push_back(item);
                } else {
                    groups.push_back({nullptr, {item}, is_negated});
                }
                continue;
            }
            const auto same = std::ranges::find(groups, column, &Group::column);
            if (same == groups.end()) {
                groups.push_back({column, {item}, is_negated});
            } else {
                same->items.push_back(item);
            }
        }
        if (!rest.items.empty()) {
            groups.push_back(std::move(rest));
        }
        return groups;
    }

    std::string said(const Group& group) const {
        if (group.column == nullptr || (group.items.size() == 1 && !group.is_negated)) {
            return group.is_negated ? none_of(group.items) : shown(names_.name(group.items.front()));
        }
        const std::string column = shown(group.column->name) + (group.is_negated ? " not " : " ");
        return group.items.size() == 1 ? column + shown(names_.value(group.items.front()))
                                       : column + "in " + values(group.items);
    }

    std::string none_of(const Itemset& items) const {
        if (items.size() == 1) {
            return "not " + shown(names_.name(items.front()));
        }
        std::string text = "none of ";
        std::string_view between;
        for (const Item item : items) {
            text.append(std::exchange(between, ", ")).append(shown(names_.name(item)));
        }
        return text;
    }

    /// Values of one column: "{1st, 2nd}".
    std::string values(const Itemset& items) const {
        std::string text;
        for (const Item item : items) {
            text += (text.empty() ? "{" : ", ") + shown(names_.value(item));
        }
        return text + "}";
    }

    std::string shown(std::string_view name) const {
        const std::string text = style_.is_printable ? printable(name) : valid_utf8(name);
        return style_.most_columns == 0 ? text : shortened(text, style_.most_columns);
    }

    const ItemNames& names_;
    const ColumnFacts* columns_;
    const SideStyle& style_;
};

}  // namespace

std::string side_text(Side side, const RuleBook& book, const SideStyle& style) {
    return SideSpeaker(book, style).said(side, book.itemsets[side.itemset()]);
}

const std::string& SideTexts::of(Side side) {
    const Slot& slot = slot_of(side);
    if (slot.side == side) {
        return slot.text;
    }
    long_text_.clear();
    make_(side, long_text_);
    keep(side, long_text_);
    return long_text_;
}

SideTexts::Slot& SideTexts::slot_of(Side side) {
    // Sides are numbered in the order in which they come, so neighbours in time have different slots.
    return slots_[(std::size_t{side.itemset()} * 2 + (side.is_negated() ? 1 : 0)) % slots_.size()];
}

void SideTexts::keep(Side side, const std::string& text) {
    if (taken_ * 2 >= slots_.size() && slots_.size() < most_slots) {
        std::vector<Slot> few(slots_.size() * 2);
        few.swap(slots_);
        for (Slot& each : few) {
            if (each.side) {
                slot_of(*each.side) = std::move(each);
            }
        }
    }
    Slot& slot = slot_of(side);
    const std::size_t bytes = bytes_ - slot.text.size() + text.size();
    if (text.size() > longest_kept || bytes > most_bytes) {
        return;
    }
    bytes_ = bytes;
    taken_ += slot.side ? 0 : 1;
    slot = {side, text};
}

}  // namespace korv::tools
