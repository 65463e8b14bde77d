#include "rules/deflation.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "common/gzip.h"

namespace korv::tools {

namespace {

std::string deflated(const std::vector<std::string>& pieces) {
    std::string bytes;
    Deflation deflation([&bytes](std::string_view piece) { bytes += piece; });
    for (const std::string& piece : pieces) {
        deflation.add(piece);
    }
    deflation.finish();
    return bytes;
}

std::string text_of(unsigned size) {
    std::mt19937 random(1);
    std::string text;
    for (unsigned i = 0; i < size; ++i) {
        text += static_cast<char>(random() & 0xFF);
    }
    return text;
}

TEST(Deflation, HasNoFrame) {
    // One last block of fixed codes: 3 bits for that, 8 for "a", 7 for the end.
    EXPECT_EQ(deflated({""}), std::string({'\x03', '\x00'}));
    EXPECT_EQ(deflated({"a"}), std::string({'\x4B', '\x04', '\x00'}));
}

TEST(Deflation, IsTheSameHoweverTheBytesCome) {
    const std::string text = text_of(200'000);
    EXPECT_EQ(deflated({text.substr(0, 1), "", text.substr(1, 99'999), text.substr(100'000)}),
              deflated({text}));
}

TEST(Deflation, IsReadByInflation) {
    // Bytes that hardly get shorter, more of them than any buffer holds, and some that do. The frame of gzip
    // is a head of 10 bytes and an end of 8, which are missing here.
    const std::string text = text_of(300'000) + std::string(300'000, 'x');
    const std::string gzip = std::string("\x1F\x8B\x08\x00\x00\x00\x00\x00\x02\x03", 10) + deflated({text});
    std::string_view left = std::string_view(gzip).substr(1);
    const auto read = [&left](char* out, std::size_t size) {
        const std::size_t count = left.copy(out, size);
        left.remove_prefix(count);
        return count;
    };
    Gunzip source(read, gzip.substr(0, 1), "made");
    std::string found(text.size(), '\0');
    std::size_t size = 0;
    while (size < found.size()) {
        size += source.text(found.data() + size, found.size() - size);
    }
    EXPECT_EQ(found, text);
}

}  // namespace

}  // namespace korv::tools
