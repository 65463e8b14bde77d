#include "mine/completions.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace korv::tools {
namespace {

/// A small program with an option of each kind.
class Completions : public testing::Test {
protected:
    Completions() {
        app_.add_option("INPUT", input_)->type_name(file_type);
        app_.add_flag("-q,--quiet", quiet_, "Says nothing [at all]: it's quiet");
        app_.add_option("-o,--output", input_, "The output")->type_name(file_type);
        app_.add_option("--to", input_, "The format")->check(CLI::IsMember({"csv", "tsv"}));
        app_.add_option("--names", input_, "Names")->take_all();
        app_.add_option("--hidden", input_, "Not for users")->group("");
    }

    std::string script(Shell shell) const {
        return completions(app_, shell, {{"--names", {"one", "two"}, true}});
    }

    CLI::App app_{"A small program", "a-program"};

private:
    std::vector<std::string> input_;
    bool quiet_ = false;
};

TEST_F(Completions, OfBashKnowTheValuesOfEachOption) {
    EXPECT_NE(script(Shell::bash)
                  .find("        -o | --output) _a_program_files ;;\n"
                        "        --to) _a_program_words 'csv tsv' ;;\n"
                        "        --names) _a_program_list 'one two' ;;\n"),
              std::string::npos);
}

TEST_F(Completions, OfBashOfferWhatHelpShows) {
    EXPECT_NE(script(Shell::bash).find("_a_program_words '-h --help -q --quiet -o --output --to --names'\n"),
              std::string::npos);
}

TEST_F(Completions, OfBashAreThoseOfTheProgram) {
    const std::string text = script(Shell::bash);
    EXPECT_TRUE(text.starts_with("# Completions of a-program for bash.\n"));
    EXPECT_TRUE(text.ends_with("\ncomplete -F _a_program a-program\n"));
}

TEST_F(Completions, OfZshDescribeEachOption) {
    EXPECT_EQ(script(Shell::zsh),
              "#compdef a-program\n"
              "# Completions of a-program for zsh.\n"
              "_arguments -s \\\n"
              "    '(-h --help)'{-h,--help}'[Print this help message and exit]' \\\n"
              "    '(-q --quiet)'{-q,--quiet}'[Says nothing \\[at all\\]\\: it'\\''s quiet]' \\\n"
              "    '(-o --output)'{-o+,--output=}'[The output]:file:_files' \\\n"
              "    --to='[The format]:value:(csv tsv)' \\\n"
              "    '*'--names='[Names]:words:_values -s , words one two' \\\n"
              "    '*:file:_files'\n");
}

}  // namespace
}  // namespace korv::tools
