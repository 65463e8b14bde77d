#include "rules/statistics.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <csignal>
#include <ctime>

#include "common/quantity.h"
#include "common/temporary_file.h"

namespace korv::tools {

namespace {

static_assert(std::atomic<std::uint64_t>::is_always_lock_free && std::atomic<double>::is_always_lock_free &&
                  std::atomic<Phase>::is_always_lock_free,
              "handlers of signals read the statistics");

/// Whether what the phase counts are pairs or triples of items, and no rules.
constexpr bool is_of_items(Phase phase) {
    return phase == Phase::counting_pairs || phase == Phase::counting_triples;
}

/// Whether standard error is a terminal, whose line of progress is cleared first.
std::atomic<bool> is_on_terminal = false;

/// Writes a line of statistics. Calls only what is safe in handlers of signals; getrusage, behind
/// peak_memory, is a plain system call.
void write_statistics() {
    const int error = errno;
    const StatisticsLine line(statistics(), monotonic_seconds() - statistics().start, peak_memory());
    constexpr std::string_view clear_line = "\r\x1B[K";
    constexpr std::string_view program = "korv-rules: ";
    std::array<char, 512> message;
    char* end = message.data();
    if (is_on_terminal) {
        end = std::ranges::copy(clear_line, end).out;
    }
    end = std::ranges::copy(program, end).out;
    end = std::ranges::copy(line.text(), end).out;
    *end++ = '\n';
    // In one piece, so that nothing else is written between.
    [[maybe_unused]] const ssize_t written =
        ::write(STDERR_FILENO, message.data(), static_cast<std::size_t>(end - message.data()));
    errno = error;
}

extern "C" void write_and_go_on(int /*signal*/) {
    write_statistics();
}

void write_before_the_end(int signal) {
    if (signal == SIGINT || signal == SIGTERM || signal == SIGHUP) {
        write_statistics();
    }
}

}  // namespace

Statistics& statistics() {
    static constinit Statistics all;
    return all;
}

double monotonic_seconds() {
    struct timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

StatisticsLine::StatisticsLine(const Statistics& statistics, double seconds, std::size_t mebibytes) {
    add(words_for(statistics.phase).name);
    if (statistics.pairs > 0) {
        add(", ");
        add(statistics.pairs);
        if (statistics.expected_pairs > 0) {
            add(" of about ");
            add(std::max(statistics.expected_pairs.load(), statistics.pairs.load()));
        }
        if (is_of_items(statistics.phase)) {
            add(", ");
        } else {
            add(" pairs, ");
            add(statistics.derived);
            add(" rules derived, ");
        }
        add(statistics.kept);
        add(" kept");
    }
    add("; ");
    add(static_cast<std::uint64_t>(std::max(std::round(seconds), 0.0)));
    add(" s, ");
    add(mebibytes);
    add(" MiB");
}

void StatisticsLine::add(std::string_view text) {
    const std::size_t fitting = std::min(text.size(), text_.size() - size_);
    std::ranges::copy(text.substr(0, fitting), text_.data() + size_);
    size_ += fitting;
}

/// Adds a number with a comma before each three digits.
void StatisticsLine::add(std::uint64_t number) {
    std::array<char, 20> digits;
    const auto* const last = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    const std::string_view text(digits.data(), last);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i > 0 && (text.size() - i) % 3 == 0) {
            add(",");
        }
        add(text.substr(i, 1));
    }
}

void print_statistics_on_signals() {
    statistics().start = monotonic_seconds();
    is_on_terminal = ::isatty(STDERR_FILENO) != 0;
    struct sigaction print = {};
    print.sa_handler = write_and_go_on;
    print.sa_flags = SA_RESTART;
    ::sigfillset(&print.sa_mask);
    ::sigaction(SIGUSR1, &print, nullptr);
    remove_temporary_files_on_signals(write_before_the_end);
}

void StatisticsDisplay::show() {
    const double seconds = monotonic_seconds() - statistics().start;
    if (line_.is_due(seconds)) {
        line_.show(StatisticsLine(statistics(), seconds, peak_memory()).text(), seconds);
    }
}

}  // namespace korv::tools
