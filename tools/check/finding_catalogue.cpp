#include "check/finding_catalogue.h"

#include <array>
#include <cstddef>

namespace korv::tools {

namespace {

using enum FindingKind;
using enum Severity;

constexpr bool mended = true;
constexpr bool left = false;

constexpr std::array catalogue = std::to_array<FindingDescription>({
    // A file that is not one of classes, or that is not written as one.
    {other_file, "other-file", error, left, "The file is one of another kind."},
    {compressed, "compressed", error, mended, "The file is compressed."},
    {byte_order_mark, "byte-order-mark", warning, mended, "The file begins with a byte-order mark."},
    // A line that is not as the grammar of class files says.
    {carriage_return, "carriage-return", error, mended, "A line ends with CR LF, or holds CR elsewhere."},
    {stray_byte, "stray-byte", error, left, "A byte stands where only others may."},
    {extra_blank, "extra-blank", warning, left, "There is a blank too many."},
    {extra_tab, "extra-tab", error, left, "There is a tab too many behind the support."},
    {empty_line, "empty-line", warning, mended, "A line is empty."},
    {comment, "comment", warning, mended, "A line has neither digits nor tabs."},
    {no_items, "no-items", error, left, "There is no item before the first tab."},
    {no_tab, "no-tab", error, left, "There is no tab behind the items."},
    {no_support, "no-support", error, left, "There is no digit behind the first tab."},
    {no_second_tab, "no-second-tab", error, left, "There is no tab behind the support."},
    {digit_lost, "digit-lost", error, left, "A digit stands where a blank must, and is lost."},
    {no_essentials, "no-essentials", error, left, "A line ends before its essential itemsets."},
    {empty_essential, "empty-essential", error, left, "An essential itemset has no items."},
    {doubled_comma, "doubled-comma", error, left, "Two commas stand in a row."},
    {blank_at_end, "blank-at-end", error, left, "A blank stands between the last comma and the line end."},
    {no_comma, "no-comma", error, left, "The last comma is missing."},
    {no_final_line_end, "no-final-line-end", warning, mended, "The last line has no line end."},
    {cut_off, "cut-off", error, left, "The file ends within a record."},
    {number_too_large, "number-too-large", error, left, "A number is 4294967296 or more."},
    {leading_zeros, "leading-zeros", warning, mended, "A number has zeros before it."},
    {unordered_items, "unordered-items", warning, mended, "The items of an itemset do not ascend."},
    // Itemsets that are none, or not those of a class.
    {repeated_item, "repeated-item", error, left, "An item is in an itemset twice."},
    {foreign_item, "foreign-item", error, left, "An essential itemset has an item that its class lacks."},
    {dropped_essential, "dropped-essential", error, left,
     "An essential itemset is as large as the closed itemset, but another one."},
    {repeated_essential, "repeated-essential", error, mended, "A class has an essential itemset twice."},
    {needless_essential, "needless-essential", warning, mended,
     "A closed itemset stands among smaller essential itemsets."},
    {class_again, "class-again", warning, mended, "A class is there twice, and alike."},
    {class_differs, "class-differs", error, left, "A class is there twice, with different contents."},
    {no_classes, "no-classes", error, left, "There is no class."},
    // What no database has.
    {zero_support, "zero-support", warning, left, "A support is 0."},
    {support_above_size, "support-above-size", warning, left,
     "A support is larger than the number of transactions."},
    {support_not_larger, "support-not-larger", warning, left,
     "A support is not larger than that of a class with an essential itemset within this one."},
    {shared_essential, "shared-essential", warning, left, "Two classes have the same essential itemset."},
    {essential_in_smaller_class, "essential-in-smaller-class", warning, left,
     "An essential itemset lies within a smaller class, which lies within its own."},
    {essential_elsewhere, "essential-elsewhere", warning, left,
     "An essential itemset lies within a class that does not contain its own."},
    {nested_essential, "nested-essential", warning, left,
     "An essential itemset contains another one of the same class."},
    {union_above_sum, "union-above-sum", warning, left,
     "The support of a union is larger than the sum of those of its parts."},
    {outside_pair_bounds, "outside-pair-bounds", warning, left,
     "A support is not within the bounds that the supports of parts leave to it."},
    // What the database, or a rule, has otherwise.
    {wrong_support, "wrong-support", error, left, "A support is not the one in the database."},
    {wrong_closure, "wrong-closure", error, left, "A closed itemset is not closed in the database."},
    {wrong_essential, "wrong-essential", error, left,
     "An essential itemset is not essential in the database, or belongs to another class."},
    {wrong_rule_support, "wrong-rule-support", error, left, "The support of a rule is not the counted one."},
    {wrong_rule_confidence, "wrong-rule-confidence", error, left,
     "The confidence of a rule is not the counted one."},
    {rule_file_fault, "rule-file-fault", error, left, "A rule file is not written as korv does it."},
    {unknown_item, "unknown-item", error, left, "An item is in no transaction of the database."},
    // What is missing.
    {missing_intersection, "missing-intersection", note, left,
     "The items that two classes have in common are no class."},
    {own_essential, "own-essential", note, left, "A class has no essential itemset but its closed itemset."},
    {large_class, "large-class", note, left, "A class has many items."},
    {open_supports, "open-supports", note, left,
     "The file leaves supports of differences open, so that rules are bounded."},
    {partial_closures, "partial-closures", note, left,
     "The closures are those over the items of the file, of which the database has more."},
    {no_upper_bound, "no-upper-bound", note, left,
     "The upper bound that korv prints for a form of rules is none."},
});

constexpr bool is_in_order() {
    for (std::size_t i = 0; i < catalogue.size(); ++i) {
        if (static_cast<std::size_t>(catalogue.at(i).kind) != i) {
            return false;
        }
    }
    return true;
}
static_assert(is_in_order());

}  // namespace

std::string_view word_for(Severity severity) {
    constexpr std::array<std::string_view, 3> words = {"note", "warning", "error"};
    return words.at(static_cast<std::size_t>(severity));
}

std::span<const FindingDescription> finding_catalogue() {
    return catalogue;
}

const FindingDescription& description(FindingKind kind) {
    return catalogue.at(static_cast<std::size_t>(kind));
}

std::string catalogue_text() {
    std::string text;
    for (const FindingDescription& each : catalogue) {
        text.append(each.code).append("\t").append(word_for(each.severity)).append("\t");
        text.append(each.is_mended ? "mended" : "-").append("\t").append(each.meaning).append("\n");
    }
    return text;
}

}  // namespace korv::tools
