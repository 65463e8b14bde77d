#include "io/Output_Manager.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <numeric>
#include <string>
#include <type_traits>

#include "support/files.h"

namespace korv {
namespace {

using test::read_file;
using test::TemporaryDirectory;
using test::write_file;

class OutputManager : public ::testing::Test {
protected:
    /// What is in the file after `write` wrote to it and the output was destroyed.
    template <typename Write>
    std::string written_by(Write write) {
        {
            Output_Manager out(path());
            write(out);
        }
        return read_file(path());
    }

    std::string basket(const Itemset& itemset) {
        return written_by([&](Output_Manager& out) { out.write_out_basket(itemset); });
    }

    std::string path() const { return (directory_.path() / "out.txt").string(); }
    std::string path_in_missing_directory() const {
        return (directory_.path() / "missing" / "out.txt").string();
    }

private:
    TemporaryDirectory directory_;
};

TEST_F(OutputManager, CreatesAnEmptyFile) {
    const Output_Manager out(path());
    EXPECT_TRUE(out.is_open());
    EXPECT_EQ(read_file(path()), "");
}

TEST_F(OutputManager, EmptiesAnExistingFileAtConstruction) {
    write_file(path(), "of an earlier run\n");
    const Output_Manager out(path());
    EXPECT_EQ(read_file(path()), "");
}

TEST_F(OutputManager, WritesEachItemFollowedByABlank) {
    EXPECT_EQ(basket({2, 5, 11}), "2 5 11 ");
}

TEST_F(OutputManager, WritesASingleItemFollowedByABlank) {
    EXPECT_EQ(basket({7}), "7 ");
}

TEST_F(OutputManager, WritesNothingForTheEmptyItemset) {
    EXPECT_EQ(basket({}), "");
}

TEST_F(OutputManager, WritesItemsInTheirStoredOrder) {
    EXPECT_EQ(basket({5, 2, 5}), "5 2 5 ");
}

TEST_F(OutputManager, WritesItemsAsUnsignedNumbers) {
    EXPECT_EQ(basket({0, 4294967295U}), "0 4294967295 ");
}

TEST_F(OutputManager, WritesItemsOfSevenAndMoreDigitsAmongShorterOnes) {
    EXPECT_EQ(basket({9, 999999, 1000000, 12345678}), "9 999999 1000000 12345678 ");
}

TEST_F(OutputManager, WritesAnItemTheSecondTimeAsTheFirstTime) {
    EXPECT_EQ(written_by([](Output_Manager& out) {
                  out.write_out_basket({3, 20, 1000001});
                  out.write_out_basket({1, 3, 20, 1000001});
              }),
              "3 20 1000001 1 3 20 1000001 ");
}

TEST_F(OutputManager, WritesBasketsOfAllSizesAroundThatOfTheBuffer) {
    for (const std::size_t size : {5956U, 5957U, 5958U, 10'000U}) {
        Itemset itemset(size);
        std::iota(itemset.begin(), itemset.end(), 4'000'000'000U);
        std::string expected = "x";
        for (const Item item : itemset) {
            expected += std::to_string(item) + ' ';
        }
        EXPECT_TRUE(written_by([&](Output_Manager& out) {
                        out.put("x");
                        out.write_out_basket(itemset);
                        out.write_out_basket({7});
                    }) == expected + "7 ")
            << size << " items";
    }
}

TEST_F(OutputManager, BasketsFollowEachOtherWithoutALineEnd) {
    EXPECT_EQ(written_by([](Output_Manager& out) {
                  out.write_out_basket({1, 2});
                  out.write_out_basket({3});
              }),
              "1 2 3 ");
}

TEST_F(OutputManager, WritesCountsInDecimal) {
    EXPECT_EQ(written_by([](Output_Manager& out) { out << Count{4294967295U} << '\n'; }), "4294967295\n");
}

TEST_F(OutputManager, WritesDoublesWithSixSignificantDigits) {
    EXPECT_EQ(written_by([](Output_Manager& out) {
                  out << 1.0 / 3.0 << ' ' << 0.5 << ' ' << 1.0 << ' ' << 1234567.0 << ' ' << 0.00001 << ' '
                      << std::numeric_limits<double>::infinity();
              }),
              "0.333333 0.5 1 1.23457e+06 1e-05 inf");
}

TEST_F(OutputManager, KeepsTheOrderOfTextLargerThanAnyBuffer) {
    constexpr Item lines = 300'000;
    std::string expected;
    const std::string actual = written_by([&](Output_Manager& out) {
        for (Item i = 0; i < lines; ++i) {
            out.write_out_basket({i, i + 1});
            out << "v\n";
            expected += std::to_string(i) + ' ' + std::to_string(i + 1) + " v\n";
        }
    });
    EXPECT_TRUE(actual == expected);
}

TEST_F(OutputManager, KeepsTheOrderOfLongAndShortTexts) {
    const std::string longer_than_the_buffer(200'000, 'x');
    EXPECT_TRUE(written_by([&](Output_Manager& out) {
                    out.put("1 ").put(longer_than_the_buffer).put(Count{2}) << " 3 ";
                    out.put(longer_than_the_buffer).put(0.5);
                }) == "1 " + longer_than_the_buffer + "2 3 " + longer_than_the_buffer + "0.5");
}

TEST_F(OutputManager, WritesNothingMoreOnceTheDiskIsFull) {
    Output_Manager out("/dev/full");
    ASSERT_TRUE(out.is_open());
    out.put("kept in the buffer");
    EXPECT_FALSE(out.bad());
    out.put(std::string(200'000, 'x'));
    EXPECT_TRUE(out.bad());
    out.clear();
    out.put("not even into the buffer");
    EXPECT_TRUE(out.bad());
}

TEST_F(OutputManager, FlushBringsAllTextToDisk) {
    Output_Manager out(path());
    out << "first\n" << std::flush;
    EXPECT_EQ(read_file(path()), "first\n");
}

TEST_F(OutputManager, IsWholeOnDiskWhenDestroyedAsAStream) {
    {
        const std::unique_ptr<std::ofstream> out = std::make_unique<Output_Manager>(path());
        *out << "last\n";
    }
    EXPECT_EQ(read_file(path()), "last\n");
}

TEST_F(OutputManager, AFileThatCannotBeCreatedIsNotReported) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const Output_Manager out(path_in_missing_directory());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(out.fail());
}

TEST_F(OutputManager, TextForAFileThatCannotBeCreatedIsLost) {
    {
        Output_Manager out(path_in_missing_directory());
        out << "lost\n";
        out.write_out_basket({1});
        EXPECT_TRUE(out.fail());
    }
    EXPECT_FALSE(std::filesystem::exists(path_in_missing_directory()));
}

/// Keeps files below a size, in its scope or until it is lifted.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : ignored_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit = {bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        lift();
        std::signal(SIGXFSZ, ignored_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    void lift() const { setrlimit(RLIMIT_FSIZE, &before_); }

private:
    rlimit before_ = {};
    void (*ignored_)(int);
};

TEST_F(OutputManager, WritesNothingMoreOnceABasketCouldNotBeWritten) {
    const Itemset of_2000_bytes(1000, 7);
    {
        FileSizeLimit limit(100'000);
        Output_Manager out(path());
        for (int i = 0; i < 100; ++i) {
            out.write_out_basket(of_2000_bytes);
        }
        limit.lift();
        for (int i = 0; i < 100; ++i) {
            out.write_out_basket(of_2000_bytes);
        }
        EXPECT_FALSE(out.flush());
    }
    EXPECT_EQ(std::filesystem::file_size(path()), 100'000U);
}

TEST_F(OutputManager, WritesNothingMoreOnceAFlushFailed) {
    {
        FileSizeLimit limit(10);
        Output_Manager out(path());
        out.put("0123456789abcdef").flush();
        limit.lift();
        out.clear();
        out.put("after").flush();
        EXPECT_FALSE(out);
    }
    EXPECT_EQ(test::read_file(path()), "0123456789");
}

TEST(OutputManagerType, IsNeverCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Output_Manager>);
    EXPECT_FALSE(std::is_copy_assignable_v<Output_Manager>);
}

}  // namespace
}  // namespace korv
