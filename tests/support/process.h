#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace korv::test {

/// How long a program may take for one of the small inputs of the tests. Longer is a hang.
inline constexpr std::chrono::milliseconds time_limit = std::chrono::seconds(60);

/// An open file descriptor, closed at the end of the scope. Programs that are started do not inherit it.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return number_; }
    void close();

private:
    int number_;
};

/// Opens a file with the flags of open(2). Throws std::system_error when that fails, like all functions here.
Descriptor open_file(const std::filesystem::path& path, int flags);

/// Two connected descriptors: what is written to `write` is read from `read`.
struct Channel {
    Descriptor read;
    Descriptor write;
};

Channel make_pipe();

/// A channel that keeps apart what was written apart: one read gives what one write wrote.
Channel make_packet_channel();

void write_all(const Descriptor& to, const std::string& bytes);

/// One read: what is there, or what arrives next. Empty at the end.
std::string read_some(const Descriptor& from);

std::string read_to_end(const Descriptor& from);

/// Reads until what arrived ends with `end`, and returns it all. Throws when the end of the channel or the
/// time limit comes before.
std::string read_until(const Descriptor& from, const std::string& end);

/// A program with its arguments, started without a shell.
struct Command {
    std::filesystem::path program;
    std::vector<std::string> arguments;
    std::filesystem::path directory;  ///< where it runs
};

/// How a process ended.
struct Ending {
    bool timed_out = false;  ///< it was killed at the time limit
    int status = -1;         ///< exit status, -1 for one ended by a signal
    int signal = 0;          ///< the signal that ended it, or 0

    bool operator==(const Ending&) const = default;
};

inline Ending exited(int status) {
    return {.status = status};
}

inline Ending ended_by_signal(int signal) {
    return {.signal = signal};
}

std::ostream& operator<<(std::ostream& out, const Ending& ending);

/// A running program. Killed at the end of the scope if it still runs then.
class Process {
public:
    /// Starts `command` with these descriptors as its standard streams. No other descriptor is left open to
    /// it but one of its own, which tells when it ends.
    Process(const Command& command, const Descriptor& in, const Descriptor& out, const Descriptor& err);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Waits for the end; kills the program at the time limit. To be called once.
    Ending wait();

private:
    Channel alive_;
    pid_t id_ = -1;
};

/// What a program left on its standard streams, and how it ended.
struct Outcome {
    Ending ending;
    std::string out;
    std::string err;
};

/// Runs a program to its end with nothing on its standard input.
Outcome run(const Command& command);

/// The bytes of files by name.
using Files = std::map<std::string, std::string>;

/// The files in a directory; all that is no regular file left out.
Files read_files(const std::filesystem::path& directory);

/// The console output of a run with * for the seconds of the three timing lines, where they are numbers.
std::string mask_timings(const std::string& console);

}  // namespace korv::test
