#include "mine/reading.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/error.h"
#include "common/text_input.h"
#include "mine/transaction_reader.h"

namespace korv::tools {

namespace {

std::string name_of(const std::vector<std::string>& paths) {
    const std::string first = paths.front() == "-" ? "standard input" : paths.front();
    return paths.size() == 1 ? first : first + " and " + std::to_string(paths.size() - 1) + " more";
}

}  // namespace

void require_standard_input_once(const std::vector<std::string>& paths) {
    if (std::ranges::count(paths, "-") > 1) {
        throw UsageError("-: found twice among the inputs; expected standard input at most once");
    }
}

void refuse_without_items(const std::vector<std::string>& paths) {
    throw Error(name_of(paths) + ": found no item; expected one transaction a line");
}

Count empty_transactions(const Database& database) {
    std::vector<bool> is_empty(database.lines, true);
    for (const Database::ItemColumn& column : database.items) {
        for (const Transaction transaction : column.transactions) {
            is_empty[transaction] = false;
        }
    }
    Count count = 0;
    for (std::size_t line = 0; line < is_empty.size(); ++line) {
        const Count weight = database.weights.empty() ? 1 : database.weights[line];
        count += is_empty[line] ? weight : 0;
    }
    return count;
}

Database read_database(const std::vector<std::string>& paths, const ReadingOptions& options,
                       ReadingReport& report) {
    require_standard_input_once(paths);
    return read_database(read_text(paths.front()), paths, options, report);
}

Database read_database(TextInput first, const std::vector<std::string>& paths, const ReadingOptions& options,
                       ReadingReport& report) {
    require_standard_input_once(paths);
    TransactionReader reader(options);
    reader.add(std::move(first));
    for (auto path = std::next(paths.begin()); path != paths.end(); ++path) {
        reader.add(read_text(*path));
    }
    Database database = reader.finish();
    if (database.items.empty()) {
        refuse_without_items(paths);
    }
    report = reader.report();
    report.empty_transactions = empty_transactions(database);
    return database;
}

void check_together(const ReadingOptions& options) {
    if (options.format) {
        require_options_for(*options.format, options);
    }
}

std::string description(const ReadingReport& report) {
    std::string text = word_for(report.format);
    if (report.separator) {
        text += " with " + shown_separator(*report.separator);
    }
    if (!report.format_seen.empty()) {
        return text + " (guessed from " + report.format_seen + ")";
    }
    return text + (report.separator_guessed ? " (its separator was guessed)" : "");
}

}  // namespace korv::tools
