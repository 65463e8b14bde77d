#include "rules/watched_input.h"

#include <gtest/gtest.h>

#include "rules/statistics.h"
#include "support/files.h"
#include "tools/complaint.h"

namespace korv::tools {

namespace {

/// Two items, each in two of three transactions.
class WatchedInputTest : public testing::Test {
protected:
    WatchedInputTest() {
        const auto path = directory_.path() / "a.dat";
        test::write_file(path, "1 2\n1\n2\n");
        request_.paths = {path.string()};
        request_.mining.min_supports = {{1, false}};
    }
    ~WatchedInputTest() override { statistics().phase = Phase::reading; }

    test::TemporaryDirectory directory_;
    InputRequest request_;
};

TEST_F(WatchedInputTest, IsReadAndMinedAndLeavesThePhaseInTheStatistics) {
    EXPECT_EQ(read_watched_input(open_input(request_), request_, true).classes.size(), 3U);
    EXPECT_EQ(statistics().phase, Phase::mining);
}

TEST_F(WatchedInputTest, EndsWhenItsTimeIsOverAndSaysWhatHelps) {
    request_.mining.max_seconds = 0;
    EXPECT_TRUE(complaint_of([&] {
                    read_watched_input(open_input(request_), request_, true);
                }).starts_with("stopped after 0.00 s (--max-seconds), with "));
}

}  // namespace

}  // namespace korv::tools
