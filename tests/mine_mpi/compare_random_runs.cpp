// usage: mpirun -n N compare_random_runs FIRST_SEED CASES
//
// Makes random transactions, options and faults; mines them by one process as korv-mine does, and by all
// processes; and compares files, statuses and messages, byte for byte. Prints the first case that differs,
// and ends with status 1.

#include <mpi.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "common/atomic_output.h"
#include "common/error.h"
#include "mine/class_output.h"
#include "mine/miner.h"
#include "mine/mining_request.h"
#include "mine/named_items.h"
#include "mine/reading.h"
#include "mine_mpi/mining_in_parts.h"
#include "mine_mpi/mpi_arguments.h"
#include "mine_mpi/processes.h"
#include "support/files.h"

namespace korv::tools {
namespace {

/// Numbers of 32 bits.
class Random {
public:
    explicit Random(std::uint32_t seed) : engine_(seed) {}
    std::uint32_t operator()() { return static_cast<std::uint32_t>(engine_()); }

private:
    std::mt19937 engine_;
};

bool one_in(std::uint32_t n, Random& random) {
    return random() % n == 0;
}

template <typename T>
const T& any_of(const std::vector<T>& values, Random& random) {
    return values[random() % values.size()];
}

/// How many items and lines there are, and how many items are in a line.
struct Shape {
    std::uint32_t items;
    std::uint32_t lines;
    std::uint32_t per_line;
};

Shape random_shape(Random& random) {
    const std::vector<Shape> shapes = {{4, 8, 2}, {8, 40, 4}, {10, 60, 5}, {120, 60, 2}, {300, 200, 3}};
    return any_of(shapes, random);
}

std::string joined(const std::vector<std::string>& words, const std::string& separator) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

std::string fimi_line(const Shape& shape, Random& random) {
    std::vector<std::string> items;
    for (std::uint32_t i = random() % (2 * shape.per_line + 1); i > 0; --i) {
        // The lower ones are more frequent, and some are twins.
        const std::uint32_t item = random() % (1 + random() % shape.items);
        items.push_back(std::to_string(item * 7));
        if (item % 5 == 0) {
            items.push_back(std::to_string(item * 7 + 1));
        }
    }
    return joined(items, one_in(9, random) ? "  " : " ");
}

std::string basket_line(const Shape& shape, const std::string& separator, Random& random) {
    std::vector<std::string> names;
    for (std::uint32_t i = random() % (2 * shape.per_line + 1); i > 0; --i) {
        const std::string number = std::to_string(random() % (1 + random() % shape.items));
        std::string& name = names.emplace_back("i");
        if (one_in(8, random)) {
            name.insert(0, "\"").append("t").append(separator).append(R"( "")").append(number).append(
                R"(""")");
        } else {
            name.append(number);
        }
    }
    return joined(names, separator);
}

/// A row of: size (numbers), colour (words), langs (several answers), flag, note (anything), n (weights).
std::string table_row(const std::string& separator, Random& random) {
    const std::vector<std::string> colours = {"red", "green", "", "NA", "blue"};
    const std::vector<std::string> answers = {"de", "en", "fr|de", " en |fr", "", "de|de"};
    const std::vector<std::string> notes = {"x", "\"a\nb\"", "\"\n\"\"\n\n\"", "\"1" + separator + "\"",
                                            "",  "y\"z"};
    const std::vector<std::string> flags = {"yes", "no", "1", "0", "?", ""};
    const std::string number = one_in(10, random)  ? "many"
                               : one_in(6, random) ? "1e" + std::to_string(random() % 2)
                                                   : std::to_string(random() % 12);
    return joined({one_in(12, random) ? "" : number, any_of(colours, random), any_of(answers, random),
                   any_of(flags, random), any_of(notes, random), std::to_string(random() % 4)},
                  separator);
}

/// A run: files by name, and what is asked for.
struct Case {
    std::vector<std::string> texts;
    Arguments arguments;
};

std::optional<Threshold> random_threshold(std::uint32_t least, Random& random) {
    if (one_in(2, random)) {
        return std::nullopt;
    }
    return one_in(4, random) ? Threshold{static_cast<double>(5 + random() % 30), true}
                             : Threshold{static_cast<double>(least + random() % 3), false};
}

void ask_for_mining(Case& made, const Shape& shape, Random& random) {
    MiningRequest& mining = made.arguments.mining;
    mining.min_supports = {random_threshold(1, random).value_or(Threshold{1, false})};
    mining.min_own = random_threshold(1, random);
    mining.closure_over_all = one_in(2, random);
    if (one_in(3, random)) {
        // Where nothing has to be together, there are as many itemsets as items make.
        mining.max_size = 1 + random() % (shape.items > 10 ? 2 : 4);
        mining.min_joint = random_threshold(0, random);
    }
    if (one_in(6, random)) {
        mining.max_classes = 1 + random() % 60;
    }
}

void ask_for_table(TableOptions& table, Random& random) {
    table.ignored = {one_in(5, random) ? "flag" : "note"};
    if (one_in(3, random)) {
        table.bins = {*parse_bin_rule(one_in(2, random) ? "3" : "size=2")};
    } else if (one_in(3, random)) {
        table.bins = {*parse_bin_rule("size=2,5")};
    }
    if (one_in(2, random)) {
        table.splits = {*parse_split_rule("langs=|")};
    }
    if (one_in(3, random)) {
        table.weight_column = "n";
    }
    if (one_in(6, random)) {
        table.columns = {"size", "c*", "langs"};
        table.ignored = {};
    }
    if (one_in(8, random)) {
        table = {.columns = {"flag"}, .only_true = true};
    }
    if (one_in(6, random)) {
        table.missing = {"red", "many"};
    }
}

/// `weight`: lines have one to four times this weight; where it is 0, they have none.
std::string text_of(Format format, const Shape& shape, std::uint32_t lines, const std::string& separator,
                    std::uint32_t weight, Random& random) {
    const std::string end = one_in(6, random) ? "\r\n" : "\n";
    std::string text = one_in(10, random) ? "\xEF\xBB\xBF" : "";
    if (format != Format::fimi && one_in(8, random)) {
        text += "sep=" + separator + end;
    }
    if (format == Format::table) {
        text += joined({"size", "colour", "langs", "flag", "note", "n"}, separator) + end;
    }
    for (std::uint32_t line = 0; line < lines; ++line) {
        text += weight > 0 ? std::to_string((1 + random() % 4) * weight) + " " : "";
        text += format == Format::fimi     ? fimi_line(shape, random)
                : format == Format::basket ? basket_line(shape, separator, random)
                                           : table_row(separator, random);
        text += end;
    }
    if (one_in(5, random) && !text.empty()) {
        text.pop_back();
    }
    return text;
}

void damage(std::string& text, Random& random) {
    const std::string bytes = "\"\n\r,;|\t x7\x01\xC3";
    for (std::uint32_t i = 1 + random() % 2; i > 0 && !text.empty(); --i) {
        text[random() % text.size()] = bytes[random() % bytes.size()];
    }
}

Case random_case(Random& random) {
    Case made;
    const Shape shape = random_shape(random);
    const Format format = any_of<Format>({Format::fimi, Format::basket, Format::table}, random);
    const std::string separator = any_of<std::string>({",", ";", "\t", "|"}, random);
    ReadingOptions& reading = made.arguments.reading;
    reading.weighted = format != Format::table && one_in(4, random);
    // Supports of more than two bytes are told otherwise.
    const std::uint32_t weight = !reading.weighted ? 0 : one_in(3, random) ? 9'000 : 1;
    if (!one_in(3, random)) {
        reading.format = format;
    }
    if (format != Format::fimi && one_in(2, random)) {
        reading.separator = separator.front();
    }
    if (format == Format::table) {
        ask_for_table(reading.table, random);
    }
    for (std::uint32_t files = 1 + random() % 4; files > 0; --files) {
        const std::uint32_t lines = one_in(5, random) ? 0 : random() % (shape.lines + 1);
        std::string text = text_of(format, shape, lines, separator, weight, random);
        if (one_in(12, random)) {
            text = one_in(2, random) ? "" : "\n \n";
        }
        if (one_in(12, random)) {
            damage(text, random);
        }
        made.texts.push_back(text);
    }
    ask_for_mining(made, shape, random);
    made.arguments.quiet = true;
    return made;
}

/// What a run left.
struct Result {
    int status = 1;
    std::string message;  ///< of an error
    std::string classes;
    std::string names;

