// What folders of files cannot say about the program: pipes, the moment at which something is written, and
// files that are in the way.

#include "support/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/files.h"

namespace korv::test {
namespace {

namespace fs = std::filesystem;

/// The classes {1}, {2} and {1, 2} of the four transactions {1}, {1 2}, {2} and {2}.
const std::string classes = "1\t2\t 1,\n2\t3\t 2,\n1 2\t4\t 1 2,\n";

const std::string last_threshold_line = "Minimum confiance threshold = 0.5\n";

const std::vector<std::string> output_files = {"intra_exact_r_1_0.5.txt",  "intra_approx_r_1_0.5.txt",
                                               "inter_exact_r_1_0.5.txt",  "inter_approx_r_1_0.5.txt",
                                               "number_rules_r_1_0.5.txt", "Lattice_r_1.txt"};

void make_fifo(const fs::path& path) {
    EXPECT_EQ(mkfifo(path.c_str(), 0600), 0) << path;
}

/// A directory for the program to run in, empty at first, and class files elsewhere.
class Workplace {
public:
    fs::path output(const std::string& name) const { return directory_.path() / name; }
    Files outputs() const { return read_files(directory_.path()); }

    fs::path class_file(const std::string& text) const {
        write_file(inputs_.path() / "classes", text);
        return inputs_.path() / "classes";
    }

    /// A FIFO to be fed.
    fs::path class_fifo() const {
        make_fifo(inputs_.path() / "fifo");
        return inputs_.path() / "fifo";
    }

    Command command(const fs::path& class_file) const {
        return {KORV_BINARY, {"r", class_file, "1", "0.5", "4"}, directory_.path()};
    }

    /// A whole run: the output files, and standard output as stdout.
    Files run_to_success(const fs::path& class_file) const {
        const Outcome outcome = run(command(class_file));
        EXPECT_EQ(outcome.ending, exited(0));
        EXPECT_EQ(outcome.err, "");
        Files files = outputs();
        files["stdout"] = mask_timings(outcome.out);
        return files;
    }

private:
    TemporaryDirectory directory_;
    TemporaryDirectory inputs_;
};

class Program : public ::testing::Test, protected Workplace {};

/// What a run leaves that nothing is in the way of.
Files undisturbed(const std::string& class_file_text = classes) {
    const Workplace elsewhere;
    Files files = elsewhere.run_to_success(elsewhere.class_file(class_file_text));
    EXPECT_EQ(files.size(), output_files.size() + 1);
    return files;
}

Files without(Files files, const std::string& name) {
    files.erase(name);
    return files;
}

Descriptor nothing() {
    return open_file("/dev/null", O_RDWR);
}

/// A FIFO filled to the brim in place of an output file: who writes to it waits.
class FullFifo {
public:
    explicit FullFifo(const fs::path& path) : end_(make(path)) {
        const std::string filling(4096, 'x');
        for (const std::size_t size : {filling.size(), std::size_t{1}}) {
            while (write(end_.number(), filling.data(), size) > 0) {
                filled_ += size;
            }
        }
    }

    /// Takes the filling out. Stays open.
    void drain() {
        while (filled_ > 0) {
            std::string next = read_some(end_);
            written_ += next.substr(std::min(filled_, next.size()));
            filled_ -= std::min(filled_, next.size());
        }
    }

    /// All that was written to it, by a process that has come to its end.
    std::string written() {
        std::array<char, 4096> buffer{};
        for (;;) {
            const ssize_t size = read(end_.number(), buffer.data(), buffer.size());
            if (size <= 0) {
                return written_;
            }
            written_.append(buffer.data(), static_cast<std::size_t>(size));
        }
    }

private:
    static Descriptor make(const fs::path& path) {
        make_fifo(path);
        return open_file(path, O_RDWR | O_NONBLOCK);
    }

