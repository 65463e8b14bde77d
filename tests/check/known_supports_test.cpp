#include "check/known_supports.h"

#include <gtest/gtest.h>

#include <string>

namespace korv::tools {
namespace {

constexpr KnownSupports::Position unknown = KnownSupports::unknown;

CheckedClasses classes_of(const std::string& text) {
    Findings findings({"a.classes"}, 0, true);
    return check_class_file({"a.classes", text}, findings);
}

TEST(KnownSupports, AreThoseOfClosedAndOfEssentialItemsets) {
    const CheckedClasses checked = classes_of("1 2\t5\t 1, 2,\n3\t4\t 3,\n");
    const KnownSupports known(checked);

    EXPECT_EQ(known.size(), 4U);
    EXPECT_EQ(known.find({1, 2}), 0U);
    EXPECT_EQ(known.find({3}), 1U);
    EXPECT_EQ(known.find({1}), 2U);
    EXPECT_EQ(known.find({2}), 3U);
    EXPECT_EQ(known.find({1, 3}), unknown);
    EXPECT_EQ(known[3].support(), 5U);
    EXPECT_EQ(known[3].line, 1U);
    EXPECT_EQ(known[3].closed, 0U);
    EXPECT_EQ(known[1].line, 2U);
}

TEST(KnownSupports, HaveKeysThatAreEssentialOrClosedWithoutAnEssentialItemset) {
    const CheckedClasses checked = classes_of("1 2\t5\t 1, 2,\n3\t4\t 3,\n");
    const KnownSupports known(checked);

    EXPECT_FALSE(known.is_key(0));
    EXPECT_TRUE(known.is_key(1) && known.is_closed(1));
    EXPECT_TRUE(known.is_key(2) && !known.is_closed(2));
}

TEST(KnownSupports, HaveTheKnownPartsOfKeys) {
    const CheckedClasses checked = classes_of("1\t5\t 1,\n2 3\t6\t 3,\n1 2 3 4\t9\t 1 3, 2 4,\n");
    const KnownSupports known(checked);

    const auto parts = known.parts(known.find({1, 3}));
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[0], known.find({3}));
    EXPECT_EQ(parts[1], known.find({1}));
    EXPECT_EQ(known.parts(known.find({2, 4}))[0], unknown);
    EXPECT_TRUE(known.parts(known.find({1})).empty());
    EXPECT_TRUE(known.parts(known.find({1, 2, 3, 4})).empty());
}

TEST(KnownSupports, AreToldOnceOfAnItemsetThatTwoClassesShare) {
    const CheckedClasses checked = classes_of("0 1 2\t9\t 1 2, 0,\n1 2\t5\t 1,\n3 4\t6\t 0,\n");
    EXPECT_EQ(checked.classes.size(), 2U);  // since 0 is foreign in the last line
    const KnownSupports known(checked);

    EXPECT_EQ(known.size(), 4U);
    EXPECT_TRUE(known.is_closed(known.find({1, 2})));
    EXPECT_EQ(known[known.find({1, 2})].support(), 5U);
    ASSERT_EQ(known.shared().size(), 1U);
    EXPECT_EQ(*known.shared()[0].itemset, (Itemset{1, 2}));
    EXPECT_EQ(known.shared()[0].line, 1U);
}

}  // namespace
}  // namespace korv::tools
