#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "common/printable.h"

namespace korv::tools {

/// A message of CLI11 in the form of all others. Its words are repeated as they were typed.
inline std::string complaint(const CLI::App* app, const CLI::Error& error) {
    return app->get_name() + ": " + printable(error.what()) + "; see " + app->get_name() + " --help\n";
}

/// Whether a text can be the path of a file.
inline bool is_path(const std::string& text) {
    return !text.empty();
}

}  // namespace korv::tools
