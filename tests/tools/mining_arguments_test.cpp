#include "mine/mining_arguments.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <algorithm>

namespace korv::tools {
namespace {

/// What the words of a command line say. Throws as CLI11 does for wrong ones.
MiningRequest request_of(std::vector<std::string> words) {
    CLI::App app;
    MiningWords typed;
    add_mining_options(app, typed);
    std::ranges::reverse(words);  // as CLI11 takes them
    app.parse(words);
    return mining_request(app, typed);
}

TEST(MiningArguments, AreNotNeeded) {
    const MiningRequest request = request_of({});
    EXPECT_TRUE(request.min_supports.empty());
    EXPECT_EQ(request.min_joint, std::nullopt);
    EXPECT_EQ(request.min_own, std::nullopt);
    EXPECT_EQ(request.max_size, std::nullopt);
    EXPECT_EQ(request.max_classes, std::nullopt);
    EXPECT_EQ(request.max_seconds, std::nullopt);
    EXPECT_FALSE(request.closure_over_all);
}

TEST(MiningArguments, AreThresholdsAndLimits) {
    const MiningRequest request =
        request_of({"-s", "2.5%", "--min-joint", "0", "--min-own", "1%", "--max-size", "3", "--closure-items",
                    "all", "--max-classes", "1000", "--max-seconds", "1.5"});
    EXPECT_EQ(request.min_supports, (std::vector<Threshold>{{2.5, true}}));
    EXPECT_EQ(request.min_joint, (Threshold{0, false}));
    EXPECT_EQ(request.min_own, (Threshold{1, true}));
    EXPECT_EQ(request.max_size, 3U);
    EXPECT_EQ(request.max_classes, 1000U);
    EXPECT_EQ(request.max_seconds, 1.5);
    EXPECT_TRUE(request.closure_over_all);
}

TEST(MiningArguments, AreDecimalNumbers) {
    EXPECT_EQ(request_of({"--max-size", "010"}).max_size, 10U);
    EXPECT_EQ(request_of({"--max-classes", "010"}).max_classes, 10U);
}

TEST(MiningArguments, MayBeSeveralMinimumSupports) {
    EXPECT_EQ(request_of({"-s", "5%,20"}).min_supports, (std::vector<Threshold>{{5, true}, {20, false}}));
}

TEST(MiningArguments, AreChecked) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"-s", "x"},
                                                  {"-s", ""},
                                                  {"--min-joint", "1,2"},
                                                  {"--min-own", "-1"},
                                                  {"--max-size", "0"},
                                                  {"--max-size", "0x2"},
                                                  {"--max-size", "1_0"},
                                                  {"--max-classes", "0"},
                                                  {"--max-classes", "4294967295"},
                                                  {"--max-seconds", "-1"},
                                                  {"--max-seconds", "nan"},
                                                  {"--max-seconds", "inf"},
                                                  {"--max-seconds", "1s"},
                                                  {"--closure-items", "some"}}) {
        EXPECT_THROW(request_of(words), CLI::ValidationError) << words[0] << ' ' << words[1];
    }
}

}  // namespace
}  // namespace korv::tools
