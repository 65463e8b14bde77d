#include "rules/pair_rules.h"

#include <gtest/gtest.h>

#include <map>

#include "rules/contingency_printing.h"

namespace korv::tools {

namespace {

TEST(FormsOfAPair, AreTwoOfEachGroup) {
    using enum Form;
    EXPECT_EQ(forms_of(PairKind::essential_and_rest),
              (std::array{R111, R112, R211, R212, R311, R312, R411, R412}));
    EXPECT_EQ(forms_of(PairKind::essential_of_successor),
              (std::array{R121, R122, R221, R222, R321, R322, R421, R422}));
    EXPECT_EQ(forms_of(PairKind::successor), (std::array{R131, R132, R231, R232, R331, R332, R431, R432}));
}

// Of 100 transactions 50 meet the base, 40 the difference, 80 one of them: so 10 meet both, 40 the base
// alone, 30 the difference alone, and 20 neither.
constexpr PairSupports pair = {100, 80, 50, 40};

TEST(Contingency, OfEachRuleComesFromTheFourCountsOfThePair) {
    using enum Form;
    const std::map<Form, Contingency> expected = {
        {R131, {50, 40, 10}}, {R132, {40, 50, 10}},  // f1 and f2-f1
        {R231, {50, 60, 20}}, {R232, {60, 50, 20}},  // neither
        {R331, {50, 60, 40}}, {R332, {40, 50, 30}},  // f1 alone, f2-f1 alone
        {R431, {50, 40, 30}}, {R432, {60, 50, 40}},
    };
    for (const Form form : forms_of(PairKind::successor)) {
        EXPECT_EQ(contingency(form, pair), expected.at(form)) << description(form).label;
    }
}

TEST(Contingency, OfR421AndR422IsThatOfTheSidesThatTheyPrint) {
    // not(f2-e1)-->e1 and not(e1)-->(f2-e1): the other way round than the labels of the other groups.
    EXPECT_EQ(contingency(Form::R421, pair), (Contingency{60, 50, 40}));
    EXPECT_EQ(contingency(Form::R422, pair), (Contingency{50, 40, 30}));
}

}  // namespace

}  // namespace korv::tools
