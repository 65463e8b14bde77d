#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <optional>

#include "common/atomic_output.h"
#include "common/error.h"
#include "io/class_record.h"
#include "mine/arguments.h"
#include "mine/miner.h"
#include "mine/named_items.h"
#include "mine/progress.h"
#include "mine/reading.h"
#include "mine/summary.h"

namespace {

using namespace korv;
using namespace korv::tools;

std::vector<MinedClass> mine_with_progress(const Database& database, const MiningOptions& options,
                                           bool quiet) {
    if (quiet || ::isatty(STDERR_FILENO) == 0) {
        return mine(database, options);
    }
    ProgressDisplay display(std::cerr);
    return mine(database, options, [&display](const MiningProgress& progress) { display.show(progress); });
}

/// Throws Error when there are no classes, since korv stops at an empty class file.
void require_classes(const std::vector<MinedClass>& classes, const Database& database, Count min_support) {
    if (!classes.empty()) {
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
void require_different_files(const Arguments& arguments) {
    const auto require_different = [](const std::string& one, const std::string& other) {
        if (!one.empty() && is_same_file(one, other)) {
            throw Error(one + ": found for two of transactions, class file and names; expected three files");
        }
    };
    for (const std::string& transactions : arguments.transactions) {
        if (arguments.output != "-") {
            require_different(arguments.output, transactions);
        }
        require_different(arguments.names, transactions);
    }
    require_different(arguments.names, arguments.output);
}

void write_classes(const std::vector<MinedClass>& classes, AtomicOutput& output) {
    std::string record;
    for (const MinedClass& each : classes) {
        record.clear();
        append_class_record(each.closure, each.support, each.essentials, record);
        output.write(record);
    }
    output.finish();
}

void run(Arguments arguments) {
    const auto start = std::chrono::steady_clock::now();
    remove_outputs_on_signals();
    ReadingReport report;
    const Database database = read_database(arguments.transactions, arguments.reading, report);
    arguments.names = names_path(arguments.names, report.format, arguments.output);
    require_different_files(arguments);
    const Count min_support = in_transactions(arguments.min_support, database.transactions);
    arguments.mining.min_support = min_support;
    // The outputs are opened before the work begins, so that a wrong path is found early.
    AtomicOutput output(arguments.output);
    std::optional<AtomicOutput> names;
    if (!arguments.names.empty()) {
        names.emplace(arguments.names);
        names->write(names_file(database.names));
    }

    const std::vector<MinedClass> classes = mine_with_progress(database, arguments.mining, arguments.quiet);
    require_classes(classes, database, min_support);
    write_classes(classes, output);
    if (names) {
        names->commit();
    }
    output.commit();

    if (!arguments.quiet) {
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        std::cerr << summary(database, min_support, classes, arguments.output, elapsed.count());
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        run(parse_arguments(argc, argv));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "korv-mine: " << error.what() << '\n';
        return 1;
    }
}
