#include "app/process_arguments.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "app/globals.h"
#include "support/files.h"

namespace korv {
namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;
using test::write_file;

constexpr auto usage_message =
    "\n Erreur! Entrez le fichier des Inputs suivi d'un minsupp superieur ou egal a 1 et d'un minconf "
    "compris "
    "entre 0 et 1!\n";

// Without a line end.
constexpr auto unreadable_message = "\n Erreur! Le fichier entre ne peut etre lu!";

// What the outputs and globals hold before the call, so that it shows what was set.
constexpr Count unset_count = 77;
constexpr double unset_minconf = -7.5;
const std::string unset_name = "unset";

class ProcessArguments : public ::testing::Test {
protected:
    /// Works in a directory that holds nothing but the class file, "input".
    ProcessArguments() : previous_directory_(fs::current_path()) {
        write_file(directory_.path() / "input", class_file);
        fs::current_path(directory_.path());
        for (std::string* const name : {&S1, &S2, &S3, &S4, &S5, &S6}) {
            *name = unset_name;
        }
        nbrtransaction = unset_count;
    }

    ~ProcessArguments() override { fs::current_path(previous_directory_); }

    /// Calls with these arguments after the program's name; what it returns.
    int process(const std::vector<std::string>& arguments) {
        std::vector<std::string> words = {"korv"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(word.data());
        }
        argv.push_back(nullptr);

        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int result =
            process_arguments(static_cast<int>(words.size()), argv.data(), input, minconf, minsupp);
        standard_error = testing::internal::GetCapturedStderr();
        standard_output = testing::internal::GetCapturedStdout();
        return result;
    }

    void expect_nothing_set() const {
        EXPECT_EQ(minsupp, unset_count);
        EXPECT_EQ(minconf, unset_minconf);
        EXPECT_EQ(nbrtransaction, unset_count);
        EXPECT_EQ((std::vector{S1, S2, S3, S4, S5, S6}), std::vector(6, unset_name));
    }

    /// Number of files and directories in the working directory, the class file among them.
    static std::ptrdiff_t files() {
        return std::distance(fs::directory_iterator("."), fs::directory_iterator());
    }

    static constexpr auto class_file = "1\t5\t ,\n";

    std::ifstream input;
    double minconf = unset_minconf;
    Count minsupp = unset_count;
    std::string standard_error;
    std::string standard_output;

private:
    fs::path previous_directory_;
    TemporaryDirectory directory_;
};

// Errors.

class TooFewArguments : public ProcessArguments, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(TooFewArguments, AreAnsweredWithTheUsage) {
    std::vector<std::string> arguments = {"mush", "input", "300", "0.8"};
    arguments.resize(GetParam());
    EXPECT_EQ(process(arguments), 1);
    EXPECT_EQ(standard_error, usage_message);
    EXPECT_EQ(standard_output, "");
    EXPECT_FALSE(input.is_open());
    expect_nothing_set();
}

INSTANTIATE_TEST_SUITE_P(From0To4, TooFewArguments, ::testing::Range<std::size_t>(0, 5));

TEST_F(ProcessArguments, ReportsAMissingClassFileWithoutALineEnd) {
    EXPECT_EQ(process({"mush", "no such file", "300", "0.8", "8124"}), 1);
    EXPECT_EQ(standard_error, unreadable_message);
    EXPECT_EQ(standard_output, "");
    expect_nothing_set();
}

TEST_F(ProcessArguments, ReportsADirectoryLikeAMissingClassFile) {
    EXPECT_EQ(process({"mush", ".", "300", "0.8", "8124"}), 1);
    EXPECT_EQ(standard_error, unreadable_message);
    EXPECT_EQ(standard_output, "");
    expect_nothing_set();
}

TEST_F(ProcessArguments, CreatesNoFileAfterAnError) {
    process({"mush", "input", "300", "0.8"});
    process({"mush", "no such file", "300", "0.8", "8124"});
    process({"mush", ".", "300", "0.8", "8124"});
    EXPECT_EQ(files(), 1);
}

// Success.

TEST_F(ProcessArguments, AcceptsFiveArgumentsSilently) {
    EXPECT_EQ(process({"mush", "input", "300", "0.8", "8124"}), 0);
    EXPECT_EQ(standard_error, "");
    EXPECT_EQ(standard_output, "");
    EXPECT_EQ(minsupp, 300U);
    EXPECT_EQ(minconf, 0.8);
    EXPECT_EQ(nbrtransaction, 8124U);
}

TEST_F(ProcessArguments, OpensTheClassFileAtItsBeginning) {
    process({"mush", "input", "300", "0.8", "8124"});
    EXPECT_TRUE(input.good());
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(input), {}), class_file);
}

