#include <mpi.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "common/error.h"
#include "common/standard_streams.h"
#include "common/temporary_file.h"
#include "mine_mpi/mining_in_parts.h"
#include "mine_mpi/mpi_arguments.h"
#include "mine_mpi/processes.h"

namespace {

using namespace korv::tools;
using CommandLine = std::variant<MpiArguments, CommandLineEnd>;

CommandLine command_line(int argc, char** argv) {
    try {
        return read_mpi_arguments(argc, argv);
    } catch (const Error& error) {
        return CommandLineEnd{1, "", std::string("korv-mine-mpi: ") + error.what() + "\n"};
    }
}

/// Whether a launcher has started this process: others may wait for it in MPI then, whatever it is asked.
bool is_launched() {
    constexpr std::array ranks = {"OMPI_COMM_WORLD_RANK", "PMIX_RANK", "PMI_RANK", "SLURM_PROCID"};
    return std::ranges::any_of(ranks, [](const char* rank) { return std::getenv(rank) != nullptr; });
}

std::string machine() {
    std::array<char, MPI_MAX_PROCESSOR_NAME> name = {};
    int size = 0;
    MPI_Get_processor_name(name.data(), &size);
    return {name.data(), static_cast<std::size_t>(size)};
}

/// Throws SharedError unless all processes are of the same version and have the same command line.
void require_same_start(Processes& processes, int argc, char** argv) {
    std::string words;
    for (const std::string_view word : std::vector<std::string_view>(argv + 1, argv + argc)) {
        words.append(word).push_back('\0');
    }
    std::string version = KORV_VERSION;
    std::string first_version = version;
    std::string first_words = words;
    processes.broadcast(first_version);
    processes.broadcast(first_words);
    processes.together([&] {
        const std::string who =
            "process " + std::to_string(processes.number()) + " (on " + machine() + "): found ";
        if (version != first_version) {
            throw Error(who + "version " + version + "; expected " + first_version + ", as in process 0");
        }
        if (words != first_words) {
            throw Error(who + "other arguments; expected those of process 0");
        }
    });
}

RunStatus run(Processes& processes, int argc, char** argv, const CommandLine& line,
              std::chrono::steady_clock::time_point start) {
    require_same_start(processes, argc, argv);
    if (const auto* const end = std::get_if<CommandLineEnd>(&line)) {
        if (processes.is_first()) {
            std::cout << end->out;
            std::cerr << end->err;
        }
        return static_cast<RunStatus>(end->status);
    }
    return mine_in_parts(processes, std::get<MpiArguments>(line), start);
}

/// Ends all processes, since this one cannot go on.
[[noreturn]] void end_all(const Processes& processes, const std::string& message) {
    say("process " + std::to_string(processes.number()) + ": " + message);
    MPI_Abort(MPI_COMM_WORLD, static_cast<int>(RunStatus::failed));
    std::abort();  // which is not reached
}

/// Runs between the beginning and the end of MPI. Returns the status of this process.
int run_in_mpi(int argc, char** argv, const CommandLine& line, std::chrono::steady_clock::time_point start) {
    remove_temporary_files_on_signals();
    Processes processes;
    RunStatus status = RunStatus::failed;
    try {
        status = run(processes, argc, argv, line, start);
    } catch (const SharedError& error) {
        if (processes.is_first()) {
            say(error.what());
        }
    } catch (const std::bad_alloc&) {
        end_all(processes, "out of memory");
    } catch (const std::exception& error) {
        end_all(processes, error.what());
    }
    // One status is enough for the launcher, which ends the others when it sees it.
    return processes.is_first() ? static_cast<int>(status) : 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const auto start = std::chrono::steady_clock::now();
        open_standard_streams();
        const CommandLine line = command_line(argc, argv);
        if (const auto* const end = std::get_if<CommandLineEnd>(&line); end != nullptr && !is_launched()) {
            std::cout << end->out;
            std::cerr << end->err;
            return end->status;
        }
        MPI_Init(&argc, &argv);
        const int status = run_in_mpi(argc, argv, line, start);
        MPI_Finalize();
        return status;
    } catch (const std::exception& error) {
        say(error.what());
        return static_cast<int>(RunStatus::failed);
    }
}
