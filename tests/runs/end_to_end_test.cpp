// Runs the program on every folder of tests/cases. A case NAME is described by
//
//   NAME/arguments  the arguments, one a line; @CLASSES@ stands for the path of the class file
//   NAME/classes    the class file; may be missing
//   NAME/stdout     standard output, with * for the seconds of the three timing lines
//   NAME/stderr     standard error; missing: nothing
//   NAME/status     exit status; missing: 0
//   NAME/files/     all files that the run leaves in the directory where it runs; missing: none

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "engine/rule_catalogue.h"
#include "support/files.h"
#include "support/process.h"

namespace korv::test {
namespace {

namespace fs = std::filesystem;

/// All that can be seen of a run.
struct Observed {
    Files files;  ///< with the standard streams among them, as stdout and stderr
    Ending ending;
};

struct Case {
    std::vector<std::string> arguments;
    Observed expected;
};

std::vector<std::string> case_names() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(KORV_CASES_DIR)) {
        if (entry.is_directory()) {
            names.push_back(entry.path().filename());
        }
    }
    std::ranges::sort(names);
    return names;
}

/// The lines, each with its line end; a last line without one too.
std::vector<std::string> split_lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        lines.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    return lines;
}

std::vector<std::string> read_arguments(const fs::path& folder) {
    std::vector<std::string> arguments;
    for (std::string line : split_lines(read_file(folder / "arguments"))) {
        if (line.ends_with('\n')) {
            line.pop_back();
        }
        arguments.push_back(line == "@CLASSES@" ? (folder / "classes").string() : line);
    }
    return arguments;
}

/// Throws on a file that is not part of a case: a misspelt one would never be looked at.
void expect_known_files(const fs::path& folder) {
    static const std::set<std::string> known = {"arguments", "classes", "stdout",
                                                "stderr",    "status",  "files"};
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (!known.contains(entry.path().filename())) {
            throw std::runtime_error(entry.path().string() + " is not part of a case");
        }
    }
}

Case read_case(const fs::path& folder) {
    expect_known_files(folder);
    Case read;
    read.arguments = read_arguments(folder);
    if (fs::exists(folder / "files")) {
        read.expected.files = read_files(folder / "files");
    }
    read.expected.files["stdout"] = read_file(folder / "stdout");
    read.expected.files["stderr"] = fs::exists(folder / "stderr") ? read_file(folder / "stderr") : "";
    read.expected.ending =
        exited(fs::exists(folder / "status") ? std::stoi(read_file(folder / "status")) : 0);
    return read;
}

Observed run_program(const std::vector<std::string>& arguments) {
    const TemporaryDirectory directory;
    const Outcome outcome = run({KORV_BINARY, arguments, directory.path()});
    Observed observed = {read_files(directory.path()), outcome.ending};
    observed.files["stdout"] = mask_timings(outcome.out);
    observed.files["stderr"] = outcome.err;
    return observed;
}

std::string escaped(const std::string& line) {
    return ::testing::PrintToString(line);
}

/// The line at an index, escaped and in quotes.
std::string shown(const std::vector<std::string>& lines, std::size_t index) {
    return index < lines.size() ? escaped(lines[index]) : "the end of the file";
}

/// Where two texts first differ, as a message; empty when they are equal.
std::string difference_of(const std::string& name, const std::string& expected, const std::string& actual) {
    if (expected == actual) {
        return "";
    }
    const std::vector<std::string> expected_lines = split_lines(expected);
    const std::vector<std::string> actual_lines = split_lines(actual);
    const auto [first, ignored] = std::ranges::mismatch(expected_lines, actual_lines);
    const auto index = static_cast<std::size_t>(first - expected_lines.begin());
    std::ostringstream message;
    message << name << ":" << index + 1 << ": expected " << shown(expected_lines, index) << ", got "
            << shown(actual_lines, index);
    return message.str();
}

/// The differences of two sets of files, a message each.
std::vector<std::string> differences_of(const Files& expected, const Files& actual) {
    std::vector<std::string> messages;
    for (const auto& [name, text] : expected) {
        if (!actual.contains(name)) {
            messages.push_back(name + ": expected, but was not written");
        } else if (const std::string message = difference_of(name, text, actual.at(name)); !message.empty()) {
            messages.push_back(message);
        }
    }
    for (const auto& [name, text] : actual) {
        if (!expected.contains(name)) {
            messages.push_back(name + ": not expected, but was written");
        }
    }
    return messages;
}

