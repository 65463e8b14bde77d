#include "common/quantity.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace korv::tools {
namespace {

TEST(WithCommas, PutsOneBeforeEachThreeDigits) {
    EXPECT_EQ(with_commas(0), "0");
    EXPECT_EQ(with_commas(999), "999");
    EXPECT_EQ(with_commas(1000), "1,000");
    EXPECT_EQ(with_commas(1234567), "1,234,567");
}

TEST(SizeText, TakesAFittingUnit) {
    EXPECT_EQ(size_text(0), "0 bytes");
    EXPECT_EQ(size_text(1), "1 byte");
    EXPECT_EQ(size_text(999), "999 bytes");
    EXPECT_EQ(size_text(1000), "1.0 kB");
    EXPECT_EQ(size_text(999'949), "999.9 kB");
    EXPECT_EQ(size_text(999'951), "1.0 MB");
    EXPECT_EQ(size_text(67'594'366), "67.6 MB");
    EXPECT_EQ(size_text(12'000'000'000'000'000), "12000.0 TB");
}

TEST(SecondsText, HasTwoDecimals) {
    EXPECT_EQ(seconds_text(1.234), "1.23 s");
    EXPECT_EQ(seconds_text(0), "0.00 s");
}

/// The most memory that this process has had so far, in whole MiB. The system gives KiB.
std::size_t mebibytes_of_this_process() {
    struct rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) / 1024;
}

TEST(PeakMemory, IsInMebibytes) {
    const std::size_t before = mebibytes_of_this_process();
    const std::size_t peak = peak_memory();
    EXPECT_GT(before, 0U);
    EXPECT_GE(peak, before);
    EXPECT_LE(peak, mebibytes_of_this_process());
}

}  // namespace
}  // namespace korv::tools
