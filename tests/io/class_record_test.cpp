#include "io/class_record.h"

#include <gtest/gtest.h>

namespace korv {
namespace {

std::string record(const Itemset& closed_itemset, Count support, const std::vector<Itemset>& essentials) {
    std::string text;
    append_class_record(closed_itemset, support, essentials, text);
    return text;
}

TEST(ClassRecord, ListsItemsSupportAndEssentials) {
    EXPECT_EQ(record({1, 2, 3}, 5, {{1}, {2, 3}}), "1 2 3\t5\t 1, 2 3,\n");
}

TEST(ClassRecord, HoldsTheClosedItemsetAsItsOwnEssential) {
    EXPECT_EQ(record({7}, 12, {{7}}), "7\t12\t 7,\n");
}

TEST(ClassRecord, HoldsTheLargestNumbers) {
    EXPECT_EQ(record({0, 4294967295}, 4294967295, {{4294967295}}),
              "0 4294967295\t4294967295\t 4294967295,\n");
}

TEST(ClassRecord, IsAppended) {
    std::string text = "before\n";
    append_class_record({1}, 2, {{1}}, text);
    EXPECT_EQ(text, "before\n1\t2\t 1,\n");
}

}  // namespace
}  // namespace korv
