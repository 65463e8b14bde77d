#include "check/class_notes.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "finding_words.h"
#include "support/bits.h"

namespace korv::tools {
namespace {

using Lines = std::vector<std::string>;

Lines found_in(const std::string& text, std::size_t most_items = 100) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked = check_class_file({"a.classes", text}, findings);
    note_what_is_missing(checked, KnownSupports(checked), most_items, findings);
    Lines lines;
    for (const Finding& each : findings.in_order()) {
        lines.push_back(place_and_code(each) + ": found " + each.found);
    }
    return lines;
}

TEST(ClassNotes, AreNotNeededWhereNothingIsMissing) {
    EXPECT_EQ(found_in("1\t2\t 1,\n1 2\t5\t 2,\n"), Lines());
}

TEST(ClassNotes, NameClassesOfSeveralItemsThatAreTheirOwnEssentialItemset) {
    EXPECT_EQ(found_in("1\t2\t 1,\n2\t4\t 2,\n1 2\t5\t 1 2,\n"),
              (Lines{"3:1 note own-essential: found the closed itemset as its own essential itemset"}));
}

TEST(ClassNotes, NameClassesOfManyItems) {
    EXPECT_EQ(found_in("1\t2\t 1,\n1 2 3\t5\t 2, 3,\n", 2),
              (Lines{"2:1 note large-class: found a class of 3 items"}));
}

TEST(ClassNotes, NameIntersectionsOfSuccessorsOnce) {
    EXPECT_EQ(
        found_in("1 2 3\t5\t 1,\n2 3 4\t6\t 4,\n2 3 5\t7\t 5,\n1 2 3 4 5\t9\t 1 4, 1 5, 4 5,\n")[0],
        "1:1 note missing-intersection: found no class \"2 3\", which this one and line 2 have in common");
}

TEST(ClassNotes, NameIntersectionsOfClassesWithinNoOther) {
    EXPECT_EQ(
        found_in("1 2\t5\t 1,\n2 3\t6\t 3,\n")[0],
        "1:1 note missing-intersection: found no class \"2\", which this one and line 2 have in common");
}

TEST(ClassNotes, SayWhereThereAreMorePairsThanAreLookedAt) {
    const auto singles = [](int classes) {
        std::string text;
        for (int item = 1; item <= classes; ++item) {
            text += std::to_string(item) + "\t1\t " + std::to_string(item) + ",\n";
        }
        return text;
    };
    EXPECT_EQ(found_in(singles(3162)), Lines());  // 4,997,541 pairs
    EXPECT_EQ(
        found_in(singles(3163)),  // 5,000,703
        (Lines{"1:1 note missing-intersection: found more pairs of classes than 5,000,000, of which the "
               "others were not looked at"}));
}

TEST(ClassNotes, CountTheSupportsThatAreOpen) {
    // Within the first class, the support of 3 without 1 2 is from 0 to 9.
    EXPECT_EQ(found_in("1 2 3\t9\t 1 2,\n"),
              (Lines{"1:1 note open-supports: found 1 of 1 supports of differences "
                     "open"}));
}

TEST(ClassNotes, NameAnIntersectionExactlyWhereTheFamilyIsNotClosedUnderIntersection) {
    std::mt19937 random(7);
    int closed = 0;
    for (int i = 0; i < 5000; ++i) {
        CheckedClasses checked;
        std::uint32_t line = 0;
        const std::set<test::Bits> family = test::random_family(4, 5, random);
        for (const test::Bits bits : family) {
            checked.classes[test::itemset_of(bits)].support = static_cast<Count>(std::popcount(bits));
            checked.lines.push_back(++line);
        }
        Findings findings({"a.classes"}, 0, true);

        note_what_is_missing(checked, KnownSupports(checked), 100, findings);

        bool is_closed = true;
        for (const test::Bits one : family) {
            for (const test::Bits other : family) {
                is_closed = is_closed && ((one & other) == 0 || family.contains(one & other));
            }
        }
        ASSERT_EQ(findings.count(FindingKind::missing_intersection) == 0, is_closed);
        closed += is_closed ? 1 : 0;
    }
    EXPECT_GT(closed, 500);
    EXPECT_LT(closed, 4500);
}

}  // namespace
}  // namespace korv::tools
