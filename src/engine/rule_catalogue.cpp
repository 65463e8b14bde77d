#include "engine/rule_catalogue.h"

namespace korv {

namespace {

/// Whether `text`, one side of the text of a form, reads as `side` says: "not(f1-e1)" is a negated
/// difference.
consteval bool reads_as(std::string_view text, const FormSide& side) {
    const Part part = text.find('-') != std::string_view::npos ? Part::difference : Part::base;
    const Mode mode = text.starts_with("not") ? Mode::negation : Mode::disjunction;
    return side == FormSide{part, mode};
}

/// Whether a label says the group, the pair and the direction of a form at this position of the table.
consteval bool is_label(std::string_view label, std::size_t position) {
    const auto digit = [](std::size_t number) { return static_cast<char>('1' + number); };
    const std::size_t in_group = position % forms_in_a_group;
    return label.size() == 4 && label[0] == 'R' && label[1] == digit(position / forms_in_a_group) &&
           label[2] == digit(in_group / 2) && label[3] == digit(in_group % 2);
}

/// The table is read by position, labels and texts say what they stand for, and every counter row belongs to
/// one form.
consteval bool catalogue_is_consistent() {
    constexpr std::string_view arrow = "-->";
    std::array<bool, rule_catalogue.size()> taken{};
    for (std::size_t i = 0; i < rule_catalogue.size(); ++i) {
        const FormDescription& each = rule_catalogue[i];
        const std::size_t at = each.text.find(arrow);
        if (each.form != Form{i} || !is_label(each.label, i) || taken[each.counter_row] ||
            !reads_as(each.text.substr(0, at), premise(each.form)) ||
            !reads_as(each.text.substr(at + arrow.size()), conclusion(each.form))) {
            return false;
        }
        taken[each.counter_row] = true;
    }
    return true;
}
static_assert(catalogue_is_consistent());

}  // namespace

}  // namespace korv