TEST_F(ProcessArguments, AcceptsAnEmptyClassFile) {
    write_file("empty", "");
    EXPECT_EQ(process({"mush", "empty", "300", "0.8", "8124"}), 0);
    EXPECT_TRUE(input.is_open());
    EXPECT_EQ(standard_error, "");
}

TEST_F(ProcessArguments, TakesNothingFromAPipe) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const std::string classes = class_file;
    ASSERT_EQ(write(ends[1], classes.data(), classes.size()), static_cast<ssize_t>(classes.size()));
    close(ends[1]);
    EXPECT_EQ(process({"mush", "/dev/fd/" + std::to_string(ends[0]), "300", "0.8", "8124"}), 0);
    close(ends[0]);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(input), {}), classes);
}

TEST_F(ProcessArguments, IgnoresTheSixthAndLaterArguments) {
    EXPECT_EQ(process({"mush", "input", "300", "0.8", "8124", "9", "x"}), 0);
    EXPECT_EQ(standard_error, "");
    EXPECT_EQ(nbrtransaction, 8124U);
    EXPECT_EQ(S6, "number_rules_mush_300_0.8.txt");
}

TEST_F(ProcessArguments, CreatesNoFile) {
    process({"mush", "input", "300", "0.8", "8124"});
    EXPECT_EQ(files(), 1);
}

// File names.

TEST_F(ProcessArguments, MakesTheFileNamesOfLabelAndThresholds) {
    process({"mush", "input", "300", "0.8", "8124"});
    EXPECT_EQ(S1, "intra_exact_mush_300_0.8.txt");
    EXPECT_EQ(S2, "intra_approx_mush_300_0.8.txt");
    EXPECT_EQ(S3, "inter_exact_mush_300_0.8.txt");
    EXPECT_EQ(S4, "inter_approx_mush_300_0.8.txt");
    EXPECT_EQ(S5, "Lattice_mush_300.txt");
    EXPECT_EQ(S6, "number_rules_mush_300_0.8.txt");
}

TEST_F(ProcessArguments, NamesFilesByTheArgumentsAsTyped) {
    process({"a b", "input", "+0300", "0.50", "10"});
    EXPECT_EQ(S5, "Lattice_a b_+0300.txt");
    EXPECT_EQ(S1, "intra_exact_a b_+0300_0.50.txt");
}

TEST_F(ProcessArguments, MinconfOfOneEndsTheNamesInOne) {
    process({"mush", "input", "300", "1", "8124"});
    EXPECT_EQ(S1, "intra_exact_mush_300_1.txt");
    EXPECT_EQ(S6, "number_rules_mush_300_1.txt");
    EXPECT_EQ(minconf, 1.0);
}

TEST_F(ProcessArguments, NameOfTheLatticeFileDoesNotDependOnMinconf) {
    process({"mush", "input", "300", "0.1", "8124"});
    const std::string first = S5;
    input.close();
    process({"mush", "input", "300", "0.9", "8124"});
    EXPECT_EQ(first, "Lattice_mush_300.txt");
    EXPECT_EQ(S5, "Lattice_mush_300.txt");
}

TEST_F(ProcessArguments, NamesKeepThirtyCharactersOfArguments) {
    process({"abcdefghijklmnopqrstuvw", "input", "300", "0.85", "8124"});
    EXPECT_EQ(S2, "intra_approx_abcdefghijklmnopqrstuvw_300_0.85.txt");
    EXPECT_EQ(S6, "number_rules_abcdefghijklmnopqrstuvw_300_0.85.txt");
}

TEST_F(ProcessArguments, NamesKeepArgumentsOfAnyLength) {
    const std::string label(500, 'x');
    EXPECT_EQ(process({label, "input", "300", "0.8", "8124"}), 0);
    EXPECT_EQ(S2, "intra_approx_" + label + "_300_0.8.txt");
    EXPECT_EQ(S5, "Lattice_" + label + "_300.txt");
}

TEST_F(ProcessArguments, NamesKeepEmptyArguments) {
    process({"", "input", "", "", ""});
    EXPECT_EQ(S5, "Lattice__.txt");
    EXPECT_EQ(S3, "inter_exact___.txt");
}

// Numbers. None is validated.

struct CountCase {
    std::string text;
    Count value;

