#include "common/workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace korv::tools {
namespace {

constexpr std::size_t many = 1000;

/// Waits until a number is reached. Another thread sees to that.
void wait_for(const std::atomic<std::size_t>& number, std::size_t least) {
    while (number < least) {
        std::this_thread::yield();
    }
}

TEST(Workers, DoEachPartOnce) {
    for (const std::size_t threads : {1U, 2U, 3U, 7U}) {
        Workers workers(threads);
        for (const std::size_t parts : {std::size_t{0}, std::size_t{1}, many}) {
            std::vector<std::atomic<int>> times(parts);
            workers.run(parts, [&](std::size_t part) { ++times[part]; });
            for (const std::atomic<int>& each : times) {
                ASSERT_EQ(each, 1) << threads << " threads, " << parts << " parts";
            }
        }
    }
}

TEST(Workers, OfOneThreadDoOnePartAfterTheOther) {
    Workers workers(1);
    std::vector<std::size_t> done;
    workers.run(4, [&](std::size_t part) { done.push_back(part); });
    EXPECT_EQ(done, (std::vector<std::size_t>{0, 1, 2, 3}));
}

TEST(Workers, DoPartsAtTheSameTime) {
    Workers workers(3);
    EXPECT_EQ(workers.threads(), 3U);
    std::atomic<std::size_t> begun = 0;
    workers.run(3, [&](std::size_t) {
        ++begun;
        wait_for(begun, 3);
    });
    EXPECT_EQ(begun, 3U);
}

TEST(Workers, LeaveTheFirstPartToTheThreadThatCalls) {
    Workers workers(3);
    for (std::size_t round = 0; round < many; ++round) {
        workers.run(2, [here = std::this_thread::get_id()](std::size_t part) {
            if (part == 0) {
                ASSERT_EQ(std::this_thread::get_id(), here);
            }
        });
    }
}

TEST(Workers, DoThePartsOfAPart) {
    for (const std::size_t threads : {1U, 2U, 5U}) {
        Workers workers(threads);
        std::atomic<std::size_t> done = 0;
        workers.run(4, [&](std::size_t) {
            workers.run(3, [&](std::size_t) { workers.run(2, [&](std::size_t) { ++done; }); });
        });
        EXPECT_EQ(done, 4U * 3 * 2) << threads << " threads";
    }
}

TEST(Workers, HelpWithThePartsOfAPartWhenTheirOwnAreDone) {
    Workers workers(2);
    std::atomic<bool> has_other_ended = false;
    workers.run(2, [&](std::size_t part) {
        if (part == 1) {
            has_other_ended = true;
            return;
        }
        std::atomic<std::size_t> begun = 0;
        workers.run(2, [&](std::size_t) {
            ++begun;
            wait_for(begun, 2);
        });
        EXPECT_TRUE(has_other_ended);
    });
}

TEST(Workers, ThrowWhatTheFirstPartThrewThatFailed) {
    for (std::size_t round = 0; round < many; ++round) {
        Workers workers(3);
        std::atomic<std::size_t> failed = 0;
        std::atomic<std::size_t> begun = 0;
        std::string said;
        try {
            workers.run(many, [&](std::size_t part) {
                ++begun;
                if (part < 5) {
                    return;
                }
                if (part == 5) {
                    wait_for(failed, 1);
                }
                ++failed;
                throw std::runtime_error(std::to_string(part));
            });
        } catch (const std::runtime_error& error) {
            said = error.what();
        }
        ASSERT_EQ(said, "5");
        // Three are under way when the first two fail, and no more are begun.
        ASSERT_LE(begun, 5U + 3);
    }
}

TEST(Workers, GoOnAfterAFailure) {
    Workers workers(3);
    EXPECT_THROW(workers.run(many, [](std::size_t) { throw std::runtime_error("no"); }), std::runtime_error);
    std::atomic<std::size_t> done = 0;
    workers.run(many, [&](std::size_t) { ++done; });
    EXPECT_EQ(done, many);
}

TEST(Workers, LeaveSignalsToTheThreadThatMadeThem) {
    std::atomic<std::size_t> threads = 0;
    const std::thread::id here = std::this_thread::get_id();
    const auto is_held_back = [] {
        sigset_t held_back;
        ::pthread_sigmask(SIG_BLOCK, nullptr, &held_back);
        return ::sigismember(&held_back, SIGUSR1) != 0;
    };
    Workers workers(2);
    workers.run(2, [&](std::size_t) {
        EXPECT_EQ(is_held_back(), std::this_thread::get_id() != here);
        ++threads;
        wait_for(threads, 2);
    });
    EXPECT_EQ(threads, 2U);
    EXPECT_FALSE(is_held_back());
}

}  // namespace
}  // namespace korv::tools
