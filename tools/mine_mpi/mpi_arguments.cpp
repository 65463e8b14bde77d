#include "mine_mpi/mpi_arguments.h"

#include <CLI/CLI.hpp>
#include <utility>

#include "mine/argument_check.h"
#include "mine/command_line.h"

namespace korv::tools {

std::variant<MpiArguments, CommandLineEnd> read_mpi_arguments(int argc, char** argv) {
    MpiArguments arguments;
    const auto add_options = [&arguments](CLI::App& app) {
        constexpr const char* group = "Going on after an interruption";
        CLI::Option* const checkpoint =
            app.add_option("--checkpoint", arguments.checkpoint,
                           "The directory that keeps what is found, so that another run can go on with it")
                ->check(argument_check(is_path, "the name of a directory"))
                ->excludes("--estimate")
                ->group(group);
        app.add_flag("--resume", arguments.resumes,
                     "Go on with the checkpoint of an earlier run, with any number of processes")
            ->needs(checkpoint)
            ->group(group);
    };
    auto line = read_command_line(
        argc, argv,
        {.name = "korv-mine-mpi",
         .description = "Makes a class file for korv as korv-mine does, by several processes, each of which "
                        "reads a part of the transactions: mpirun -n 4 korv-mine-mpi ...",
         .add_options = add_options});
    if (auto* const end = std::get_if<CommandLineEnd>(&line)) {
        return std::move(*end);
    }
    arguments.mining = std::get<Arguments>(std::move(line));
    return arguments;
}

}  // namespace korv::tools
