#include <span>
#include <string>
#include <string_view>

#include "app/lattice.h"

namespace korv {

namespace {

/// `part` as a percentage of `total`. The product wraps at 32 bits, the total is rounded to single precision
/// and the quotient taken in extended precision. Reports are compared: it stays so.
double percentage(Count part, Count total) {
    const Count product = 100 * part;
    return static_cast<double>(static_cast<long double>(product) / static_cast<float>(total));
}

}  // namespace

void Lattice::write_rule_counts() {
    constexpr std::string_view stars =
        "**********************************************************************\n\n";

    Count total = 0;
    for (const Kind kind : all_kinds) {
        number_rules_out << "Number of " << kind_name(kind) << " rules: " << rule_counts.column_sum(kind)
                         << '\n';
        total += rule_counts.column_sum(kind);
    }
    number_rules_out << "\nTotal number of rules: " << total << "\n\n\n";
    if (total != 0) {
        for (const Kind kind : all_kinds) {
            number_rules_out << "Percentage of " << kind_name(kind)
                             << " rules: " << percentage(rule_counts.column_sum(kind), total) << " %\n";
        }
        number_rules_out << "\n\n";
    }
    number_rules_out << "---------------------------------------------------------------\n\n";

    for (const Kind kind : all_kinds) {
        number_of_rules(kind);
        // The run total, then the sum of the counters: counted separately, shown side by side.
        for (const Count number : {rule_counts.total(kind), rule_counts.column_sum(kind)}) {
            number_rules_out << "Number of " << kind_name(kind) << " rules: " << number << '\n';
        }
        number_rules_out << (kind == Kind::apped ? "\n" : "\n\n\n\n") << stars;
    }
    number_rules_out.flush();
}

void Lattice::number_of_rules(Kind kind) {
    constexpr std::size_t groups = rule_catalogue.size() / forms_in_a_group;
    for (std::size_t group = 1; group <= groups; ++group) {
        const std::string heading = "Form " + std::to_string(group) + ": ";
        const std::string_view tabs = group == 1 ? "\t\t\t\t" : "\t\t\t";
        number_rules_out << heading << "\n\n";

        Count sum = 0;
        for (const FormDescription& description :
             std::span(rule_catalogue).subspan((group - 1) * forms_in_a_group, forms_in_a_group)) {
            const Count count = rule_counts.count(description.form, kind);
            // Two blanks around "of", and two before "of the form".
            number_rules_out << "Number  of  rules of " << heading << kind_name(kind) << "  of the form  "
                             << description.label << " = " << description.text << ": " << tabs << count
                             << '\n';
            sum += count;
        }
        number_rules_out << "\nTotal number  of  rules of " << heading << sum
                         << (group == groups ? "\n\n\n\n\n" : "\n\n\n");
    }
}

}  // namespace korv
