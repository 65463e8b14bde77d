#include "rules/class_numbers.h"

#include <gtest/gtest.h>

namespace korv::tools {

namespace {

TEST(ClassNumbers, AreThoseOfTheEntriesFromOne) {
    const ClassMap classes = {{{1, 2}, {5, {}}}, {{3}, {2, {}}}};
    const LatticeEntries entries = lattice_entries(classes);  // the smaller itemset first
    const ClassNumbers numbers(entries);
    EXPECT_EQ(numbers.of(classes.find({3})), 1U);
    EXPECT_EQ(numbers.of(classes.find({1, 2})), 2U);
}

}  // namespace

}  // namespace korv::tools
