#include "mine/summary.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "common/error.h"
#include "common/output_place.h"
#include "common/printable.h"
#include "common/quantity.h"
#include "common/shell_word.h"
#include "mine/ranked_items.h"

namespace korv::tools {

namespace {

/// A line of the summary.
void add(const std::string& label, const std::string& value, std::string& text) {
    text += label + std::string(20 - label.size(), ' ') + value + '\n';
}

/// Columns that are named, and notes of a kind. More would bury the rest.
constexpr std::size_t most_listed = 10;

/// "a, b and c", or "a, b and 20 more".
std::string list_of(const std::vector<std::string>& words) {
    const bool is_cut_off = words.size() > most_listed;
    const std::size_t named = is_cut_off ? most_listed : words.size();
    std::string text;
    for (std::size_t i = 0; i < named; ++i) {
        const std::string_view before = i == 0 ? "" : i + 1 == words.size() ? " and " : ", ";
        text.append(before).append(shown(words[i]));
    }
    return is_cut_off ? text + " and " + with_commas(words.size() - named) + " more" : text;
}

/// "1 item", "2 items".
std::string counted(std::size_t number, const std::string& noun) {
    return with_commas(number) + " " + noun + (number == 1 ? "" : "s");
}

void add_numbers_of_input(const DatabaseFigures& database, const ReadingReport& reading, std::string& text) {
    add("input", description(reading), text);
    add("transactions", with_commas(database.transactions), text);
    if (reading.empty_transactions > 0) {
        add("empty transactions", with_commas(reading.empty_transactions), text);
    }
    add("items", with_commas(database.items), text);
}

void add_numbers(const Run& run, std::string& text) {
    add_numbers_of_input(run.database, run.reading, text);
    add("frequent items", with_commas(run.database.frequent_items), text);
    add("essential itemsets", with_commas(run.classes.essentials), text);
    add("classes", with_commas(run.classes.classes) + (run.is_complete ? "" : ", which are not all"), text);
    add("largest closure", counted(run.classes.largest_closure, "item"), text);
    add("class file", size_text(run.classes.file_bytes), text);
    add("time", seconds_text(run.seconds), text);
    add("peak memory", with_commas(peak_memory()) + " MiB", text);
}

void add_uncut(const std::vector<UncutColumn>& columns, std::string& text) {
    std::size_t count = 0;
    for (const UncutColumn& column : columns) {
        if (!column.has_numbers || ++count > most_listed) {
            continue;
        }
        text += "Not cut: column " + shown(column.name) + ", since " + shown(column.cell) + " in " +
                printable(column.file) + ":" + std::to_string(column.place.line) + ":" +
                std::to_string(column.place.column) +
                " is no number such as 1234.5 (--missing says which words are none)\n";
    }
    if (count > most_listed) {
        text += "Columns besides these that are not cut for such cells: " + with_commas(count - most_listed) +
                "\n";
    }
}

void add_cut(const std::vector<std::string>& columns, std::string& text) {
    if (!columns.empty()) {
        text += "Cut into bins: the column" + std::string(columns.size() == 1 ? " " : "s ") +
                list_of(columns) + ", of many numbers (--bins says how; --bins none leaves them)\n";
    }
}

void add_identifiers(const std::vector<std::string>& columns, std::string& text) {
    if (columns.size() == 1) {
        text +=
            "The column " + list_of(columns) + " has another value in every line: --ignore leaves it out\n";
    } else if (!columns.empty()) {
        text += "The columns " + list_of(columns) +
                " have other values in every line: --ignore leaves columns out\n";
    }
}

void add_counts(const std::string& column, std::string& text) {
    if (!column.empty()) {
        text += "The column " + shown(column) + " looks like how often its line occurs: --weight " +
                shell_word(column) + " counts it so\n";
    }
}

void add_twins(const std::vector<std::vector<std::string>>& groups, std::string& text) {
    for (std::size_t i = 0; i < std::min(groups.size(), most_listed); ++i) {
        text += "The columns " + list_of(groups[i]) +
                " have their items in the same transactions, which doubles " +
                "every rule: --ignore leaves columns out\n";
    }
    if (groups.size() > most_listed) {
        text += "Groups of such columns besides these: " + with_commas(groups.size() - most_listed) + "\n";
    }
}

void add_notes_on_input(const ReadingReport& reading, std::string& text) {
    if (!reading.table) {
        return;
    }
    const TableReport& table = *reading.table;
    if (table.has_labels) {
        text += "The first column has no name, as labels of lines have none: it is left out\n";
    }
    add_cut(table.cut, text);
    add_uncut(table.uncut, text);
    add_identifiers(table.identifiers, text);
    add_counts(table.counts, text);
    add_twins(table.twins, text);
    if (table.left_out > 0) {
        text += counted(table.left_out, "line") + " with the weight 0 " +
                (table.left_out == 1 ? "is" : "are") + " left out\n";
    }
}

void add_notes(const Run& run, std::string& text) {
    add_notes_on_input(run.reading, text);
    if (run.classes.rare_bytes > run.classes.file_bytes / 2) {
        text += "Items in fewer than " + with_commas(run.options.min_support) + " transactions make up " +
                size_text(run.classes.rare_bytes) +
                " of the class file: --closure-items frequent leaves them out\n";
    }
}

/// The korv command that derives rules from the class file, with thresholds to start from.
std::string next_command(const Run& run) {
    const bool is_file = run.output != "-" && !is_special(run.output);
    const std::string name = is_file ? std::filesystem::path(run.output).stem().string() : "NAME";
    const Count one_in_a_hundred = (run.database.transactions + 99) / 100;
    return "korv " + shell_word(name) + " " + (is_file ? shell_word(run.output) : "CLASSES") + " " +
           std::to_string(std::max(run.options.min_support, one_in_a_hundred)) + " 0.8 " +
           std::to_string(run.database.transactions);
}

/// Where the names of the items are.
std::string names_note(const Run& run) {
    if (!run.names.empty()) {
        return "The names of its items are in " + shell_word(run.names) + "\n";
    }
    if (run.database.has_names) {
        return "The names of its items are not written: --names FILE says where they go\n";
    }
    return "";
}

}  // namespace

DatabaseFigures figures_of(const Database& database, Count min_support) {
    const auto frequent = std::ranges::count_if(
        database.items, [&](const auto& column) { return support_of(column, database) >= min_support; });
    return {.transactions = database.transactions,
            .items = database.items.size(),
            .frequent_items = static_cast<std::size_t>(frequent),
            .has_names = !database.names.empty()};
}

std::string summary_of_input(const Database& database, const ReadingReport& reading) {
    return summary_of_input({.transactions = database.transactions, .items = database.items.size()}, reading);
}

std::string summary_of_input(const DatabaseFigures& database, const ReadingReport& reading) {
    std::string text;
    add_numbers_of_input(database, reading, text);
    add_notes_on_input(reading, text);
    return text;
}

std::string summary(const Run& run) {
    std::string text;
    add_numbers(run, text);
    add_notes(run, text);
    text += "To derive rules: " + next_command(run) + '\n';
    return text + names_note(run);
}

}  // namespace korv::tools
