#include "mine_mpi/input_parts.h"

#include <gtest/gtest.h>

#include <ostream>

namespace korv::tools {

void PrintTo(const InputRange& range, std::ostream* out) {
    *out << range.input << " [" << range.begin << ", " << range.end << ")";
}

namespace {

using Ranges = std::vector<std::vector<InputRange>>;

constexpr InputFigures file(std::uint64_t size, std::uint64_t begin = 0) {
    return {.size = size, .begin = begin, .is_divisible = true};
}

TEST(Divided, CutsAFileIntoEqualParts) {
    EXPECT_EQ(divided({file(10)}, 2), (Ranges{{{0, 0, 5}}, {{0, 5, 10}}}));
    EXPECT_EQ(divided({file(10)}, 1), (Ranges{{{0, 0, 10}}}));
}

TEST(Divided, CutsFilesAsIfTheyWereOne) {
    EXPECT_EQ(divided({file(2), file(8)}, 2), (Ranges{{{0, 0, 2}, {1, 0, 3}}, {{1, 3, 8}}}));
}

TEST(Divided, LeavesOutByteOrderMarks) {
    EXPECT_EQ(divided({file(13, 3)}, 2), (Ranges{{{0, 3, 8}}, {{0, 8, 13}}}));
}

TEST(Divided, LeavesProcessesWithoutBytes) {
    EXPECT_EQ(divided({file(1)}, 3), (Ranges{{}, {}, {{0, 0, 1}}}));
}

TEST(Divided, GivesEachEmptyFileToOneProcess) {
    EXPECT_EQ(divided({file(0), file(4), file(0)}, 2),
              (Ranges{{{0, 0, 0}, {1, 0, 2}}, {{1, 2, 4}, {2, 0, 0}}}));
    EXPECT_EQ(divided({file(0)}, 2), (Ranges{{}, {{0, 0, 0}}}));
}

TEST(Divided, LeavesAFileWholeThatOneProcessMustRead) {
    const InputFigures compressed = {.size = 6};
    EXPECT_EQ(divided({compressed, file(4)}, 2), (Ranges{{{0, 0, 6}}, {{1, 0, 4}}}));
}

TEST(Divided, GivesStreamsAndWhatIsBeforeThemToTheFirstProcess) {
    const InputFigures stream = {.is_stream = true};
    EXPECT_EQ(divided({file(9), stream, file(4)}, 2),
              (Ranges{{{0, 0, 9}, {1, 0, 0}, {2, 0, 2}}, {{2, 2, 4}}}));
}

}  // namespace
}  // namespace korv::tools