    Descriptor end_;
    std::size_t filled_ = 0;
    std::string written_;
};

// The class file through a pipe.

TEST_F(Program, ReadsAPipeOnStandardInputAsItReadsAFile) {
    Channel in = make_pipe();
    Channel out = make_pipe();
    write_all(in.write, classes);
    in.write.close();
    Process process(command("/dev/stdin"), in.read, out.write, nothing());
    out.write.close();

    const std::string console = read_to_end(out.read);
    EXPECT_EQ(process.wait(), exited(0));
    Files written = outputs();
    written["stdout"] = mask_timings(console);
    EXPECT_EQ(written, undisturbed());
}

TEST_F(Program, ReadsAFifoAsItReadsAFile) {
    const fs::path fifo = class_fifo();
    Descriptor feed = open_file(fifo, O_RDWR);
    Channel out = make_pipe();
    Process process(command(fifo), nothing(), out.write, nothing());
    out.write.close();

    write_all(feed, classes);
    // Once these lines are there the program has opened the FIFO, and will see its end.
    std::string console = read_until(out.read, last_threshold_line);
    feed.close();
    console += read_to_end(out.read);
    EXPECT_EQ(process.wait(), exited(0));
    Files written = outputs();
    written["stdout"] = mask_timings(console);
    EXPECT_EQ(written, undisturbed());
}

// When something is written.

TEST_F(Program, PrintsBannerAndThresholdsBeforeAClassIsSent) {
    const fs::path fifo = class_fifo();
    const Descriptor feed = open_file(fifo, O_RDWR);
    const Channel out = make_pipe();
    const Process process(command(fifo), nothing(), out.write, nothing());

    EXPECT_EQ(read_until(out.read, last_threshold_line),
              "\n  ****************************************************************"
              "\n  ***                                                          ***"
              "\n  ***                  The KORV tool                           ***"
              "\n  ***      Korvane\t\t        ***"
              "\n  ***                                                          ***"
              "\n  ****************************************************************"
              "\n\n"
              "Minimum support threshold = 1\n"
              "Minimum confiance threshold = 0.5\n");
}

TEST_F(Program, FlushesEveryLineOfItsConsole) {
    const std::string without_final_newline = classes.substr(0, classes.size() - 1);
    Channel out = make_packet_channel();
    Process process(command(class_file(without_final_newline)), nothing(), out.write, nothing());
    out.write.close();

    std::string console = read_some(out.read);  // the banner, which is flushed as a whole
    for (std::string packet = read_some(out.read); !packet.empty(); packet = read_some(out.read)) {
        EXPECT_EQ(packet.find('\n'), packet.size() - 1) << packet;
        console += packet;
    }
    EXPECT_EQ(process.wait(), exited(0));
    EXPECT_EQ(mask_timings(console), undisturbed(without_final_newline)["stdout"]);
}

TEST_F(Program, HasWrittenTheLatticeFileWhenItSaysSo) {
    const FullFifo rules(output("intra_exact_r_1_0.5.txt"));
    const Channel out = make_pipe();
    const Process process(command(class_file(classes)), nothing(), out.write, nothing());

    read_until(out.read, " Lattice written\n");
    EXPECT_EQ(outputs()["Lattice_r_1.txt"], undisturbed()["Lattice_r_1.txt"]);
}

TEST_F(Program, HasWrittenTheRuleFilesWhenItSaysSo) {
    const FullFifo rule_counts(output("number_rules_r_1_0.5.txt"));
    const Channel out = make_pipe();
    const Process process(command(class_file(classes)), nothing(), out.write, nothing());

    read_until(out.read, " Rules generted \n");
    EXPECT_EQ(outputs(), without(without(undisturbed(), "number_rules_r_1_0.5.txt"), "stdout"));
}

TEST_F(Program, LeavesAWholeLatticeFileWhenTheReaderOfItsConsoleGoesAway) {
    FullFifo rules(output("intra_exact_r_1_0.5.txt"));
    Channel out = make_pipe();
    Process process(command(class_file(classes)), nothing(), out.write, nothing());
    out.write.close();

    read_until(out.read, " Lattice written\n");
    out.read.close();
    rules.drain();
    EXPECT_EQ(process.wait(), ended_by_signal(SIGPIPE));
    EXPECT_EQ(outputs()["Lattice_r_1.txt"], undisturbed()["Lattice_r_1.txt"]);
}

TEST_F(Program, LeavesAWholeRuleCountFileWhenTheReaderOfItsConsoleGoesAway) {
    FullFifo rule_counts(output("number_rules_r_1_0.5.txt"));
    Channel out = make_pipe();
    Process process(command(class_file(classes)), nothing(), out.write, nothing());
    out.write.close();

    read_until(out.read, " Rules generted \n");
    out.read.close();
    rule_counts.drain();
    EXPECT_EQ(process.wait(), ended_by_signal(SIGPIPE));
    EXPECT_EQ(rule_counts.written(), undisturbed()["number_rules_r_1_0.5.txt"]);
}

// Class files that end early.

/// Three classes with essential itemsets and one with none but itself. Byte by byte:
///
///    0  10 TAB 25 TAB BLANK 10, LF
///   11  20 TAB 35 TAB BLANK 20, LF
///   22  10 20 30 TAB 45 TAB BLANK 10 30, 20 30, LF
///   49  5 TAB 9 TAB BLANK 5, LF
///   57
const std::string to_be_cut = "10\t25\t 10,\n20\t35\t 20,\n10 20 30\t45\t 10 30, 20 30,\n5\t9\t 5,\n";

/// What is read of the first bytes of `to_be_cut`.
struct Cut {
    std::size_t from;  ///< number of bytes left, up to the next entry
    const char* classes;
};

/// Closed itemsets and supports, in the order of the lattice file. The items up to the cut are a class; a
/// support that is cut off is 0; and the later of two records of the same itemset counts.
constexpr std::array cuts = {
    Cut{0, ""},
    Cut{1, "1:0 "},
    Cut{2, "10:0 "},
    Cut{4, "10:2 "},
    Cut{5, "10:25 "},
    Cut{12, "2:0 10:25 "},
    Cut{13, "10:25 20:0 "},
    Cut{15, "10:25 20:3 "},
    Cut{16, "10:25 20:35 "},
    Cut{23, "1:0 10:25 20:35 "},
    Cut{24, "10:0 20:35 "},
    Cut{26, "10:25 20:35 2,10:0 "},
    Cut{27, "10:25 20:35 10,20:0 "},
    Cut{29, "10:25 20:35 3,10,20:0 "},
    Cut{30, "10:25 20:35 10,20,30:0 "},
    Cut{32, "10:25 20:35 10,20,30:4 "},
    Cut{33, "10:25 20:35 10,20,30:45 "},
    Cut{50, "5:0 10:25 20:35 10,20,30:45 "},
    Cut{52, "5:9 10:25 20:35 10,20,30:45 "},
};

const std::set<std::size_t> ends_of_records = {0, 11, 22, 49, 57};

std::string classes_before_cut(std::size_t size) {
    std::string expected;
    for (const Cut& cut : cuts) {
        if (cut.from <= size) {
            expected = cut.classes;
        }
    }
    return expected;
}

/// The classes in a lattice file as `cuts` writes them.
std::string classes_of(const std::string& lattice_file) {
    constexpr std::string_view itemset_label = "DCP:  ";
    constexpr std::string_view support_label = "Disjonctive support: ";
    std::istringstream lines(lattice_file);
    std::string found;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(itemset_label)) {
            // Every item is followed by a blank.
            std::ranges::replace(line, ' ', ',');
            found += line.substr(itemset_label.size(), line.size() - itemset_label.size() - 1);
        } else if (line.starts_with(support_label)) {
            found += ":" + line.substr(support_label.size()) + " ";
        }
    }
    return found;
}