    friend std::ostream& operator<<(std::ostream& out, const CountCase& c) {
        return out << '"' << c.text << '"';
    }
};

class CountArgument : public ProcessArguments, public ::testing::WithParamInterface<CountCase> {};

TEST_P(CountArgument, IsConvertedAsMinsupp) {
    EXPECT_EQ(process({"mush", "input", GetParam().text, "0.8", "8124"}), 0);
    EXPECT_EQ(minsupp, GetParam().value);
    EXPECT_EQ(standard_error, "");
}

TEST_P(CountArgument, IsConvertedAsNumberOfTransactions) {
    EXPECT_EQ(process({"mush", "input", "300", "0.8", GetParam().text}), 0);
    EXPECT_EQ(nbrtransaction, GetParam().value);
    EXPECT_EQ(standard_error, "");
}

INSTANTIATE_TEST_SUITE_P(Plain, CountArgument,
                         ::testing::Values(CountCase{"0", 0}, CountCase{"300", 300}, CountCase{"+5", 5},
                                           CountCase{"  7", 7}, CountCase{"\t\n8", 8},
                                           CountCase{"2147483647", 2147483647U}));

INSTANTIATE_TEST_SUITE_P(EndsAtWhatIsNoDigit, CountArgument,
                         ::testing::Values(CountCase{"12abc", 12}, CountCase{"3.7", 3}, CountCase{"1e3", 1},
                                           CountCase{"1 000", 1}));

INSTANTIATE_TEST_SUITE_P(IsAlwaysDecimal, CountArgument,
                         ::testing::Values(CountCase{"010", 10}, CountCase{"0x10", 0}));

INSTANTIATE_TEST_SUITE_P(IsZeroWithoutDigits, CountArgument,
                         ::testing::Values(CountCase{"", 0}, CountCase{"abc", 0}, CountCase{"-", 0},
                                           CountCase{"- 1", 0}));

INSTANTIATE_TEST_SUITE_P(WrapsWhenNegative, CountArgument,
                         ::testing::Values(CountCase{"-1", 4294967295U}, CountCase{"-300", 4294966996U},
                                           CountCase{"-2147483648", 2147483648U}));

INSTANTIATE_TEST_SUITE_P(SaturatesAt32SignedBits, CountArgument,
                         ::testing::Values(CountCase{"2147483648", 2147483647U},
                                           CountCase{"4294967295", 2147483647U},
                                           CountCase{"4294967297", 2147483647U},
                                           CountCase{"99999999999999999999", 2147483647U},
                                           CountCase{"-2147483649", 2147483648U},
                                           CountCase{"-99999999999999999999", 2147483648U}));

struct MinconfCase {
    std::string text;
    double value;

    friend std::ostream& operator<<(std::ostream& out, const MinconfCase& c) {
        return out << '"' << c.text << '"';
    }
};

class MinconfArgument : public ProcessArguments, public ::testing::WithParamInterface<MinconfCase> {};

TEST_P(MinconfArgument, IsConvertedWithoutChecks) {
    EXPECT_EQ(process({"mush", "input", "300", GetParam().text, "8124"}), 0);
    EXPECT_EQ(minconf, GetParam().value);
    EXPECT_EQ(standard_error, "");
}

INSTANTIATE_TEST_SUITE_P(Numbers, MinconfArgument,
                         ::testing::Values(MinconfCase{"0", 0.0}, MinconfCase{"0.8", 0.8},
                                           MinconfCase{".25", 0.25}, MinconfCase{" 0.5", 0.5},
                                           MinconfCase{"1e-3", 0.001}, MinconfCase{"0x1p-1", 0.5}));

INSTANTIATE_TEST_SUITE_P(OutOfRange, MinconfArgument,
                         ::testing::Values(MinconfCase{"-0.5", -0.5}, MinconfCase{"80", 80.0},
                                           MinconfCase{"inf", std::numeric_limits<double>::infinity()},
                                           MinconfCase{"1e999", std::numeric_limits<double>::infinity()}));

INSTANTIATE_TEST_SUITE_P(EndsAtWhatIsNoNumber, MinconfArgument,
                         ::testing::Values(MinconfCase{"", 0.0}, MinconfCase{"abc", 0.0},
                                           MinconfCase{"0,8", 0.0}, MinconfCase{"0.8%", 0.8}));

TEST_F(ProcessArguments, MinconfMayBeNaN) {
    EXPECT_EQ(process({"mush", "input", "300", "nan", "8124"}), 0);
    EXPECT_TRUE(std::isnan(minconf));
}

}  // namespace
}  // namespace korv
