#include "check/known_supports.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(KnownSupports, AreThoseOfClosedAndOfEssentialItemsets) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked = check_class_file({"", "1 2\t5\t 1, 2,\n3\t4\t 3,\n"}, findings);
    const KnownSupports known(checked);

    ASSERT_NE(known.find({1, 2}), nullptr);
    EXPECT_EQ(known.find({1, 2})->support(), 5U);
    EXPECT_EQ(known.find({1, 2})->line, 1U);
    EXPECT_TRUE(known.find({1, 2})->is_closed);
    ASSERT_NE(known.find({2}), nullptr);
    EXPECT_EQ(known.find({2})->support(), 5U);
    EXPECT_FALSE(known.find({2})->is_closed);
    EXPECT_EQ(known.find({3})->line, 2U);
    EXPECT_EQ(known.find({1, 3}), nullptr);
    EXPECT_EQ(known.all().size(), 4U);
}

TEST(KnownSupports, OfAnItemsetThatIsClosedAreThoseOfItsOwnClass) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked = check_class_file({"", "1 2 0\t9\t 1 2,\n1 2\t5\t 1,\n"}, findings);
    const KnownSupports known(checked);

    EXPECT_TRUE(known.find({1, 2})->is_closed);
    EXPECT_EQ(known.find({1, 2})->support(), 5U);
}

TEST(KnownSupports, AreFoundByAWholeAndThePositionsThatItLacks) {
    Findings findings({"a.classes"}, 0, true);
    const CheckedClasses checked = check_class_file({"", "1 2\t5\t 1, 2,\n"}, findings);
    const KnownSupports known(checked);
    const Itemset whole = {1, 2, 7};
    const std::uint64_t hash = KnownSupports::hash_of_items(whole);

    EXPECT_EQ(known.find_part(whole, hash, 2), known.find({1, 2}));
    EXPECT_EQ(known.find_part(whole, hash, 2, 0), known.find({2}));
    EXPECT_EQ(known.find_part(whole, hash, 0, 1), nullptr);
    EXPECT_EQ(known.find_part(whole, hash, 1), nullptr);
    EXPECT_EQ(&known.all()[known.position(*known.find({2}))], known.find({2}));
}

}  // namespace
}  // namespace korv::tools
