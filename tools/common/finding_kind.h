#pragma once

#include <cstdint>

namespace korv::tools {

/// What can be wrong with a class file, or be worth knowing of it. The catalogue of korv-check has the words.
enum class FindingKind : std::uint8_t {
    // A file that is not one of classes, or that is not written as one.
    other_file,
    compressed,
    byte_order_mark,
    // A line that is not as the grammar of class files says.
    carriage_return,
    stray_byte,
    extra_blank,
    extra_tab,
    empty_line,
    comment,
    no_items,
    no_tab,
    no_support,
    no_second_tab,
    digit_lost,
    no_essentials,
    empty_essential,
    doubled_comma,
    blank_at_end,
    no_comma,
    no_final_line_end,
    cut_off,
    number_too_large,
    leading_zeros,
    unordered_items,
    // Itemsets that are none, or not those of a class.
    repeated_item,
    foreign_item,
    dropped_essential,
    repeated_essential,
    needless_essential,
    class_again,
    class_differs,
    no_classes,
    // What no database has.
    zero_support,
    support_above_size,
    support_not_larger,
    shared_essential,
    essential_in_smaller_class,
    essential_elsewhere,
    nested_essential,
    union_above_sum,
    outside_pair_bounds,
    // What the database, or a rule, has otherwise.
    wrong_support,
    wrong_closure,
    wrong_essential,
    wrong_rule_support,
    wrong_rule_confidence,
    rule_file_fault,
    unknown_item,
    // What is missing.
    missing_intersection,
    own_essential,
    large_class,
    open_supports,
    partial_closures,
    no_upper_bound,
};

}  // namespace korv::tools
