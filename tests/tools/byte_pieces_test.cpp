#include "common/byte_pieces.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace korv::tools {
namespace {

/// A source that gives its bytes in small portions.
struct Portions {
    std::string bytes;
    std::size_t portion;

    std::size_t operator()(char* out, std::size_t size) {
        const std::size_t count = std::min({size, portion, bytes.size()});
        std::copy_n(bytes.begin(), count, out);
        bytes.erase(0, count);
        return count;
    }
};

TEST(BytePieces, AreJoinedBehindWhatIsThere) {
    Portions source = {"milk and bread", 4};
    BytePieces pieces;
    while (pieces.fill([&source](char* out, std::size_t size) { return source(out, size); })) {
    }
    std::string text = "> ";
    pieces.move_to(text);
    EXPECT_EQ(text, "> milk and bread");
}

TEST(BytePieces, MayBeMany) {
    const std::size_t all = 140'000'000;
    std::size_t given = 0;
    BytePieces pieces;
    while (pieces.fill([&given](char* out, std::size_t size) {
        const std::size_t count = std::min({size, all - given, std::size_t{40'000'000}});
        std::fill_n(out, count, static_cast<char>('a' + given / 40'000'000));
        given += count;
        return count;
    })) {
    }
    std::string text;
    pieces.move_to(text);
    EXPECT_EQ(text.size(), all);
    EXPECT_TRUE(std::ranges::is_sorted(text));
}

}  // namespace
}  // namespace korv::tools
