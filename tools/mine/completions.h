#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}  // namespace CLI

namespace korv::tools {

/// The shells that can complete the options of a program.
enum class Shell { bash, zsh };

/// The type of an option or a positional argument that is the name of a file, as --help shows it and as
/// completions tell it.
inline constexpr const char* file_type = "FILE";

/// Words that an option takes in a list with commas between them, or singly. Options whose check is a list of
/// words need none.
struct OptionWords {
    std::string option;  ///< its long name, such as "--sort"
    std::vector<std::string> words;
    bool is_list = false;  ///< whether the option takes several, with commas between them
};

/// The script that makes `shell` complete the options of `app` and their words, and names of files where the
/// type is file_type. Options that --help does not show are not completed.
std::string completions(const CLI::App& app, Shell shell, const std::vector<OptionWords>& words);

/// Adds --completions SHELL, which writes the script for a shell to standard output and ends the program.
/// `app` must not move until it has parsed the command line.
void add_completions_option(CLI::App& app, const std::vector<OptionWords>& words);

}  // namespace korv::tools
