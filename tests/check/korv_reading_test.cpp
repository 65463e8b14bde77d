#include "check/korv_reading.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(KorvReading, TellsWhereKorvReadsOn) {
    const KorvRecord record = read_as_korv("1\t4\t 1,\n3 2\t5\t 2,\n7\t", 8);

    EXPECT_TRUE(record.is_class);
    EXPECT_EQ(record.closed_itemset, (Itemset{2, 3}));
    EXPECT_EQ(record.of_class.support, 5U);
    EXPECT_EQ(record.of_class.essentials, (std::vector<Itemset>{{2}}));
    EXPECT_EQ(record.end, 18U);
}

TEST(KorvReading, EndsWithTheText) {
    const KorvRecord record = read_as_korv("1 2\t5\t 1", 0);

    EXPECT_TRUE(record.is_class);
    EXPECT_EQ(record.end, 8U);
    EXPECT_FALSE(read_as_korv("# end\n", 0).is_class);
}

TEST(KorvReading, IsSaidInWords) {
    EXPECT_EQ(description(read_as_korv("1 2\t5\t 1 2,\n", 0)),
              "the class 1 2 with support 5 and no essential itemset");
    EXPECT_EQ(description(read_as_korv("1 2\t5\t 1,\n", 0)),
              "the class 1 2 with support 5 and the essential itemset {1}");
    EXPECT_EQ(description(read_as_korv("1 2\t5\t 1, ,\n", 0)),
              "the class 1 2 with support 5 and the essential itemsets {1} and {}");
    EXPECT_EQ(
        description(read_as_korv("1 2 3 4 5 6 7 8 9 10 11 12 13 14\t5\t 1, 2, 3, 4, 5, 6,\n", 0)),
        "the class 1 2 3 4 5 6 7 8 9 10 11 12 and 2 more items with support 5 and the essential itemsets "
        "{1}, {2}, {3}, {4} and 2 more");
}

}  // namespace
}  // namespace korv::tools
