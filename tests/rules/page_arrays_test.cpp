#include "rules/page_arrays.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace korv::tools {

namespace {

using Numbers = std::vector<std::uint32_t>;

/// The only array after one was added.
PageArray array_of(const Numbers& numbers, PageCoding coding = {}) {
    PageArrays arrays;
    arrays.add("a", numbers, coding);
    EXPECT_EQ(arrays.all().size(), 1U);
    return arrays.all().at(0);
}

std::string bytes(std::initializer_list<unsigned> values) {
    std::string text;
    for (const unsigned value : values) {
        text += static_cast<char>(static_cast<unsigned char>(value));
    }
    return text;
}

TEST(PageArrays, HaveTheNarrowestType) {
    EXPECT_EQ(array_of({1, 255}).type, "u8");
    EXPECT_EQ(array_of({1, 255}).bytes, bytes({1, 255}));
    EXPECT_EQ(array_of({1, 256}).type, "u16");
    EXPECT_EQ(array_of({1, 0x1234}).bytes, bytes({1, 0, 0x34, 0x12}));
    EXPECT_EQ(array_of({1, 65536}).type, "u32");
    EXPECT_EQ(array_of({1, 0x12345678}).bytes, bytes({1, 0, 0, 0, 0x78, 0x56, 0x34, 0x12}));
    EXPECT_EQ(array_of({0xFFFFFFFF}).bytes, bytes({255, 255, 255, 255}));
    EXPECT_EQ(array_of({1, 2, 3}).length, 3U);
}

TEST(PageArrays, StandInPlanes) {
    const PageArray planes = array_of({0x0102, 0x0304, 5}, {.in_planes = true});
    EXPECT_EQ(planes.bytes, bytes({2, 4, 5, 1, 3, 0}));
    EXPECT_TRUE(planes.coding.in_planes);
    EXPECT_EQ(array_of({0x12345678, 1}, {.in_planes = true}).bytes,
              bytes({0x78, 1, 0x56, 0, 0x34, 0, 0x12, 0}));
    // A single plane is none.
    EXPECT_FALSE(array_of({1, 2}, {.in_planes = true}).coding.in_planes);
}

TEST(PageArrays, HaveDifferencesModuloTheirType) {
    EXPECT_EQ(array_of({5, 7, 6}, {.has_deltas = true}).bytes, bytes({5, 2, 255}));
    EXPECT_EQ(array_of({256, 255}, {.in_planes = true, .has_deltas = true}).bytes, bytes({0, 255, 1, 255}));
}

TEST(PageArrays, AreLeftOutWhereTheyAreEmptyOrSayWhatIsUsual) {
    PageArrays arrays;
    arrays.add("a", {});
    arrays.add_unless_all(1, "b", Numbers{1, 1});
    arrays.add_signed("c", {});
    arrays.add_floats("d", {});
    EXPECT_TRUE(arrays.all().empty());
    arrays.add_unless_all(1, "b", Numbers{1, 2});
    EXPECT_EQ(arrays.all().at(0).name, "b");
}

TEST(PageArrays, HaveSignedNumbersAndFloats) {
    PageArrays arrays;
    arrays.add_signed("a", std::vector<std::int8_t>{-1, 0, 1});
    arrays.add_floats("b", std::vector<float>{1.0F, -2.5F});
    EXPECT_EQ(arrays.all().at(0).type, "i8");
    EXPECT_EQ(arrays.all().at(0).bytes, bytes({255, 0, 1}));
    EXPECT_EQ(arrays.all().at(1).type, "f32");
    EXPECT_EQ(arrays.all().at(1).bytes, bytes({0, 0, 0x80, 0x3F, 0, 0, 0x20, 0xC0}));
}

TEST(PageArrays, BeginAtMultiplesOfEight) {
    PageArrays arrays;
    arrays.add("a", Numbers{1, 2, 3});
    PageArrays others;
    others.add("b", Numbers{4, 5, 6, 7, 8, 9, 10, 11});
    others.add("c", Numbers{12});
    arrays.append(std::move(others));
    EXPECT_EQ(arrays.offsets(), (std::vector<std::size_t>{0, 8, 16}));
    std::string written;
    arrays.write([&written](std::string_view piece) { written += piece; });
    EXPECT_EQ(written, bytes({1, 2, 3, 0, 0, 0, 0, 0, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(PagePadding, FillsUpToAMultipleOfEight) {
    EXPECT_EQ(page_padding(0), "");
    EXPECT_EQ(page_padding(1), std::string(7, '\0'));
    EXPECT_EQ(page_padding(15), std::string(1, '\0'));
    EXPECT_EQ(page_padding(16), "");
}

}  // namespace

}  // namespace korv::tools
