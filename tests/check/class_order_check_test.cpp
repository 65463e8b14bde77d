#include "check/class_order_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "finding_words.h"
#include "support/bits.h"

namespace korv::tools {
namespace {

using Lines = std::vector<std::string>;

Lines found_in(const std::string& text, std::optional<Count> transactions = std::nullopt) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked = check_class_file({"a.classes", text}, findings);
    EXPECT_EQ(findings.count(Severity::error), 0U);
    check_order_of_classes(checked, KnownSupports(checked), transactions, findings);
    Lines lines;
    for (const Finding& each : findings.in_order()) {
        lines.push_back(place_and_code(each) + ": found " + each.found + "; expected " + each.expected);
    }
    return lines;
}

TEST(ClassOrderCheck, FindsNothingInClassesOfADatabase) {
    // Of the transactions 1 3, 1 3, 2 3, 2 4, 2 4.
    EXPECT_EQ(found_in("1\t2\t 1,\n4\t2\t 4,\n1 3\t3\t 3,\n2 4\t3\t 2,\n1 2 3 4\t5\t 2 3,\n", 5), Lines());
}

TEST(ClassOrderCheck, NamesSupportsAboveTheNumberOfTransactions) {
    EXPECT_EQ(found_in("1\t2\t 1,\n2\t6\t 2,\n", 5),
              (Lines{"2:1 warning support-above-size: found the support 6; expected 5 at most, the number of "
                     "transactions"}));
}

TEST(ClassOrderCheck, NamesBothLinesOfAClassAroundOneOfNoSmallerSupport) {
    EXPECT_EQ(
        found_in("1 2\t4\t 2,\n1\t4\t 1,\n"),
        (Lines{"1:1 warning support-not-larger: found the support 4; expected more than 4, the support of "
               "line 2, whose itemset \"1\" lies within the closed itemset"}));
}

TEST(ClassOrderCheck, NamesTheFirstOfSeveralReasons) {
    EXPECT_EQ(
        found_in("2\t6\t 2,\n1\t7\t 1,\n1 2\t5\t 1 2,\n"),
        (Lines{"3:1 warning support-not-larger: found the support 5; expected more than 6, the support of "
               "line 1, whose itemset \"2\" lies within the closed itemset"}));
}

TEST(ClassOrderCheck, NamesAnEssentialItemsetOfTwoClasses) {
    EXPECT_EQ(
        found_in("1 2\t4\t 1,\n1 3\t5\t 1,\n"),
        (Lines{"2:1 warning shared-essential: found the essential itemset \"1\", which line 1 has, too; "
               "expected each essential itemset in one class"}));
    EXPECT_EQ(
        found_in("1 3\t4\t 1,\n1 2\t4\t 1,\n"),
        (Lines{"2:1 warning shared-essential: found the essential itemset \"1\", which line 1 has, too; "
               "expected each essential itemset in one class"}));
}

TEST(ClassOrderCheck, NamesAnEssentialItemsetWithinASmallerClass) {
    EXPECT_EQ(
        found_in("1 2\t3\t 2,\n1 2 3\t5\t 1, 3,\n"),
        (Lines{"2:1 warning essential-in-smaller-class: found the essential itemset \"1\" within the "
               "smaller class of line 1; expected essential itemsets that lie within no smaller class"}));
    // The smaller class has it, too, or is it.
    EXPECT_EQ(
        found_in("1 2\t3\t 1,\n1 2 3\t5\t 1, 3,\n"),
        (Lines{"2:1 warning essential-in-smaller-class: found the essential itemset \"1\" within the "
               "smaller class of line 1; expected essential itemsets that lie within no smaller class"}));
    EXPECT_EQ(
        found_in("1\t3\t 1,\n1 2\t5\t 1,\n"),
        (Lines{"2:1 warning essential-in-smaller-class: found the essential itemset \"1\" within the "
               "smaller class of line 1; expected essential itemsets that lie within no smaller class"}));
}

TEST(ClassOrderCheck, NamesAnEssentialItemsetOnceHoweverManyClassesAreAroundIt) {
    // The first of the two lines of smaller classes around 1 2.
    EXPECT_EQ(
        found_in("1\t3\t 1,\n1 2 3 4\t8\t 4,\n1 2 3\t6\t 1 3,\n1 2 3 4 5\t9\t 1 2, 5,\n"),
        (Lines{"4:1 warning essential-in-smaller-class: found the essential itemset \"1 2\" within the "
               "smaller class of line 2; expected essential itemsets that lie within no smaller class"}));
}

TEST(ClassOrderCheck, NamesAnEssentialItemsetWithinAClassThatDoesNotContainItsOwn) {
    EXPECT_EQ(
        found_in("1 2\t3\t 1,\n1 3\t5\t 3,\n"),
        (Lines{"1:1 warning essential-elsewhere: found the essential itemset \"1\"; expected classes around "
               "it that contain this one; line 2 does not"}));
}

TEST(ClassOrderCheck, NamesAnEssentialItemsetAroundAnother) {
    EXPECT_EQ(
        found_in("1 2 3\t5\t 1, 1 2,\n"),
        (Lines{"1:1 warning nested-essential: found the essential itemset \"1 2\" around \"1\"; expected "
               "essential itemsets of which none contains another"}));
}

/// Whether classes contradict each other, by looking at each two of them.
bool is_contradictory(const ClassMap& classes) {
    for (const auto& [closed, of_class] : classes) {
        for (const auto& [other, of_other] : classes) {
            if (closed == other) {
                continue;
            }
            if (is_contained(closed, other) && of_class.support >= of_other.support) {
                return true;
            }
            for (const Itemset& essential : of_class.essentials) {
                if (is_contained(essential, other) && !is_contained(closed, other)) {
                    return true;
                }
            }
        }
        for (const Itemset& one : of_class.essentials) {
            for (const Itemset& other : of_class.essentials) {
                if (one != other && is_contained(one, other)) {
                    return true;
                }
            }
        }
    }
    return false;
}

/// The lines of classes around another one whose support is not smaller.
std::set<std::size_t> contradicted_lines(const CheckedClasses& checked) {
    std::set<std::size_t> lines;
    auto line = checked.lines.begin();
    for (const auto& [closed, of_class] : checked.classes) {
        for (const auto& [other, of_other] : checked.classes) {
            if (other != closed && of_other.support >= of_class.support && is_contained(other, closed)) {
                lines.insert(*line);
            }
        }
        ++line;
    }
    return lines;
}

/// The lines of essential itemsets that lie within a class that does not contain their own: once for each. Of
/// one that two classes have, of which none lies within the other, the one of larger support is named, or
/// else the later one.
std::multiset<std::size_t> lines_of_wrong_essentials(const CheckedClasses& checked) {
    std::multiset<std::size_t> lines;
    const auto line_of = [&checked](const Itemset& closed) {
        const auto before = std::distance(checked.classes.begin(), checked.classes.find(closed));
        return std::size_t{checked.lines[static_cast<std::size_t>(before)]};
    };
    for (const auto& [closed, of_class] : checked.classes) {
        const std::size_t line = line_of(closed);
        for (const Itemset& essential : of_class.essentials) {
            bool is_wrong = false;
            for (const auto& [other, of_other] : checked.classes) {
                const std::size_t other_line = line_of(other);
                const bool is_stranger = is_contained(essential, other) && !is_contained(closed, other);
                const bool has_it =
                    std::ranges::count(of_other.essentials, essential) > 0 && !is_contained(other, closed);
                const bool is_later = of_other.support > of_class.support ||
                                      (of_other.support == of_class.support && other_line > line);
                is_wrong = is_wrong || (is_stranger && !(has_it && is_later));
            }
            if (is_wrong) {
                lines.insert(line);
            }
        }
    }
    return lines;
}

/// Random classes of which some contradict each other. `one_in`: of so many parts one is essential.
CheckedClasses random_classes(std::uint32_t one_in, std::mt19937& random) {
    CheckedClasses checked;
    std::uint32_t line = 0;
    for (const test::Bits bits : test::random_family(5, 6, random)) {
        data& of_class = checked.classes[test::itemset_of(bits)];
        of_class.support =
            static_cast<Count>(2 * test::itemset_of(bits).size()) + test::random_below(3, random);
        for (test::Bits part = (bits - 1) & bits; part != 0; part = (part - 1) & bits) {
            if (random() % one_in == 0) {
                of_class.essentials.push_back(test::itemset_of(part));
            }
        }
        checked.lines.push_back(++line);
    }
    return checked;
}

class RandomClasses : public testing::TestWithParam<std::uint32_t> {};

TEST_P(RandomClasses, HaveAFindingExactlyWhereTwoContradictEachOther) {
    std::mt19937 random(GetParam());
    int contradictory = 0;
    for (int i = 0; i < 5000; ++i) {
        const CheckedClasses checked = random_classes(GetParam(), random);
        Findings findings({"a.classes"}, 0, true);

        check_order_of_classes(checked, KnownSupports(checked), std::nullopt, findings);

        const bool expected = is_contradictory(checked.classes);
        ASSERT_EQ(findings.count(Severity::warning) > 0, expected);
        std::set<std::size_t> lines;
        std::multiset<std::size_t> lines_of_essentials;
        for (const Finding& each : findings.in_order()) {
            if (each.kind == FindingKind::support_not_larger) {
                lines.insert(each.place.line);
            } else if (each.kind != FindingKind::nested_essential) {
                lines_of_essentials.insert(each.place.line);
            }
        }
        ASSERT_EQ(lines, contradicted_lines(checked));
        ASSERT_EQ(lines_of_essentials, lines_of_wrong_essentials(checked));
        contradictory += expected ? 1 : 0;
    }
    EXPECT_GT(contradictory, 500);
    EXPECT_LT(contradictory, 5000);
}

INSTANTIATE_TEST_SUITE_P(OfFewAndManyEssentialItemsets, RandomClasses, testing::Values(2, 6, 20, 100));

}  // namespace
}  // namespace korv::tools
