#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <utility>

#include "common/atomic_output.h"
#include "common/distinct_files.h"
#include "common/error.h"
#include "common/standard_streams.h"
#include "common/text_input.h"
#include "io/class_record.h"
#include "mine/arguments.h"
#include "mine/basket.h"
#include "mine/fimi.h"
#include "mine/miner.h"
#include "mine/named_items.h"
#include "mine/progress.h"
#include "mine/summary.h"
#include "mine/table.h"

namespace {

using namespace korv;
using namespace korv::tools;

MinedClasses mine_with_progress(const Database& database, const MiningOptions& options, bool quiet) {
    std::optional<ProgressDisplay> display;
    if (!quiet && ::isatty(STDERR_FILENO) != 0) {
        display.emplace(std::cerr);
    }
    std::size_t found = 0;
    const auto report = [&display, &found](const MiningProgress& progress) {
        found = progress.classes;
        if (display) {
            display->show(progress);
        }
        return true;
    };
    return within_memory([&] { return mine(database, options, report).classes; },
                         [&] { return "after " + std::to_string(found) + " classes"; });
}

std::string name_of_input(const Arguments& arguments) {
    return arguments.transactions == "-" ? "standard input" : arguments.transactions;
}

Database read_table(TextInput input, const Arguments& arguments) {
    TableReader reader(arguments.separator, {.bins = arguments.bins});
    reader.add(input);
    input = {};  // makes room for the items
    return reader.finish();
}

Database read_database(const Arguments& arguments) {
    TextInput input = read_text(arguments.transactions);
    switch (arguments.format) {
        case Format::basket:
            return read_basket(input, arguments.separator);
        case Format::table:
            return read_table(std::move(input), arguments);
        case Format::fimi:
            break;
    }
    return read_fimi(input);
}

/// Throws Error when there are no classes, since korv stops at an empty class file.
void require_classes(const MinedClasses& classes, const Database& database, Count min_support) {
    if (classes.size() > 0) {
        return;
    }
    std::size_t most = 0;
    for (const Database::ItemColumn& column : database.items) {
        most = std::max(most, column.transactions.size());
    }
    throw Error("--min-support: no item is in " + std::to_string(min_support) +
                " transactions; the most frequent one is in " + std::to_string(most));
}

/// Throws Error when an output would replace the input or the other output.
void require_distinct_files(const Arguments& arguments) {
    std::vector<NamedFile> outputs = {{arguments.output, "the class file (-o)"}};
    if (!arguments.names.empty()) {
        outputs.push_back({arguments.names, "the names file (--names)"});
    }
    require_distinct({{arguments.transactions, "the input"}}, outputs);
}

void write_classes(const MinedClasses& classes, AtomicOutput& output) {
    std::string record;
    classes.for_each([&](const MinedClass& each) {
        record.clear();
        append_class_record(each.closure, each.support, each.essentials, record);
        output.write(record);
    });
}

void run(Arguments arguments) {
    const auto start = std::chrono::steady_clock::now();
    remove_temporary_files_on_signals();
    require_distinct_files(arguments);
    const Database database = within_memory([&] { return read_database(arguments); },
                                            [&] { return "while reading " + name_of_input(arguments); });
    const Count min_support = in_transactions(arguments.min_support, database.transactions);
    arguments.mining.min_support = min_support;
    // The outputs are opened before the work begins, so that a wrong path is found early.
    AtomicOutput output(arguments.output);
    std::optional<AtomicOutput> names;
    if (!arguments.names.empty()) {
        names.emplace(arguments.names);
        names->write(names_file(database.names));
    }

    const MinedClasses classes = mine_with_progress(database, arguments.mining, arguments.quiet);
    require_classes(classes, database, min_support);
    write_classes(classes, output);
    AtomicOutput::commit_together(names ? std::vector{&*names, &output} : std::vector{&output});

    if (!arguments.quiet) {
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        std::cerr << summary(database, min_support, classes, arguments.output, elapsed.count());
    }
}

}  // namespace

int main(int argc, char** argv) {
    open_standard_streams();
    try {
        run(parse_arguments(argc, argv));
        return 0;
    } catch (const std::bad_alloc&) {
        std::cerr << "korv-mine: out of memory\n";
        return 1;
    } catch (const std::exception& error) {
        std::cerr << "korv-mine: " << error.what() << '\n';
        return 1;
    }
}
