#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "rules/found_rule.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// How a side is said.
struct SideStyle {
    /// Names are said as a terminal can show them (see printable.h).
    bool is_printable = false;
    /// How many items are named; the others are counted: "bread or butter or 63 more". 0 for all.
    std::size_t most_items = 0;
    /// How many columns of a terminal the name of an item or a column takes; what is longer ends with an
    /// ellipsis. 0 for any.
    std::size_t most_columns = 0;
};

/// A side of a rule in words.
///
/// A plain side joins its items by "or", a negated one denies them: "bread or butter", "none of bread,
/// butter", "not bread". Items of one column are said together: "class in {1st, 2nd} or sex=female", "class
/// not in {crew, 3rd}", "class not crew". Negated items of several columns are joined by "and", those of no
/// column last: "class not crew and none of bread, butter". A side without items, which is met by no
/// transaction, is "nothing", or "anything" when it is negated.
///
/// Items of an exhaustive column (see ColumnFacts) are said by its other values where these are fewer, or in
/// a negated side no more: "sex=male and age=adult" for neither a woman nor a child.
///
/// Names are not quoted: "bread or butter" may be one item. The numbers of the items say which.
///
/// Bytes that are not UTF-8 become U+FFFD, and \xHH in a printable text.
std::string side_text(Side side, const RuleBook& book, const SideStyle& style);

/// The texts of sides, in any form. The same sides are in many rules, so their texts are kept: at most
/// 262,144 of them, of 64 MiB together and 4 KiB each.
class SideTexts {
public:
    /// Appends the text of a side.
    using Maker = std::function<void(Side side, std::string& text)>;

    explicit SideTexts(Maker make) : make_(std::move(make)), slots_(first_slots) {}

    /// The text of a side. Valid until the next call.
    const std::string& of(Side side);

private:
    static constexpr std::size_t first_slots = 16384;
    static constexpr std::size_t most_slots = 262144;
    static constexpr std::size_t longest_kept = 4096;
    static constexpr std::size_t most_bytes = std::size_t{64} << 20;

    /// The place of all sides whose hash has the same end; the last one of them is kept.
    struct Slot {
        std::optional<Side> side;
        std::string text;
    };

    Slot& slot_of(Side side);
    void keep(Side side, const std::string& text);

    Maker make_;
    std::vector<Slot> slots_;  ///< a power of 2; twice as many once half of them are taken
    std::size_t taken_ = 0;
    std::size_t bytes_ = 0;  ///< of all texts that are kept
    std::string long_text_;
};

}  // namespace korv::tools
