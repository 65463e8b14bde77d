#include "common/gzip.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <random>

#include "tools/complaint.h"

namespace korv::tools {
namespace {

std::string compressed(std::string text) {
    z_stream stream = {};
    const int gzip = 16;
    EXPECT_EQ(
        deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, MAX_WBITS + gzip, 8, Z_DEFAULT_STRATEGY),
        Z_OK);
    std::string bytes(deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(text.data());
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    bytes.resize(stream.total_out);
    deflateEnd(&stream);
    return bytes;
}

/// What bytes are decompressed to when they come in portions.
std::string text_of(std::string bytes, std::size_t portion = 1 << 20) {
    const std::string beginning = bytes.substr(0, 2);
    bytes.erase(0, 2);
    return gunzip(
        [&bytes, portion](char* out, std::size_t size) {
            const std::size_t count = std::min({size, portion, bytes.size()});
            std::copy_n(bytes.begin(), count, out);
            bytes.erase(0, count);
            return count;
        },
        beginning, "a.gz");
}

std::string complaint(const std::string& bytes) {
    return complaint_of([&] { text_of(bytes); });
}

/// Letters that hardly can be compressed.
std::string random_text(std::size_t size) {
    std::mt19937 random(3);
    std::string text(size, ' ');
    std::ranges::generate(text, [&random] { return static_cast<char>('a' + random() % 26); });
    return text;
}

TEST(Gunzip, GivesTheText) {
    EXPECT_EQ(text_of(compressed("1 2\n3\n")), "1 2\n3\n");
    EXPECT_EQ(text_of(compressed("")), "");
}

TEST(Gunzip, TakesLargeTextsInAnyPortions) {
    const std::string random = random_text(1'000'000);
    EXPECT_TRUE(text_of(compressed(random), 99'999) == random);
    std::string long_one;
    long_one.resize(70'000'000, 'x');
    EXPECT_TRUE(text_of(compressed(long_one)) == long_one);
    EXPECT_EQ(text_of(compressed("1 2\n"), 1), "1 2\n");
}

TEST(Gunzip, TakesSeveralMembers) {
    const std::string members = compressed("1 2\n") + compressed("") + compressed("3\n");
    EXPECT_EQ(text_of(members), "1 2\n3\n");
    EXPECT_EQ(text_of(members, 1), "1 2\n3\n");
}

TEST(Gunzip, ReportsATruncatedInputWhereverItEnds) {
    const std::string whole = compressed("1 2\n3 4\n");
    for (std::size_t size = 2; size < whole.size(); ++size) {
        EXPECT_EQ(complaint(whole.substr(0, size)),
                  "a.gz: ends in the middle of its compressed data; expected a whole gzip file")
            << size;
    }
}

TEST(Gunzip, ReportsASecondMemberThatIsTruncated) {
    const std::string one = compressed("1 2\n");
    EXPECT_EQ(complaint(one + one.substr(0, 15)),
              "a.gz: ends in the middle of its compressed data; expected a whole gzip file");
}

TEST(Gunzip, ReportsDamagedBytes) {
    const std::string whole = compressed(random_text(1000));
    for (const std::size_t place : {whole.size() / 2, whole.size() - 8, whole.size() - 1}) {
        std::string damaged = whole;
        damaged[place] = static_cast<char>(damaged[place] ^ 1);
        EXPECT_EQ(complaint(damaged), "a.gz: its compressed data is damaged; expected a gzip file") << place;
    }
}

TEST(Gunzip, ReportsWhatFollowsTheLastMember) {
    EXPECT_EQ(complaint(compressed("1 2\n") + "more"),
              "a.gz: its compressed data is damaged; expected a gzip file");
}

}  // namespace
}  // namespace korv::tools
