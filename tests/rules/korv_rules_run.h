#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/program_fixture.h"

namespace korv::test {

/// Of 8 transactions 4 hold item 1, 4 item 2, 3 both; 5 hold one of them.
inline const std::string two_items = "1 2\n1 2\n1 2\n1\n2\n\n\n\n";
inline const std::string two_items_classes = "1\t4\t 1,\n2\t4\t 2,\n1 2\t5\t 1 2,\n";

inline const std::string csv_header =
    "id,form,kind,premise,conclusion,support,support_max,confidence,confidence_max,lift,lift_max,leverage,"
    "leverage_max,premise_count,premise_count_max,conclusion_count,conclusion_count_max,transactions,items,"
    "wordings\n";

/// The best rule of the two items, and what the summary says of it.
inline const std::string csv_rule =
    csv_header + "1,R131,approximative,1,2,3,3,0.75,0.75,1.5,1.5,0.125,0.125,4,4,4,4,8,2,1\n";
inline const std::string rule_in_words =
    "1. If 1, then in 75 % of cases: 2\n"
    "   3 of 4, against 4 of all 8 (50 %): 1.50 times as often as in general\n"
    "   the same association in 3 more readings\n";
inline const std::string summary_of_the_rules =
    "4 rules from 3 classes, 8 transactions\n"
    "3 another reading of an association     --readings all\n"
    "1 shown, by leverage\n";

/// The thresholds with which the two items have rules.
inline const std::vector<std::string> low = {"-s", "1", "-c", "0.75"};

/// Words before others.
inline std::vector<std::string> operator+(std::vector<std::string> words,
                                          const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// With which the large database takes far longer than any test.
inline const std::vector<std::string> endless = {"-s",        "1", "--max-items", "0", "--max-classes",
                                                 "4000000000"};

/// korv-rules as a process.
class KorvRules : public ProgramTest {
protected:
    Outcome rules(const std::vector<std::string>& arguments) const {
        return run_here(KORV_RULES_PROGRAM, arguments);
    }

    /// Runs a script of bash, in which "$0" is korv-rules, "$1" korv-mine and "$2" korv.
    Outcome shell(const std::string& script) const {
        return shell_with({KORV_RULES_PROGRAM, KORV_MINE_PROGRAM, KORV_PROGRAM}, script);
    }

    /// Runs korv-rules, quietly, and expects that it is refused with a status and a message.
    void expect_refused(const std::vector<std::string>& arguments, int status,
                        const std::string& message) const {
        const Outcome outcome = rules(arguments);
        EXPECT_EQ(outcome.ending, exited(status)) << ::testing::PrintToString(arguments);
        EXPECT_EQ(outcome.err, "korv-rules: " + message + "\n");
        EXPECT_EQ(outcome.out, "");
    }
};

}  // namespace korv::test
