#include "rules/page_classes.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "decoded_arrays.h"
#include "engine/lattice_building.h"
#include "made_rules.h"

namespace korv::tools {

namespace {

using Numbers = std::vector<std::int64_t>;
using Positions = std::vector<std::uint32_t>;

/// The classes 1, 2, 3, 1 2 and 1 2 3 4 at the positions 0 to 4. Below the last one are 3 and 1 2, below
/// that 1 and 2.
class PageClassesTest : public testing::Test {
protected:
    Positions by_need(const std::vector<FoundRule>& rules) const {
        return classes_by_need(lattice_, rules, made_.pool(), 20);
    }

    PageArrays arrays_of(const Positions& chosen) const {
        PageArrays arrays;
        add_classes(lattice_, chosen, items_, arrays);
        return arrays;
    }

    const ClassMap classes_ = {{{1}, {4, {}}},
                               {{2}, {5, {}}},
                               {{3}, {6, {}}},
                               {{1, 2}, {8, {}}},
                               {{1, 2, 3, 4}, {12, {{1, 3}, {2, 3}}}}};
    LatticeEntries entries_ = lattice_entries(classes_);
    const PageItems items_{{1, 2, 3, 4}};
    PageLattice lattice_ = linked();
    MadeRules made_{{}};

private:
    PageLattice linked() {
        link_successors(entries_);
        return PageLattice(entries_);
    }
};

TEST_F(PageClassesTest, HaveNeighboursOnBothSides) {
    const auto lowers = lattice_.lowers(4);
    EXPECT_EQ(Positions(lowers.begin(), lowers.end()), (Positions{2, 3}));
    const auto uppers = lattice_.uppers(1);
    EXPECT_EQ(Positions(uppers.begin(), uppers.end()), (Positions{3}));
    EXPECT_TRUE(lattice_.uppers(4).empty());
    EXPECT_TRUE(lattice_.lowers(0).empty());
}

TEST_F(PageClassesTest, AreToldByWhatTheyHaveBeyondTheirNeighbours) {
    EXPECT_EQ(numbers_of(arrays_of({0, 1, 2, 3, 4})),
              (std::map<std::string, Numbers>{{"class_counts", {4, 5, 6, 8, 12}},
                                              {"class_own_sizes", {1, 1, 1, 0, 1}},
                                              {"class_own_items", {0, 1, 2, 3}},
                                              {"class_lower_sizes", {0, 0, 0, 2, 2}},
                                              {"class_lowers", {2, 3, 1, 2}},
                                              {"class_essential_sizes", {0, 0, 0, 0, 2}},
                                              {"essential_sizes", {2, 2}},
                                              {"essential_items", {0, 2, 1, 2}}}));
}

TEST_F(PageClassesTest, SayHowManyNeighboursAreLeftOut) {
    // Without 1 and 3: what these have is told with the classes above.
    EXPECT_EQ(numbers_of(arrays_of({1, 3, 4})),
              (std::map<std::string, Numbers>{{"class_counts", {5, 8, 12}},
                                              {"class_own_sizes", {1, 1, 2}},
                                              {"class_own_items", {1, 0, 2, 3}},
                                              {"class_lower_sizes", {0, 1, 1}},
                                              {"class_lowers", {1, 1}},
                                              {"class_more_lowers", {0, 1, 1}},
                                              {"class_essential_sizes", {0, 0, 2}},
                                              {"essential_sizes", {2, 2}},
                                              {"essential_items", {0, 2, 1, 2}}}));
    EXPECT_EQ(numbers_of(arrays_of({1}), "class_more_uppers"), (Numbers{1}));
}

TEST_F(PageClassesTest, AreNeededRuleByRuleWithTheirNeighbours) {
    // 1 => 2: 8 of 20 hold either. 3 => not 4 : 20 - (14 - 6) = 12.
    const FoundRule first = known_rule(made_.any({1}), made_.any({2}), {4, 5, 1});
    const FoundRule second = known_rule(made_.any({3}), made_.none({4}), {6, 14, 6});
    EXPECT_EQ(by_need({first}), (Positions{3, 0, 1, 4, 2}));
    EXPECT_EQ(by_need({second}), (Positions{4, 2, 3, 0, 1}));
    EXPECT_EQ(by_need({second, first}), (Positions{4, 2, 3, 0, 1}));
    EXPECT_EQ(by_need({}), (Positions{0, 1, 2, 3, 4}));
}

TEST_F(PageClassesTest, AreThoseThatAsManyTransactionsMeet) {
    // Of none of 1 and none of 2 as many: 20 - 12. The other ones are met by other numbers.
    EXPECT_EQ(by_need({known_rule(made_.none({1}), made_.none({2}), {16, 15, 12})}).front(), 3U);
    EXPECT_EQ(by_need({known_rule(made_.none({1}), made_.any({2}), {16, 5, 4})}).front(), 3U);
    EXPECT_EQ(by_need({known_rule(made_.any({1}), made_.any({2}), {4, 5, 2})}).front(), 0U);
    // No class has the item 5.
    EXPECT_EQ(by_need({known_rule(made_.any({1}), made_.any({5}), {4, 5, 1})}).front(), 0U);
}

TEST_F(PageClassesTest, AreAsManyAsThereIsRoomFor) {
    const auto number_of_classes = [](const PageArrays& arrays) {
        return arrays.all().empty() ? 0 : arrays.all().front().length;
    };
    const Positions by_need = {4, 2, 3, 0, 1};
    const auto within = [&](std::size_t most) {
        return classes_within(lattice_, by_need, items_, most, number_of_classes);
    };
    EXPECT_EQ(within(5), (Positions{0, 1, 2, 3, 4}));
    EXPECT_EQ(within(4), (Positions{0, 2, 3, 4}));
    EXPECT_EQ(within(2), (Positions{2, 4}));
    EXPECT_EQ(within(0), Positions{});
}

TEST(PageClassesWithoutClasses, AreNone) {
    const LatticeEntries no_entries;
    const PageLattice lattice(no_entries);
    const MadeRules made({});
    EXPECT_TRUE(classes_by_need(lattice, {}, made.pool(), 5).empty());
    EXPECT_TRUE(classes_within(lattice, {}, PageItems(), 0, [](const PageArrays&) {
                    return std::size_t{0};
                }).empty());
}

}  // namespace

}  // namespace korv::tools
