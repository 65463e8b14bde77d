#include "support/process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <csignal>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "support/files.h"

namespace korv::test {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// The result of a system call, unless that failed.
template <typename Result>
Result checked(Result result, const std::string& what) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

/// Whether all of `text` is a finite number.
bool is_number(const std::string& text) {
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stopped_at, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stopped_at == end && std::isfinite(number);
}

/// Waits until `from` has something to read or has come to its end. False when `deadline` comes before.
bool wait_readable(const Descriptor& from, steady_clock::time_point deadline) {
    pollfd polled = {.fd = from.number(), .events = POLLIN, .revents = 0};
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
        if (left.count() <= 0) {
            return false;
        }
        const int ready = poll(&polled, 1, static_cast<int>(left.count()));
        if (ready > 0) {
            return true;
        }
        if (ready < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "poll");
        }
    }
}

[[noreturn]] void fail_without(const std::string& end, const std::string& bytes) {
    throw std::runtime_error("\"" + end + "\" does not come; came so far:\n" + bytes);
}

/// The part of starting a program that runs in the new process. Only calls that are safe there.
[[noreturn]] void become(char* const* arguments, const char* directory, const std::array<int, 3>& streams,
                         int alive) {
    // The streams go to their places by way of high numbers, so that none is overwritten before it is moved.
    std::array<int, 3> copies{};
    for (std::size_t i = 0; i < streams.size(); ++i) {
        copies[i] = fcntl(streams[i], F_DUPFD_CLOEXEC, 10);
    }
    bool ready = chdir(directory) == 0 && fcntl(alive, F_SETFD, 0) == 0;
    for (std::size_t i = 0; i < copies.size(); ++i) {
        ready = ready && dup2(copies[i], static_cast<int>(i)) >= 0;
    }
    std::signal(SIGPIPE, SIG_DFL);
    if (ready) {
        execv(arguments[0], arguments);
    }
    _exit(127);
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    close();
    number_ = std::exchange(other.number_, -1);
    return *this;
}

void Descriptor::close() {
    if (number_ >= 0) {
        ::close(std::exchange(number_, -1));
    }
}

Descriptor open_file(const std::filesystem::path& path, int flags) {
    return Descriptor(checked(open(path.c_str(), flags | O_CLOEXEC, 0666), "open " + path.string()));
}

Channel make_pipe() {
    std::array<int, 2> ends{};
    checked(pipe2(ends.data(), O_CLOEXEC), "pipe");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

Channel make_packet_channel() {
    std::array<int, 2> ends{};
    checked(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()), "socketpair");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

void write_all(const Descriptor& to, const std::string& bytes) {
    for (std::size_t written = 0; written < bytes.size();) {
        written += static_cast<std::size_t>(
            checked(write(to.number(), bytes.data() + written, bytes.size() - written), "write"));
    }
}

std::string read_some(const Descriptor& from) {
    if (!wait_readable(from, steady_clock::now() + time_limit)) {
        throw std::runtime_error("nothing to read within the time limit");
    }
    std::array<char, 65536> buffer{};
    const ssize_t size = checked(read(from.number(), buffer.data(), buffer.size()), "read");
    return {buffer.data(), static_cast<std::size_t>(size)};
}

std::string read_to_end(const Descriptor& from) {
    std::string bytes;
    for (std::string more = read_some(from); !more.empty(); more = read_some(from)) {
        bytes += more;
    }
    return bytes;
}

std::string read_until(const Descriptor& from, const std::string& end) {
    std::string bytes;
    while (!bytes.ends_with(end)) {
        char next = 0;
        if (!wait_readable(from, steady_clock::now() + time_limit) ||
            checked(read(from.number(), &next, 1), "read") == 0) {
            fail_without(end, bytes);
        }
        bytes += next;
    }
    return bytes;
}

std::ostream& operator<<(std::ostream& out, const Ending& ending) {
    if (ending.timed_out) {
        return out << "killed at the time limit";
    }
    if (ending.signal != 0) {
        return out << "ended by signal " << ending.signal;
    }
    return out << "exit status " << ending.status;
}

Process::Process(const Command& command, const Descriptor& in, const Descriptor& out, const Descriptor& err)
    : alive_(make_pipe()) {
    std::string program = command.program.string();
    std::vector<std::string> arguments = command.arguments;
    std::vector<char*> vector = {program.data()};
    for (std::string& argument : arguments) {
        vector.push_back(argument.data());
    }
    vector.push_back(nullptr);
    id_ = checked(fork(), "fork");
    if (id_ == 0) {
        become(vector.data(), command.directory.c_str(), {in.number(), out.number(), err.number()},
               alive_.write.number());
    }
    alive_.write.close();
}

Process::~Process() {
    if (id_ > 0) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
}

Ending Process::wait() {
    // The process holds the only other end of the channel, so its end is the end of the process.
    const bool timed_out = !wait_readable(alive_.read, steady_clock::now() + time_limit);
    if (timed_out) {
        kill(id_, SIGKILL);
    }
    int state = 0;
    checked(waitpid(id_, &state, 0), "waitpid");
    id_ = -1;
    if (timed_out) {
        return {.timed_out = true};
    }
    return WIFEXITED(state) ? exited(WEXITSTATUS(state)) : ended_by_signal(WTERMSIG(state));
}

Outcome run(const Command& command) {
    const TemporaryDirectory streams;
    const auto out = streams.path() / "stdout";
    const auto err = streams.path() / "stderr";
    Process process(command, open_file("/dev/null", O_RDONLY), open_file(out, O_WRONLY | O_CREAT),
                    open_file(err, O_WRONLY | O_CREAT));
    const Ending ending = process.wait();
    return {ending, read_file(out), read_file(err)};
}

Files read_files(const std::filesystem::path& directory) {
    Files files;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        if (entry.is_regular_file()) {
            files[entry.path().filename()] = read_file(entry.path());
        }
    }
    return files;
}

std::string mask_timings(const std::string& console) {
    std::istringstream lines(console);
    std::string masked;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t seconds = line.find("= ") + 2;
        if (line.starts_with("Time spent by ") && is_number(line.substr(seconds))) {
            line.resize(seconds);
            line += '*';
        }
        masked += line;
        masked += lines.eof() ? "" : "\n";
    }
    return masked;
}

}  // namespace korv::test
