#include "mine/completions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "common/shell_word.h"

namespace korv::tools {

namespace {

constexpr std::array<std::pair<const char*, Shell>, 2> shells = {
    {{"bash", Shell::bash}, {"zsh", Shell::zsh}}};

/// What a shell needs to know of an option.
struct Completed {
    std::vector<std::string> names;  ///< as they are typed, short ones first
    std::string description;
    std::vector<std::string> words;  ///< that its value can be; empty where there is no list of them
    bool takes_value = false;
    bool is_file = false;
    bool is_list = false;  ///< whether its value is words with commas between them
    bool is_repeated = false;
};

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
    std::string text;
    for (const std::string& word : words) {
        text += text.empty() ? word : std::string(separator) + word;
    }
    return text;
}

/// The text with a backslash before each of these characters.
std::string escaped(std::string_view text, std::string_view characters) {
    std::string result;
    for (const char character : text) {
        if (characters.find(character) != std::string_view::npos) {
            result += '\\';
        }
        result += character;
    }
    return result;
}

/// The words of a type such as TEXT:{csv,tsv}; none for another type.
std::vector<std::string> words_of_type(const std::string& type) {
    const std::size_t begin = type.find('{');
    const std::size_t end = type.rfind('}');
    return begin == std::string::npos || end == std::string::npos
               ? std::vector<std::string>()
               : CLI::detail::split(type.substr(begin + 1, end - begin - 1), ',');
}

Completed completed(const CLI::Option& option, const std::vector<OptionWords>& words) {
    Completed result;
    for (const std::string& name : option.get_snames()) {
        result.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        result.names.push_back("--" + name);
    }
    result.description = option.get_description();
    result.takes_value = option.get_items_expected_max() > 0;
    result.words = words_of_type(option.get_type_name());
    result.is_file = option.get_type_name() == file_type;
    result.is_repeated = option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    const auto given = std::ranges::find(words, result.names.back(), &OptionWords::option);
    if (given != words.end()) {
        result.words = given->words;
        result.is_list = given->is_list;
    }
    return result;
}

std::vector<Completed> completed_options(const CLI::App& app, const std::vector<OptionWords>& words) {
    std::vector<Completed> options;
    for (const CLI::Option* option : app.get_options()) {
        const bool is_shown = !option->get_positional() && !option->get_group().empty();
        if (is_shown) {
            options.push_back(completed(*option, words));
        }
    }
    return options;
}

/// What bash does for the value of an option.
std::string bash_value(const Completed& option) {
    if (option.is_file) {
        return "_files";
    }
    const std::string words = option.words.empty() ? "" : " " + shell_word(joined(option.words, " "));
    return (option.is_list ? "_list" : "_words") + words;
}

/// The branches of a case by option, those of options with the same values in one.
std::string bash_branches(const std::vector<Completed>& options, const std::string& function) {
    std::vector<std::pair<std::string, std::vector<std::string>>> names_by_value;
    for (const Completed& option : options) {
        if (!option.takes_value) {
            continue;
        }
        const std::string value = bash_value(option);
        auto found = std::ranges::find(names_by_value, value, &decltype(names_by_value)::value_type::first);
        if (found == names_by_value.end()) {
            found = names_by_value.insert(found, {value, {}});
        }
        found->second.insert(found->second.end(), option.names.begin(), option.names.end());
    }
    std::string branches;
    for (const auto& [value, names] : names_by_value) {
        branches.append("        ").append(joined(names, " | ")).append(") ");
        branches.append(function).append(value).append(" ;;\n");
    }
    return branches;
}

/// FUNCTION_files, _words and _list complete `current` by names of files, by a word of their argument, and by
/// several with commas between them. FUNCTION looks at where it stands.
constexpr std::string_view bash_script = R"(# Completions of PROGRAM for bash.
FUNCTION_files() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
}
FUNCTION_words() {
    mapfile -t COMPREPLY < <(compgen -W "${1-}" -- "$current")
}
FUNCTION_list() {
    local before=
    [[ $current != *,* ]] || before=${current%,*},
    mapfile -t COMPREPLY < <(compgen -P "$before" -W "$1" -- "${current##*,}")
}
FUNCTION() {
    local current=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]}
    # --option=value comes as three words.
    if [[ $current == = ]]; then
        current=
    elif [[ $option == = ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    case $option in
BRANCHES        *)
            if [[ $current == -* ]]; then
                FUNCTION_words OPTIONS
            else
                FUNCTION_files
            fi
            ;;
    esac
}
complete -F FUNCTION PROGRAM
)";

std::string for_bash(const CLI::App& app, const std::vector<Completed>& options) {
    std::vector<std::string> names;
    for (const Completed& option : options) {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    std::string function = "_" + app.get_name();
    std::ranges::replace(function, '-', '_');
    std::string script(bash_script);
    script = CLI::detail::find_and_replace(script, "PROGRAM", app.get_name());
    script = CLI::detail::find_and_replace(script, "OPTIONS", shell_word(joined(names, " ")));
    script = CLI::detail::find_and_replace(script, "BRANCHES", bash_branches(options, function));
    return CLI::detail::find_and_replace(script, "FUNCTION", function);
}

/// What zsh does for the value of an option.
std::string zsh_value(const Completed& option) {
    if (!option.takes_value) {
        return "";
    }
    if (option.is_file) {
        return ":file:_files";
    }
    const std::string words = joined(option.words, " ");
    if (option.is_list) {
        return ":words:_values -s , words " + words;
    }
    return words.empty() ? ":value: " : ":value:(" + words + ")";
}

/// An option as _arguments reads it. One that stands once is not offered again.
std::string zsh_line(const Completed& option) {
    const std::string text = "[" + escaped(option.description, R"([]:\)") + "]" + zsh_value(option);
    std::string line = "    ";
    if (option.is_repeated) {
        line += shell_word("*");
    } else if (option.names.size() > 1) {
        line += shell_word("(" + joined(option.names, " ") + ")");
    }
    std::vector<std::string> names = option.names;
    if (option.takes_value) {
        // So that the value may follow in the same word, too: -s2, --top=3.
        std::ranges::for_each(names, [](std::string& name) { name += name.starts_with("--") ? "=" : "+"; });
    }
    line += names.size() > 1 ? "{" + joined(names, ",") + "}" : names.front();
    return line + shell_word(text) + " \\\n";
}

std::string for_zsh(const CLI::App& app, const std::vector<Completed>& options) {
    std::string text = "#compdef " + app.get_name() + "\n# Completions of " + app.get_name() +
                       " for zsh.\n_arguments -s \\\n";
    for (const Completed& option : options) {
        text += zsh_line(option);
    }
    return text + "    '*:file:_files'\n";
}

}  // namespace

std::string completions(const CLI::App& app, Shell shell, const std::vector<OptionWords>& words) {
    const std::vector<Completed> options = completed_options(app, words);
    return shell == Shell::bash ? for_bash(app, options) : for_zsh(app, options);
}

void add_completions_option(CLI::App& app, const std::vector<OptionWords>& words) {
    std::vector<std::string> names;
    std::ranges::transform(shells, std::back_inserter(names), [](const auto& each) { return each.first; });
    const auto write = [&app, words](const std::string& name) {
        const auto* const found =
            std::ranges::find(shells, name, [](const auto& each) { return std::string(each.first); });
        std::cout << completions(app, found->second, words);
        std::exit(0);
    };
    app.add_option_function<std::string>("--completions", write,
                                         "Write what makes a shell complete these options, and exit")
        ->check(CLI::IsMember(names));
}

}  // namespace korv::tools
