#include "engine/rule_catalogue.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <string>

namespace korv {
namespace {

/// One line of the table of forms, as the rules are reported and counted.
struct CatalogueLine {
    std::string label;
    std::string text;
    std::size_t row;
    Form form;
    FormSide premise;
    FormSide conclusion;
};

constexpr FormSide plain_base = {Part::base, Mode::disjunction};
constexpr FormSide negated_base = {Part::base, Mode::negation};
constexpr FormSide plain_rest = {Part::difference, Mode::disjunction};
constexpr FormSide negated_rest = {Part::difference, Mode::negation};

// clang-format off
const std::array<CatalogueLine, 24> all_lines = {{
    {"R111", "e1-->(f1-e1)", 1, Form::R111, plain_base, plain_rest},
    {"R112", "(f1-e1)-->e1", 0, Form::R112, plain_rest, plain_base},
    {"R121", "e1-->(f2-e1)", 17, Form::R121, plain_base, plain_rest},
    {"R122", "(f2-e1)-->e1", 16, Form::R122, plain_rest, plain_base},
    {"R131", "f1-->(f2-f1)", 9, Form::R131, plain_base, plain_rest},
    {"R132", "(f2-f1)-->f1", 8, Form::R132, plain_rest, plain_base},
    {"R211", "not(e1)-->not(f1-e1)", 2, Form::R211, negated_base, negated_rest},
    {"R212", "not(f1-e1)-->not(e1)", 3, Form::R212, negated_rest, negated_base},
    {"R221", "not(e1)-->not(f2-e1)", 18, Form::R221, negated_base, negated_rest},
    {"R222", "not(f2-e1)-->not(e1)", 19, Form::R222, negated_rest, negated_base},
    {"R231", "not(f1)-->not(f2-f1)", 10, Form::R231, negated_base, negated_rest},
    {"R232", "not(f2-f1)-->not(f1)", 11, Form::R232, negated_rest, negated_base},
    {"R311", "e1-->not(f1-e1)", 4, Form::R311, plain_base, negated_rest},
    {"R312", "(f1-e1)-->not(e1)", 7, Form::R312, plain_rest, negated_base},
    {"R321", "e1-->not(f2-e1)", 20, Form::R321, plain_base, negated_rest},
    {"R322", "(f2-e1)-->not(e1)", 23, Form::R322, plain_rest, negated_base},
    {"R331", "f1-->not(f2-f1)", 12, Form::R331, plain_base, negated_rest},
    {"R332", "(f2-f1)-->not(f1)", 15, Form::R332, plain_rest, negated_base},
    {"R411", "not(e1)-->(f1-e1)", 6, Form::R411, negated_base, plain_rest},
    {"R412", "not(f1-e1)-->e1", 5, Form::R412, negated_rest, plain_base},
    // The two whose last digit does not tell the direction.
    {"R421", "not(f2-e1)-->e1", 21, Form::R421, negated_rest, plain_base},
    {"R422", "not(e1)-->(f2-e1)", 22, Form::R422, negated_base, plain_rest},
    {"R431", "not(f1)-->(f2-f1)", 14, Form::R431, negated_base, plain_rest},
    {"R432", "not(f2-f1)-->f1", 13, Form::R432, negated_rest, plain_base},
}};
// clang-format on

void PrintTo(const CatalogueLine& line, std::ostream* out) {
    *out << line.label;
}

TEST(RuleCatalogue, ListsTheFormsInTheOrderOfTheReport) {
    ASSERT_EQ(rule_catalogue.size(), all_lines.size());
    for (std::size_t i = 0; i < all_lines.size(); ++i) {
        EXPECT_EQ(rule_catalogue[i].label, all_lines[i].label);
        EXPECT_EQ(rule_catalogue[i].form, all_lines[i].form) << all_lines[i].label;
    }
}

TEST(RuleCatalogue, HasFourGroupsOfSixForms) {
    EXPECT_EQ(forms_in_a_group, 6U);
    EXPECT_EQ(rule_catalogue.size(), 4U * 6U);
}

TEST(RuleCatalogue, NamesTheKindsInTheOrderOfTheirColumns) {
    ASSERT_EQ(all_kinds.size(), 3U);
    EXPECT_EQ(static_cast<std::size_t>(Kind::exact), 0U);
    EXPECT_EQ(static_cast<std::size_t>(Kind::appro), 1U);
    EXPECT_EQ(static_cast<std::size_t>(Kind::apped), 2U);
    EXPECT_EQ(kind_name(all_kinds[0]), "exact");
    EXPECT_EQ(kind_name(all_kinds[1]), "appro");
    EXPECT_EQ(kind_name(all_kinds[2]), "apped");
}

class CataloguedForm : public ::testing::TestWithParam<CatalogueLine> {};

TEST_P(CataloguedForm, HasItsTextInTheReport) {
    const CatalogueLine& line = GetParam();
    EXPECT_EQ(rule_catalogue[static_cast<std::size_t>(line.form)].text, line.text);
}

TEST_P(CataloguedForm, HasItsOwnCounterRow) {
    const CatalogueLine& line = GetParam();
    EXPECT_EQ(rule_catalogue[static_cast<std::size_t>(line.form)].counter_row, line.row);
    EXPECT_EQ(counter_row(line.form), line.row);
}

TEST_P(CataloguedForm, HasItsPremise) {
    EXPECT_EQ(premise(GetParam().form), GetParam().premise);
}

TEST_P(CataloguedForm, HasItsConclusion) {
    EXPECT_EQ(conclusion(GetParam().form), GetParam().conclusion);
}

INSTANTIATE_TEST_SUITE_P(All, CataloguedForm, ::testing::ValuesIn(all_lines),
                         [](const auto& instance) { return instance.param.label; });

}  // namespace
}  // namespace korv
