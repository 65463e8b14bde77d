#include "io/rule_count_file.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace korv {
namespace {

using enum Kind;

/// The whole file of these counts.
std::string report_of(const RuleCounts& counts) {
    std::ostringstream out;
    write_rule_counts(counts, out);
    return out.str();
}

/// The breakdown of one kind.
std::string breakdown_of(Kind kind, const RuleCounts& counts) {
    std::ostringstream out;
    number_of_rules(kind, counts, out);
    return out.str();
}

/// Counts with these column sums.
RuleCounts counts_with_sums(Count exact_sum, Count appro_sum, Count apped_sum) {
    RuleCounts counts;
    counts.counters[4] = {exact_sum, appro_sum, apped_sum};
    return counts;
}

/// The lines of a text that begin with `start`.
std::string lines_from(const std::string& text, const std::string& start) {
    std::string lines;
    std::istringstream report(text);
    for (std::string line; std::getline(report, line);) {
        if (line.starts_with(start)) {
            lines += line + '\n';
        }
    }
    return lines;
}

// clang-format off

const std::string report_of_no_rules =
    "Number of exact rules: 0\n"
    "Number of appro rules: 0\n"
    "Number of apped rules: 0\n\n"
    "Total number of rules: 0\n\n\n"
    "---------------------------------------------------------------\n\n"
    "Form 1: \n\n"
    "Number  of  rules of Form 1: exact  of the form  R111 = e1-->(f1-e1): \t\t\t\t0\n"
    "Number  of  rules of Form 1: exact  of the form  R112 = (f1-e1)-->e1: \t\t\t\t0\n"
    "Number  of  rules of Form 1: exact  of the form  R121 = e1-->(f2-e1): \t\t\t\t0\n"
    "Number  of  rules of Form 1: exact  of the form  R122 = (f2-e1)-->e1: \t\t\t\t0\n"
    "Number  of  rules of Form 1: exact  of the form  R131 = f1-->(f2-f1): \t\t\t\t0\n"
    "Number  of  rules of Form 1: exact  of the form  R132 = (f2-f1)-->f1: \t\t\t\t0\n\n"
    "Total number  of  rules of Form 1: 0\n\n\n"
    "Form 2: \n\n"
    "Number  of  rules of Form 2: exact  of the form  R211 = not(e1)-->not(f1-e1): \t\t\t0\n"
    "Number  of  rules of Form 2: exact  of the form  R212 = not(f1-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 2: exact  of the form  R221 = not(e1)-->not(f2-e1): \t\t\t0\n"
    "Number  of  rules of Form 2: exact  of the form  R222 = not(f2-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 2: exact  of the form  R231 = not(f1)-->not(f2-f1): \t\t\t0\n"
    "Number  of  rules of Form 2: exact  of the form  R232 = not(f2-f1)-->not(f1): \t\t\t0\n\n"
    "Total number  of  rules of Form 2: 0\n\n\n"
    "Form 3: \n\n"
    "Number  of  rules of Form 3: exact  of the form  R311 = e1-->not(f1-e1): \t\t\t0\n"
    "Number  of  rules of Form 3: exact  of the form  R312 = (f1-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 3: exact  of the form  R321 = e1-->not(f2-e1): \t\t\t0\n"
    "Number  of  rules of Form 3: exact  of the form  R322 = (f2-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 3: exact  of the form  R331 = f1-->not(f2-f1): \t\t\t0\n"
    "Number  of  rules of Form 3: exact  of the form  R332 = (f2-f1)-->not(f1): \t\t\t0\n\n"
    "Total number  of  rules of Form 3: 0\n\n\n"
    "Form 4: \n\n"
    "Number  of  rules of Form 4: exact  of the form  R411 = not(e1)-->(f1-e1): \t\t\t0\n"
    "Number  of  rules of Form 4: exact  of the form  R412 = not(f1-e1)-->e1: \t\t\t0\n"
    "Number  of  rules of Form 4: exact  of the form  R421 = not(f2-e1)-->e1: \t\t\t0\n"
    "Number  of  rules of Form 4: exact  of the form  R422 = not(e1)-->(f2-e1): \t\t\t0\n"
    "Number  of  rules of Form 4: exact  of the form  R431 = not(f1)-->(f2-f1): \t\t\t0\n"
    "Number  of  rules of Form 4: exact  of the form  R432 = not(f2-f1)-->f1: \t\t\t0\n\n"
    "Total number  of  rules of Form 4: 0\n\n\n\n\n"
    "Number of exact rules: 0\n"
    "Number of exact rules: 0\n\n\n\n\n"
    "**********************************************************************\n\n"
    "Form 1: \n\n"
    "Number  of  rules of Form 1: appro  of the form  R111 = e1-->(f1-e1): \t\t\t\t0\n"
    "Number  of  rules of Form 1: appro  of the form  R112 = (f1-e1)-->e1: \t\t\t\t0\n"
    "Number  of  rules of Form 1: appro  of the form  R121 = e1-->(f2-e1): \t\t\t\t0\n"
    "Number  of  rules of Form 1: appro  of the form  R122 = (f2-e1)-->e1: \t\t\t\t0\n"
    "Number  of  rules of Form 1: appro  of the form  R131 = f1-->(f2-f1): \t\t\t\t0\n"
    "Number  of  rules of Form 1: appro  of the form  R132 = (f2-f1)-->f1: \t\t\t\t0\n\n"
    "Total number  of  rules of Form 1: 0\n\n\n"
    "Form 2: \n\n"
    "Number  of  rules of Form 2: appro  of the form  R211 = not(e1)-->not(f1-e1): \t\t\t0\n"
    "Number  of  rules of Form 2: appro  of the form  R212 = not(f1-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 2: appro  of the form  R221 = not(e1)-->not(f2-e1): \t\t\t0\n"
    "Number  of  rules of Form 2: appro  of the form  R222 = not(f2-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 2: appro  of the form  R231 = not(f1)-->not(f2-f1): \t\t\t0\n"
    "Number  of  rules of Form 2: appro  of the form  R232 = not(f2-f1)-->not(f1): \t\t\t0\n\n"
    "Total number  of  rules of Form 2: 0\n\n\n"
    "Form 3: \n\n"
    "Number  of  rules of Form 3: appro  of the form  R311 = e1-->not(f1-e1): \t\t\t0\n"
    "Number  of  rules of Form 3: appro  of the form  R312 = (f1-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 3: appro  of the form  R321 = e1-->not(f2-e1): \t\t\t0\n"
    "Number  of  rules of Form 3: appro  of the form  R322 = (f2-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 3: appro  of the form  R331 = f1-->not(f2-f1): \t\t\t0\n"
    "Number  of  rules of Form 3: appro  of the form  R332 = (f2-f1)-->not(f1): \t\t\t0\n\n"
    "Total number  of  rules of Form 3: 0\n\n\n"
    "Form 4: \n\n"
    "Number  of  rules of Form 4: appro  of the form  R411 = not(e1)-->(f1-e1): \t\t\t0\n"
    "Number  of  rules of Form 4: appro  of the form  R412 = not(f1-e1)-->e1: \t\t\t0\n"
    "Number  of  rules of Form 4: appro  of the form  R421 = not(f2-e1)-->e1: \t\t\t0\n"
    "Number  of  rules of Form 4: appro  of the form  R422 = not(e1)-->(f2-e1): \t\t\t0\n"
    "Number  of  rules of Form 4: appro  of the form  R431 = not(f1)-->(f2-f1): \t\t\t0\n"
    "Number  of  rules of Form 4: appro  of the form  R432 = not(f2-f1)-->f1: \t\t\t0\n\n"
    "Total number  of  rules of Form 4: 0\n\n\n\n\n"
    "Number of appro rules: 0\n"
    "Number of appro rules: 0\n\n\n\n\n"
    "**********************************************************************\n\n"
    "Form 1: \n\n"
    "Number  of  rules of Form 1: apped  of the form  R111 = e1-->(f1-e1): \t\t\t\t0\n"
    "Number  of  rules of Form 1: apped  of the form  R112 = (f1-e1)-->e1: \t\t\t\t0\n"
    "Number  of  rules of Form 1: apped  of the form  R121 = e1-->(f2-e1): \t\t\t\t0\n"
    "Number  of  rules of Form 1: apped  of the form  R122 = (f2-e1)-->e1: \t\t\t\t0\n"
    "Number  of  rules of Form 1: apped  of the form  R131 = f1-->(f2-f1): \t\t\t\t0\n"
    "Number  of  rules of Form 1: apped  of the form  R132 = (f2-f1)-->f1: \t\t\t\t0\n\n"
    "Total number  of  rules of Form 1: 0\n\n\n"
    "Form 2: \n\n"
    "Number  of  rules of Form 2: apped  of the form  R211 = not(e1)-->not(f1-e1): \t\t\t0\n"
    "Number  of  rules of Form 2: apped  of the form  R212 = not(f1-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 2: apped  of the form  R221 = not(e1)-->not(f2-e1): \t\t\t0\n"
    "Number  of  rules of Form 2: apped  of the form  R222 = not(f2-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 2: apped  of the form  R231 = not(f1)-->not(f2-f1): \t\t\t0\n"
    "Number  of  rules of Form 2: apped  of the form  R232 = not(f2-f1)-->not(f1): \t\t\t0\n\n"
    "Total number  of  rules of Form 2: 0\n\n\n"
    "Form 3: \n\n"
    "Number  of  rules of Form 3: apped  of the form  R311 = e1-->not(f1-e1): \t\t\t0\n"
    "Number  of  rules of Form 3: apped  of the form  R312 = (f1-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 3: apped  of the form  R321 = e1-->not(f2-e1): \t\t\t0\n"
    "Number  of  rules of Form 3: apped  of the form  R322 = (f2-e1)-->not(e1): \t\t\t0\n"
    "Number  of  rules of Form 3: apped  of the form  R331 = f1-->not(f2-f1): \t\t\t0\n"
    "Number  of  rules of Form 3: apped  of the form  R332 = (f2-f1)-->not(f1): \t\t\t0\n\n"
    "Total number  of  rules of Form 3: 0\n\n\n"
    "Form 4: \n\n"
    "Number  of  rules of Form 4: apped  of the form  R411 = not(e1)-->(f1-e1): \t\t\t0\n"
    "Number  of  rules of Form 4: apped  of the form  R412 = not(f1-e1)-->e1: \t\t\t0\n"
    "Number  of  rules of Form 4: apped  of the form  R421 = not(f2-e1)-->e1: \t\t\t0\n"
    "Number  of  rules of Form 4: apped  of the form  R422 = not(e1)-->(f2-e1): \t\t\t0\n"
    "Number  of  rules of Form 4: apped  of the form  R431 = not(f1)-->(f2-f1): \t\t\t0\n"
    "Number  of  rules of Form 4: apped  of the form  R432 = not(f2-f1)-->f1: \t\t\t0\n\n"
    "Total number  of  rules of Form 4: 0\n\n\n\n\n"
    "Number of apped rules: 0\n"
    "Number of apped rules: 0\n\n"
    "**********************************************************************\n\n";

// Each counter is 100, 200 or 300, by its kind, and the number of its row; the run totals are 7, 8 and 9.
const std::string report_of_numbered_counters =
    "Number of exact rules: 2676\n"
    "Number of appro rules: 5076\n"
    "Number of apped rules: 7476\n\n"
    "Total number of rules: 15228\n\n\n"
    "Percentage of exact rules: 17.5729 %\n"
    "Percentage of appro rules: 33.3333 %\n"
    "Percentage of apped rules: 49.0938 %\n\n\n"
    "---------------------------------------------------------------\n\n"
    "Form 1: \n\n"
    "Number  of  rules of Form 1: exact  of the form  R111 = e1-->(f1-e1): \t\t\t\t101\n"
    "Number  of  rules of Form 1: exact  of the form  R112 = (f1-e1)-->e1: \t\t\t\t100\n"
    "Number  of  rules of Form 1: exact  of the form  R121 = e1-->(f2-e1): \t\t\t\t117\n"
    "Number  of  rules of Form 1: exact  of the form  R122 = (f2-e1)-->e1: \t\t\t\t116\n"
    "Number  of  rules of Form 1: exact  of the form  R131 = f1-->(f2-f1): \t\t\t\t109\n"
    "Number  of  rules of Form 1: exact  of the form  R132 = (f2-f1)-->f1: \t\t\t\t108\n\n"
    "Total number  of  rules of Form 1: 651\n\n\n"
    "Form 2: \n\n"
    "Number  of  rules of Form 2: exact  of the form  R211 = not(e1)-->not(f1-e1): \t\t\t102\n"
    "Number  of  rules of Form 2: exact  of the form  R212 = not(f1-e1)-->not(e1): \t\t\t103\n"
    "Number  of  rules of Form 2: exact  of the form  R221 = not(e1)-->not(f2-e1): \t\t\t118\n"
    "Number  of  rules of Form 2: exact  of the form  R222 = not(f2-e1)-->not(e1): \t\t\t119\n"
    "Number  of  rules of Form 2: exact  of the form  R231 = not(f1)-->not(f2-f1): \t\t\t110\n"
    "Number  of  rules of Form 2: exact  of the form  R232 = not(f2-f1)-->not(f1): \t\t\t111\n\n"
    "Total number  of  rules of Form 2: 663\n\n\n"
    "Form 3: \n\n"
    "Number  of  rules of Form 3: exact  of the form  R311 = e1-->not(f1-e1): \t\t\t104\n"
    "Number  of  rules of Form 3: exact  of the form  R312 = (f1-e1)-->not(e1): \t\t\t107\n"
    "Number  of  rules of Form 3: exact  of the form  R321 = e1-->not(f2-e1): \t\t\t120\n"
    "Number  of  rules of Form 3: exact  of the form  R322 = (f2-e1)-->not(e1): \t\t\t123\n"
    "Number  of  rules of Form 3: exact  of the form  R331 = f1-->not(f2-f1): \t\t\t112\n"
    "Number  of  rules of Form 3: exact  of the form  R332 = (f2-f1)-->not(f1): \t\t\t115\n\n"
    "Total number  of  rules of Form 3: 681\n\n\n"
    "Form 4: \n\n"
    "Number  of  rules of Form 4: exact  of the form  R411 = not(e1)-->(f1-e1): \t\t\t106\n"
    "Number  of  rules of Form 4: exact  of the form  R412 = not(f1-e1)-->e1: \t\t\t105\n"
    "Number  of  rules of Form 4: exact  of the form  R421 = not(f2-e1)-->e1: \t\t\t121\n"
    "Number  of  rules of Form 4: exact  of the form  R422 = not(e1)-->(f2-e1): \t\t\t122\n"
    "Number  of  rules of Form 4: exact  of the form  R431 = not(f1)-->(f2-f1): \t\t\t114\n"
    "Number  of  rules of Form 4: exact  of the form  R432 = not(f2-f1)-->f1: \t\t\t113\n\n"
    "Total number  of  rules of Form 4: 681\n\n\n\n\n"
    "Number of exact rules: 7\n"
    "Number of exact rules: 2676\n\n\n\n\n"
    "**********************************************************************\n\n"
    "Form 1: \n\n"
    "Number  of  rules of Form 1: appro  of the form  R111 = e1-->(f1-e1): \t\t\t\t201\n"
    "Number  of  rules of Form 1: appro  of the form  R112 = (f1-e1)-->e1: \t\t\t\t200\n"
    "Number  of  rules of Form 1: appro  of the form  R121 = e1-->(f2-e1): \t\t\t\t217\n"
    "Number  of  rules of Form 1: appro  of the form  R122 = (f2-e1)-->e1: \t\t\t\t216\n"
    "Number  of  rules of Form 1: appro  of the form  R131 = f1-->(f2-f1): \t\t\t\t209\n"
    "Number  of  rules of Form 1: appro  of the form  R132 = (f2-f1)-->f1: \t\t\t\t208\n\n"
    "Total number  of  rules of Form 1: 1251\n\n\n"
    "Form 2: \n\n"
    "Number  of  rules of Form 2: appro  of the form  R211 = not(e1)-->not(f1-e1): \t\t\t202\n"
    "Number  of  rules of Form 2: appro  of the form  R212 = not(f1-e1)-->not(e1): \t\t\t203\n"
    "Number  of  rules of Form 2: appro  of the form  R221 = not(e1)-->not(f2-e1): \t\t\t218\n"
    "Number  of  rules of Form 2: appro  of the form  R222 = not(f2-e1)-->not(e1): \t\t\t219\n"
    "Number  of  rules of Form 2: appro  of the form  R231 = not(f1)-->not(f2-f1): \t\t\t210\n"
    "Number  of  rules of Form 2: appro  of the form  R232 = not(f2-f1)-->not(f1): \t\t\t211\n\n"
    "Total number  of  rules of Form 2: 1263\n\n\n"
    "Form 3: \n\n"
    "Number  of  rules of Form 3: appro  of the form  R311 = e1-->not(f1-e1): \t\t\t204\n"
    "Number  of  rules of Form 3: appro  of the form  R312 = (f1-e1)-->not(e1): \t\t\t207\n"
    "Number  of  rules of Form 3: appro  of the form  R321 = e1-->not(f2-e1): \t\t\t220\n"
    "Number  of  rules of Form 3: appro  of the form  R322 = (f2-e1)-->not(e1): \t\t\t223\n"
    "Number  of  rules of Form 3: appro  of the form  R331 = f1-->not(f2-f1): \t\t\t212\n"
    "Number  of  rules of Form 3: appro  of the form  R332 = (f2-f1)-->not(f1): \t\t\t215\n\n"
    "Total number  of  rules of Form 3: 1281\n\n\n"
    "Form 4: \n\n"
    "Number  of  rules of Form 4: appro  of the form  R411 = not(e1)-->(f1-e1): \t\t\t206\n"
    "Number  of  rules of Form 4: appro  of the form  R412 = not(f1-e1)-->e1: \t\t\t205\n"
    "Number  of  rules of Form 4: appro  of the form  R421 = not(f2-e1)-->e1: \t\t\t221\n"
    "Number  of  rules of Form 4: appro  of the form  R422 = not(e1)-->(f2-e1): \t\t\t222\n"
    "Number  of  rules of Form 4: appro  of the form  R431 = not(f1)-->(f2-f1): \t\t\t214\n"
    "Number  of  rules of Form 4: appro  of the form  R432 = not(f2-f1)-->f1: \t\t\t213\n\n"
    "Total number  of  rules of Form 4: 1281\n\n\n\n\n"
    "Number of appro rules: 8\n"
    "Number of appro rules: 5076\n\n\n\n\n"
    "**********************************************************************\n\n"
    "Form 1: \n\n"
    "Number  of  rules of Form 1: apped  of the form  R111 = e1-->(f1-e1): \t\t\t\t301\n"
    "Number  of  rules of Form 1: apped  of the form  R112 = (f1-e1)-->e1: \t\t\t\t300\n"
    "Number  of  rules of Form 1: apped  of the form  R121 = e1-->(f2-e1): \t\t\t\t317\n"
    "Number  of  rules of Form 1: apped  of the form  R122 = (f2-e1)-->e1: \t\t\t\t316\n"
    "Number  of  rules of Form 1: apped  of the form  R131 = f1-->(f2-f1): \t\t\t\t309\n"
    "Number  of  rules of Form 1: apped  of the form  R132 = (f2-f1)-->f1: \t\t\t\t308\n\n"
    "Total number  of  rules of Form 1: 1851\n\n\n"
    "Form 2: \n\n"
    "Number  of  rules of Form 2: apped  of the form  R211 = not(e1)-->not(f1-e1): \t\t\t302\n"
    "Number  of  rules of Form 2: apped  of the form  R212 = not(f1-e1)-->not(e1): \t\t\t303\n"
    "Number  of  rules of Form 2: apped  of the form  R221 = not(e1)-->not(f2-e1): \t\t\t318\n"
    "Number  of  rules of Form 2: apped  of the form  R222 = not(f2-e1)-->not(e1): \t\t\t319\n"
    "Number  of  rules of Form 2: apped  of the form  R231 = not(f1)-->not(f2-f1): \t\t\t310\n"
    "Number  of  rules of Form 2: apped  of the form  R232 = not(f2-f1)-->not(f1): \t\t\t311\n\n"
    "Total number  of  rules of Form 2: 1863\n\n\n"
    "Form 3: \n\n"
    "Number  of  rules of Form 3: apped  of the form  R311 = e1-->not(f1-e1): \t\t\t304\n"
    "Number  of  rules of Form 3: apped  of the form  R312 = (f1-e1)-->not(e1): \t\t\t307\n"
    "Number  of  rules of Form 3: apped  of the form  R321 = e1-->not(f2-e1): \t\t\t320\n"
    "Number  of  rules of Form 3: apped  of the form  R322 = (f2-e1)-->not(e1): \t\t\t323\n"
    "Number  of  rules of Form 3: apped  of the form  R331 = f1-->not(f2-f1): \t\t\t312\n"
    "Number  of  rules of Form 3: apped  of the form  R332 = (f2-f1)-->not(f1): \t\t\t315\n\n"
    "Total number  of  rules of Form 3: 1881\n\n\n"
    "Form 4: \n\n"
    "Number  of  rules of Form 4: apped  of the form  R411 = not(e1)-->(f1-e1): \t\t\t306\n"
    "Number  of  rules of Form 4: apped  of the form  R412 = not(f1-e1)-->e1: \t\t\t305\n"
    "Number  of  rules of Form 4: apped  of the form  R421 = not(f2-e1)-->e1: \t\t\t321\n"
    "Number  of  rules of Form 4: apped  of the form  R422 = not(e1)-->(f2-e1): \t\t\t322\n"
    "Number  of  rules of Form 4: apped  of the form  R431 = not(f1)-->(f2-f1): \t\t\t314\n"
    "Number  of  rules of Form 4: apped  of the form  R432 = not(f2-f1)-->f1: \t\t\t313\n\n"
    "Total number  of  rules of Form 4: 1881\n\n\n\n\n"
    "Number of apped rules: 9\n"
    "Number of apped rules: 7476\n\n"
    "**********************************************************************\n\n";

// clang-format on

/// The counts of report_of_numbered_counters.
RuleCounts numbered_counters() {
    RuleCounts counts;
    for (Count row = 0; row < counts.counters.size(); ++row) {
        counts.counters[row] = {100 + row, 200 + row, 300 + row};
    }
    counts.exact_total = 7;
    counts.appro_total = 8;
    counts.apped_total = 9;
    return counts;
}

TEST(RuleCountFile, WithoutRulesAllCountsAre0AndThePercentagesAreLeftOut) {
    EXPECT_EQ(report_of({}), report_of_no_rules);
}

TEST(RuleCountFile, ShowsEachCounterAtItsFormAndBothTotalsOfEachKind) {
    EXPECT_EQ(report_of(numbered_counters()), report_of_numbered_counters);
}

TEST(RuleCountFile, BreakdownOfAKindIsWrittenByItself) {
    const std::size_t begin =
        report_of_numbered_counters.find("Form 1: ", report_of_numbered_counters.find("***"));
    const std::size_t end = report_of_numbered_counters.find("Number of appro rules: 8");
    EXPECT_EQ(breakdown_of(appro, numbered_counters()),
              report_of_numbered_counters.substr(begin, end - begin));
}

TEST(RuleCountFile, RunTotalsAloneMakeNoTotalNumberOfRules) {
    RuleCounts counts;
    counts.exact_total = 5;
    const std::string report = report_of(counts);
    EXPECT_EQ(lines_from(report, "Total number of rules: "), "Total number of rules: 0\n");
    EXPECT_EQ(lines_from(report, "Number of exact rules: "),
              "Number of exact rules: 0\n"
              "Number of exact rules: 5\n"
              "Number of exact rules: 0\n");
    EXPECT_EQ(lines_from(report, "Percentage"), "");
}

TEST(RuleCountFile, PercentagesOfThirds) {
    const std::string report = report_of(counts_with_sums(1, 1, 1));
    EXPECT_EQ(lines_from(report, "Percentage"),
              "Percentage of exact rules: 33.3333 %\n"
              "Percentage of appro rules: 33.3333 %\n"
              "Percentage of apped rules: 33.3333 %\n");
}

TEST(RuleCountFile, PercentagesOfOneKindOnly) {
    const std::string report = report_of(counts_with_sums(0, 3, 0));
    EXPECT_EQ(lines_from(report, "Percentage"),
              "Percentage of exact rules: 0 %\n"
              "Percentage of appro rules: 100 %\n"
              "Percentage of apped rules: 0 %\n");
}

TEST(RuleCountFile, HundredfoldOfACountWraps) {
    // 100 * 42949673 = 2^32 + 4; 100 * 42949672 = 2^32 - 96 does not wrap. Their sum is 85899345.
    const std::string report = report_of(counts_with_sums(42949673, 42949672, 0));
    EXPECT_EQ(lines_from(report, "Percentage"),
              "Percentage of exact rules: 4.65661e-08 %\n"
              "Percentage of appro rules: 50 %\n"
              "Percentage of apped rules: 0 %\n");
}

TEST(RuleCountFile, TotalIsRoundedToSinglePrecision) {
    // The total of 2^24 + 1 becomes 2^24. 196608000 / 2^24 = 11.71875 is a tie that goes up, to the even
    // digit; over 2^24 + 1 it would be 11.7187. 1481113700 / 2^24 = 88.281256; over 2^24 + 1 it would
    // be 88.281251.
    const std::string report = report_of(counts_with_sums(1966080, 14811137, 0));
    EXPECT_EQ(lines_from(report, "Total number of rules: "), "Total number of rules: 16777217\n");
    EXPECT_EQ(lines_from(report, "Percentage"),
              "Percentage of exact rules: 11.7188 %\n"
              "Percentage of appro rules: 88.2813 %\n"
              "Percentage of apped rules: 0 %\n");
}

TEST(RuleCountFile, HundredfoldIsNotRoundedToSinglePrecision) {
    // The total is 2^20, and 67119300 / 2^20 = 64.0099525; the nearest single, 67119296, would
    // give 64.0099487.
    const std::string report = report_of(counts_with_sums(671193, 377383, 0));
    EXPECT_EQ(lines_from(report, "Percentage of exact"), "Percentage of exact rules: 64.01 %\n");
}

TEST(RuleCountFile, TotalThatWrapsTo0HasNoPercentages) {
    const std::string report = report_of(counts_with_sums(4294967295U, 1, 0));
    EXPECT_EQ(lines_from(report, "Total number of rules: "), "Total number of rules: 0\n");
    EXPECT_EQ(lines_from(report, "Percentage"), "");
}

TEST(RuleCountFile, TotalOfAGroupWraps) {
    RuleCounts counts;
    counts.counters[0][0] = 4294967295U;  // R112
    counts.counters[1][0] = 3;            // R111
    EXPECT_EQ(lines_from(breakdown_of(exact, counts), "Total number  of  rules of Form 1"),
              "Total number  of  rules of Form 1: 2\n");
}

}  // namespace
}  // namespace korv