std::size_t occurrences(const std::string& part, const std::string& text) {
    std::size_t number = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++number;
    }
    return number;
}

TEST_F(Program, ReadsTheClassesBeforeACutAtAnyByte) {
    for (std::size_t size = 0; size <= to_be_cut.size(); ++size) {
        SCOPED_TRACE("the first " + std::to_string(size) + " bytes");
        const std::string expected = classes_before_cut(size);
        const auto number = std::ranges::count(expected, ':');
        const Outcome outcome = run(command(class_file(to_be_cut.substr(0, size))));

        EXPECT_EQ(outcome.ending, exited(number == 0 ? 2 : 0));
        EXPECT_EQ(classes_of(outputs()["Lattice_r_1.txt"]), expected);
        EXPECT_EQ(occurrences("\n Size of the map: " + std::to_string(number) + "\n", outcome.out),
                  number == 0 ? 0 : 1);
        EXPECT_EQ(occurrences("\nfin de fichier\n", outcome.out), ends_of_records.contains(size) ? 0 : 1);
    }
}

// Output files.

class ProgramWithoutFile : public Program, public ::testing::WithParamInterface<std::string> {};

TEST_P(ProgramWithoutFile, LosesItSilentlyAndWritesTheOthers) {
    fs::create_directory(output(GetParam()));
    EXPECT_EQ(run_to_success(class_file(classes)), without(undisturbed(), GetParam()));
}

INSTANTIATE_TEST_SUITE_P(File, ProgramWithoutFile, ::testing::ValuesIn(output_files),
                         [](const auto& parameter) {
                             return parameter.param.substr(0, parameter.param.find("_r_"));
                         });

TEST_F(Program, EmptiesLongerFilesOfAnEarlierRun) {
    for (const std::string& name : output_files) {
        write_file(output(name), std::string(100'000, 'x'));
    }
    EXPECT_EQ(run_to_success(class_file(classes)), undisturbed());
}

}  // namespace
}  // namespace korv::test
