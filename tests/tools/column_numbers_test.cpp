#include "mine/column_numbers.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

/// The numbers of a column, and the bytes that it takes for each.
struct Contents {
    std::vector<std::uint32_t> numbers;
    std::size_t width;

    bool operator==(const Contents&) const = default;
};

Contents contents(const std::vector<std::uint32_t>& numbers) {
    ColumnNumbers column;
    for (const std::uint32_t number : numbers) {
        column.push_back(number);
    }
    Contents result;
    column.visit([&result](const auto& kept) {
        result = {{kept.begin(), kept.end()}, sizeof(kept.front())};
    });
    return result;
}

TEST(ColumnNumbers, TakeAsManyBytesAsTheLargestNeeds) {
    EXPECT_EQ(contents({0, 255}), (Contents{{0, 255}, 1}));
    EXPECT_EQ(contents({7, 256, 3}), (Contents{{7, 256, 3}, 2}));
    EXPECT_EQ(contents({65535, 1}), (Contents{{65535, 1}, 2}));
    EXPECT_EQ(contents({7, 65536, 3}), (Contents{{7, 65536, 3}, 4}));
    EXPECT_EQ(contents({7, 256, 65536, 4294967295}), (Contents{{7, 256, 65536, 4294967295}, 4}));
}

}  // namespace
}  // namespace korv::tools
