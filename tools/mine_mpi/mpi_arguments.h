#pragma once

#include <string>
#include <variant>

#include "mine/arguments.h"

namespace korv::tools {

/// What the command line of korv-mine-mpi asks for.
struct MpiArguments {
    Arguments mining;
    std::string checkpoint = {};  ///< path of a directory; empty for none
    bool resumes = false;         ///< whether to go on with the checkpoint that is there
};

/// Reads the command line, or says how the program ends. Throws Error for options that contradict each other.
std::variant<MpiArguments, CommandLineEnd> read_mpi_arguments(int argc, char** argv);

}  // namespace korv::tools