class EndToEnd : public ::testing::TestWithParam<std::string> {};

TEST_P(EndToEnd, WritesWhatIsExpected) {
    const Case read = read_case(fs::path(KORV_CASES_DIR) / GetParam());
    const Observed observed = run_program(read.arguments);
    EXPECT_EQ(observed.ending, read.expected.ending);
    for (const std::string& message : differences_of(read.expected.files, observed.files)) {
        ADD_FAILURE() << message;
    }
}

INSTANTIATE_TEST_SUITE_P(Case, EndToEnd, ::testing::ValuesIn(case_names()),
                         [](const auto& parameter) { return parameter.param; });

TEST(EndToEndRunner, NamesTheLineThatDiffers) {
    EXPECT_EQ(difference_of("F", "a\nb\n", "a\nb\n"), "");
    EXPECT_EQ(difference_of("F", "a\nb\tc\n", "a\nb c\n"), R"(F:2: expected "b\tc\n", got "b c\n")");
    EXPECT_EQ(difference_of("F", "a\n", "a"), R"(F:1: expected "a\n", got "a")");
    EXPECT_EQ(difference_of("F", "a\n", "a\nb"), R"(F:2: expected the end of the file, got "b")");
    EXPECT_EQ(difference_of("F", "a", ""), R"(F:1: expected "a", got the end of the file)");
}

TEST(EndToEndRunner, NamesTheFileThatIsMissingOrTooMany) {
    EXPECT_EQ(
        differences_of({{"A", ""}, {"B", ""}}, {{"B", ""}, {"C", ""}}),
        (std::vector<std::string>{"A: expected, but was not written", "C: not expected, but was written"}));
}

TEST(EndToEndRunner, MasksSecondsOnly) {
    EXPECT_EQ(mask_timings("x=1\nTime spent by KOR Deriver step = 9.5e-05\n"),
              "x=1\nTime spent by KOR Deriver step = *\n");
    EXPECT_EQ(mask_timings("Time spent by KOR Deriver step = nan\n"),
              "Time spent by KOR Deriver step = nan\n");
}

/// The counter of a form and a kind in the text of a rule-count file.
unsigned long counter(const std::string& report, const std::string& label, const std::string& kind) {
    const std::size_t line = report.find(kind + "  of the form  " + label + " = ");
    const std::size_t tabs = report.find('\t', line);
    return std::stoul(report.substr(report.find_first_not_of('\t', tabs)));
}

/// The rule-count files that the cases expect, those of runs that end before it is written left out.
std::vector<std::string> expected_reports() {
    std::vector<std::string> reports;
    for (const std::string& name : case_names()) {
        for (const auto& [file, text] : read_case(fs::path(KORV_CASES_DIR) / name).expected.files) {
            if (file.starts_with("number_rules") && !text.empty()) {
                reports.push_back(text);
            }
        }
    }
    return reports;
}

std::string named(const std::string& label, const std::string& kind) {
    return label + " " + kind;
}

/// The forms and kinds that no rule is ever counted in.
const std::set<std::string> never_counted = {
    // D-->E and not(E)-->not(D) have confidence 1 for an essential itemset E and the rest D of its class.
    "R112 appro", "R211 appro", "R211 apped",
    // Counted as R111 appro.
    "R212 appro",
    // E-->not(D) is not tested against 1.
    "R311 exact",
    // The pair of support 0 is always approximative.
    "R312 exact", "R312 apped", "R411 exact", "R411 apped",
    // D-->B is not tested against 1, in either pair.
    "R122 exact", "R132 exact",
    // not(B)-->not(D) neither; and it never needs an interval, since all of its support is known.
    "R221 exact", "R221 apped", "R231 exact", "R231 apped",
    // Counted as R232.
    "R222 exact", "R222 appro",
    // not(B)-->D never needs an interval.
    "R422 apped", "R431 apped"};

TEST(EndToEndCases, CountEveryFormAndKindThatCanBe) {
    const std::vector<std::string> reports = expected_reports();
    for (const FormDescription& form : rule_catalogue) {
        for (const Kind kind_number : all_kinds) {
            const std::string label(form.label);
            const std::string kind(kind_name(kind_number));
            const std::string cell = named(label, kind);
            const bool counted = std::ranges::any_of(
                reports, [&](const std::string& report) { return counter(report, label, kind) != 0; });
            EXPECT_NE(counted, never_counted.contains(cell)) << cell;
        }
    }
}

}  // namespace
}  // namespace korv::test