    bool operator==(const Result&) const = default;
};

class Comparison {
public:
    Comparison(Processes& processes, std::string directory)
        : processes_(processes), directory_(std::move(directory)) {}

    /// False, and prints the case, when runs differ.
    bool compare(std::uint32_t seed) {
        Random random(seed);
        Case made = random_case(random);
        if (processes_.is_first()) {
            std::filesystem::create_directory(directory_);
            for (std::size_t i = 0; i < made.texts.size(); ++i) {
                test::write_file(path("in" + std::to_string(i)), made.texts[i]);
            }
        }
        for (std::size_t i = 0; i < made.texts.size(); ++i) {
            made.arguments.transactions.push_back(path("in" + std::to_string(i)));
        }
        if (one_in(50, random)) {
            made.arguments.transactions.push_back(path("missing"));
        }
        made.arguments.output = path("out.classes");
        const Result expected = processes_.is_first() ? by_one(made.arguments) : Result();
        const Result found = one_in(4, random) ? interrupted(made.arguments, random) : by_all(made.arguments);
        char is_same = processes_.is_first() && !(found == expected) ? 0 : 1;
        if (is_same == 0) {
            print(seed, made, expected, found);
        }
        processes_.broadcast_value(is_same);
        if (processes_.is_first()) {
            std::filesystem::remove_all(directory_);
        }
        return is_same != 0;
    }

private:
    std::string path(const std::string& name) const { return directory_ + "/" + name; }

