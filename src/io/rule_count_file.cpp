#include "io/rule_count_file.h"

#include <span>
#include <string>
#include <string_view>

namespace korv {

namespace {

/// `part` as a percentage of `total`. The product wraps at 32 bits, the total is rounded to single precision
/// and the quotient taken in extended precision. Reports are compared: it stays so.
double percentage(Count part, Count total) {
    const Count product = 100 * part;
    return static_cast<double>(static_cast<long double>(product) / static_cast<float>(total));
}

}  // namespace

void write_rule_counts(const RuleCounts& counts, std::ostream& out) {
    constexpr std::string_view stars =
        "**********************************************************************\n\n";

    Count total = 0;
    for (const Kind kind : all_kinds) {
        out << "Number of " << kind_name(kind) << " rules: " << counts.column_sum(kind) << '\n';
        total += counts.column_sum(kind);
    }
    out << "\nTotal number of rules: " << total << "\n\n\n";
    if (total != 0) {
        for (const Kind kind : all_kinds) {
            out << "Percentage of " << kind_name(kind)
                << " rules: " << percentage(counts.column_sum(kind), total) << " %\n";
        }
        out << "\n\n";
    }
    out << "---------------------------------------------------------------\n\n";

    for (const Kind kind : all_kinds) {
        number_of_rules(kind, counts, out);
        // The run total, then the sum of the counters: counted separately, shown side by side.
        for (const Count number : {counts.total(kind), counts.column_sum(kind)}) {
            out << "Number of " << kind_name(kind) << " rules: " << number << '\n';
        }
        out << (kind == Kind::apped ? "\n" : "\n\n\n\n") << stars;
    }
}

void number_of_rules(Kind kind, const RuleCounts& counts, std::ostream& out) {
    constexpr std::size_t groups = rule_catalogue.size() / forms_in_a_group;
    for (std::size_t group = 1; group <= groups; ++group) {
        const std::string heading = "Form " + std::to_string(group) + ": ";
        const std::string_view tabs = group == 1 ? "\t\t\t\t" : "\t\t\t";
        out << heading << "\n\n";

        Count sum = 0;
        for (const FormDescription& description :
             std::span(rule_catalogue).subspan((group - 1) * forms_in_a_group, forms_in_a_group)) {
            const Count count = counts.count(description.form, kind);
            // Two blanks around "of", and two before "of the form".
            out << "Number  of  rules of " << heading << kind_name(kind) << "  of the form  "
                << description.label << " = " << description.text << ": " << tabs << count << '\n';
            sum += count;
        }
        out << "\nTotal number  of  rules of " << heading << sum
            << (group == groups ? "\n\n\n\n\n" : "\n\n\n");
    }
}

}  // namespace korv
