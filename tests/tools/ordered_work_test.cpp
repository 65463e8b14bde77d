#include "common/ordered_work.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace korv::tools {
namespace {

using Squares = OrderedWork<std::size_t, std::size_t>;

/// The numbers from 0, so many.
class Numbers {
public:
    explicit Numbers(std::size_t count) : count_(count) {}

    std::optional<std::size_t> operator()() {
        return begun_ < count_ ? std::optional(begun_++) : std::nullopt;
    }

private:
    std::size_t count_;
    std::size_t begun_ = 0;
};

/// The same work in each thread.
template <typename Do>
std::function<Squares::Work()> worker(Do work) {
    return [work] { return work; };
}

TEST(OrderedWork, TakesResultsInTheOrderOfThePieces) {
    for (const std::size_t threads : {1U, 2U, 3U, 7U}) {
        std::vector<std::size_t> taken;
        Workers workers(threads);
        Squares::run(workers, {Numbers(1000), worker([](std::size_t number) { return number * number; }),
                               [&](std::size_t square) { taken.push_back(square); }});
        ASSERT_EQ(taken.size(), 1000U) << threads << " threads";
        for (std::size_t number = 0; number < taken.size(); ++number) {
            ASSERT_EQ(taken[number], number * number) << threads << " threads";
        }
    }
}

TEST(OrderedWork, OfNoPieceTakesNothing) {
    Workers workers(3);
    Squares::run(workers, {Numbers(0), worker([](std::size_t number) { return number; }),
                           [](std::size_t) { FAIL() << "something was taken"; }});
}

/// Waits until a number is reached. Another thread sees to that.
void wait_for(const std::atomic<std::size_t>& number, std::size_t least) {
    while (number < least) {
        std::this_thread::yield();
    }
}

TEST(OrderedWork, ThrowsWhatFailsFirstInTheOrderOfThePieces) {
    std::atomic<std::size_t> failed = 0;
    std::vector<std::size_t> taken;
    std::string said;
    Workers workers(2);
    // Piece 6 fails when 7 has failed, which does not wait.
    const auto work = [&](std::size_t number) -> std::size_t {
        if (number == 6) {
            wait_for(failed, 1);
        }
        if (number >= 6) {
            ++failed;
            throw std::runtime_error(std::to_string(number));
        }
        return number;
    };
    try {
        Squares::run(workers,
                     {Numbers(100), worker(work), [&](std::size_t number) { taken.push_back(number); }});
    } catch (const std::runtime_error& error) {
        said = error.what();
    }
    EXPECT_EQ(said, "6");
    EXPECT_EQ(taken, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5}));
}

TEST(OrderedWork, EndsWhereAStepFails) {
    const auto work = worker([](std::size_t number) { return number; });
    const auto fail = [](const char* what) { throw std::runtime_error(what); };
    Workers workers(3);
    const auto said = [&workers](const Squares::Steps& steps) -> std::string {
        try {
            Squares::run(workers, steps);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    };
    const auto no_more = [&fail]() -> std::optional<std::size_t> {
        fail("next");
        return std::nullopt;
    };
    EXPECT_EQ(said({no_more, work, [](std::size_t) {}}), "next");
    EXPECT_EQ(said({Numbers(100), [&fail]() -> Squares::Work { return fail("worker"), nullptr; },
                    [](std::size_t) {}}),
              "worker");
    EXPECT_EQ(said({Numbers(100), work, [&fail](std::size_t) { fail("take"); }}), "take");
}

TEST(OrderedWork, IsNotMoreThanSomePiecesAhead) {
    constexpr std::size_t threads = 2;
    constexpr std::size_t most = threads * Squares::pieces_for_each_thread;
    std::atomic<std::size_t> begun = 0;
    std::atomic<std::size_t> taken = 0;
    Numbers numbers(100);
    const auto next = [&] {
        EXPECT_LT(begun, taken + most);
        ++begun;
        return numbers();
    };
    // While the first piece waits, the other thread goes on as far as it may.
    const auto work = [&](std::size_t number) {
        if (number == 0) {
            wait_for(begun, most);
        }
        return number;
    };
    Workers workers(threads);
    Squares::run(workers, {next, worker(work), [&](std::size_t) { ++taken; }});
    EXPECT_EQ(taken, 100U);
}

}  // namespace
}  // namespace korv::tools