    /// What korv-mine does.
    static Result by_one(const Arguments& arguments) {
        Result result;
        try {
            ReadingReport report;
            const Database database = read_database(arguments.transactions, arguments.reading, report);
            names_path("", report.format, arguments.output);
            const MiningOptions options = mining_options(
                arguments.mining, arguments.mining.min_supports.front(), database.transactions);
            const MiningResult mined = mine(database, options);
            result.status = mined.is_complete ? 0 : 3;
            if (!mined.is_complete) {
                return result;
            }
            require_classes(mined.classes.figures(), database, options);
            AtomicOutput output(arguments.output);
            write_classes(mined.classes, output);
            output.commit();
            result.classes = test::read_file(arguments.output);
            result.names = names_file(database.names);
        } catch (const Error& error) {
            return {1, error.what(), "", ""};
        }
        std::filesystem::remove(arguments.output);
        return result;
    }

    Result by_all(const Arguments& arguments) { return by_all({.mining = arguments}); }

    Result by_all(const MpiArguments& arguments) {
        Result result;
        try {
            const RunStatus status = mine_in_parts(processes_, arguments, std::chrono::steady_clock::now());
            result.status = static_cast<int>(status);
        } catch (const SharedError& error) {
            result.message = error.what();
        }
        const std::string names = path("out.names");
        if (processes_.is_first() && std::filesystem::exists(arguments.mining.output)) {
            result.classes = test::read_file(arguments.mining.output);
            result.names = std::filesystem::exists(names) ? test::read_file(names) : "";
        }
        return result;
    }

    /// Runs that stop where there are too many classes, and go on from what they kept.
    Result interrupted(const Arguments& arguments, Random& random) {
        MpiArguments all = {arguments, path("kept"), false};
        for (std::size_t classes = 1 + random() % 20;; classes *= 3) {
            const auto asked = arguments.mining.max_classes;
            all.mining.mining.max_classes = asked ? std::min(classes, *asked) : classes;
            Result result = by_all(all);
            char is_over = result.status != 3 || all.mining.mining.max_classes == asked ? 1 : 0;
            processes_.broadcast_value(is_over);
            if (is_over != 0) {
                return result;
            }
            all.resumes = true;
        }
    }

    static void print(std::uint32_t seed, const Case& made, const Result& expected, const Result& found) {
        std::cout << "seed " << seed << '\n';
        for (const std::string& text : made.texts) {
            std::cout << "--- input\n" << text << '\n';
        }
        for (const auto& [who, result] : {std::pair{"expected", expected}, std::pair{"found", found}}) {
            std::cout << "--- " << who << ": status " << result.status << '\n'
                      << result.message << '\n'
                      << result.classes << result.names;
        }
        std::cout << std::flush;
    }

    Processes& processes_;
    std::string directory_;
};

int compare_all(Processes& processes, std::uint32_t first, std::uint32_t cases) {
    std::string directory = "/dev/shm/korv-mpi-" + std::to_string(std::random_device()());
    processes.broadcast(directory);
    std::cerr.rdbuf(nullptr);  // messages of runs that stop
    Comparison comparison(processes, directory);
    for (std::uint32_t seed = first; seed < first + cases; ++seed) {
        if (!comparison.compare(seed)) {
            return 1;
        }
    }
    if (processes.is_first()) {
        std::cout << cases << " cases agree with " << processes.size() << " processes\n";
    }
    return 0;
}

}  // namespace
}  // namespace korv::tools

int main(int argc, char** argv) {
    MPI_Init(&argc, &argv);
    korv::tools::Processes processes;
    int status = 2;
    if (argc == 3) {
        status = korv::tools::compare_all(processes, static_cast<std::uint32_t>(std::atol(argv[1])),
                                          static_cast<std::uint32_t>(std::atol(argv[2])));
    }
    MPI_Finalize();
    return status;
}
