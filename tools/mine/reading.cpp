#include "mine/reading.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <variant>

#include "common/class_file.h"
#include "common/error.h"
#include "common/text_input.h"
#include "mine/basket.h"
#include "mine/fimi.h"
#include "mine/separator_line.h"

namespace korv::tools {

namespace {

/// What a text of a format is, in a sentence.
std::string noun_for(Format format) {
    switch (format) {
        case Format::basket:
            return "baskets";
        case Format::table:
            return "a table";
        case Format::fimi:
            break;
    }
    return "fimi (items as numbers)";
}

/// An option that does not go with a format, and the formats that it goes with.
struct MisplacedOption {
    std::string option;
    std::vector<Format> formats;
    std::string instead;  ///< what goes with the format in its place; empty for nothing
};

std::optional<MisplacedOption> misplaced_option(Format format, const ReadingOptions& options) {
    if (format != Format::table && !options.given_for_tables.empty()) {
        return MisplacedOption{options.given_for_tables.front(), {Format::table}, ""};
    }
    if (format == Format::fimi && options.separator) {
        return MisplacedOption{"--separator", {Format::basket, Format::table}, ""};
    }
    if (format == Format::table && options.weighted) {
        return MisplacedOption{"--weighted", {Format::fimi, Format::basket}, "--weight NAME with tables"};
    }
    return std::nullopt;
}

/// "table", or "basket or table", each made by `words`.
template <typename Words>
std::string joined(const std::vector<Format>& formats, Words words) {
    std::string text;
    for (const Format format : formats) {
        text += (text.empty() ? "" : " or ") + words(format);
    }
    return text;
}

/// Throws Error where options do not go with the format that was given.
void require_options_for(Format format, const ReadingOptions& options) {
    if (const auto misplaced = misplaced_option(format, options)) {
        throw UsageError(misplaced->option + ": goes with --format " + joined(misplaced->formats, word_for) +
                         " only" + (misplaced->instead.empty() ? "" : ", and " + misplaced->instead) +
                         "; found --format " + word_for(format));
    }
}

/// Throws Error where options do not go with the format that was guessed.
void require_options_for(const FormatGuess& guess, const TextInput& input, const ReadingOptions& options) {
    if (const auto misplaced = misplaced_option(*guess.format, options)) {
        const std::string& option = misplaced->option;
        throw UsageError(input.name + ": found " + noun_for(*guess.format) + ", guessed from " + guess.seen +
                         "; expected " + joined(misplaced->formats, noun_for) + ", since " + option +
                         " is given: leave " + option + " out, or say --format " +
                         joined(misplaced->formats, word_for) + " if that is what it is");
    }
}

[[noreturn]] void refuse_doubtful(const TextInput& input, const FormatGuess& guess, bool weighted) {
    const std::string formats = weighted ? "fimi or basket" : "fimi, basket or table";
    const std::string place = guess.line ? ":" + std::to_string(*guess.line) : "";
    throw Error(input.name + place + ": found " + guess.seen + "; expected " +
                (guess.has_several_separators ? "--separator to say which"
                                              : "--format to say whether it is " + formats));
}

/// Throws Error for what is no list of transactions, but of their classes.
void refuse_class_file(const TextInput& input) {
    if (looks_like_class_file(input.text)) {
        throw Error(input.name +
                    ": found a class file, as far as its first lines tell; expected transactions, or "
                    "--format to say how "
                    "these are written (korv reads class files, and korv-check checks them)");
    }
}

/// Throws Error for a table of one column whose header shows that another separator is meant.
void require_cells(const TextInput& input, char separator) {
    if (const auto other = other_separator_of_header(input, separator)) {
        const std::string word =
            other->separator == '\t' ? "tab" : "'" + std::string(1, other->separator) + "'";
        throw Error(input.name + ": the header has one column and holds " + std::to_string(other->count) +
                    " " + shown_separator(other->separator) + "; try --separator " + word);
    }
}

bool is_blank(const TextInput& input) {
    return input.text.find_first_not_of(" \t\r\n") == std::string::npos;
}

/// Throws Error for a text whose lines end with CR alone, which would be a single line.
void require_line_ends(const TextInput& input) {
    const std::size_t first = input.text.find('\r');
    if (first < input.text.size() - 1 && input.text.find('\n') == std::string::npos) {
        throw input_error(input.name, place_of(input, first), "a line that ends with CR alone",
                          "lines that end with LF or CR LF (tr '\\r' '\\n' converts them)");
    }
}

std::optional<char> stated_separator(const TextInput& input) {
    const auto line = separator_line(input);
    return line ? std::optional(line->separator) : std::nullopt;
}

/// Decides how to read, by the first text in which anything is written.
ReadingReport choose(const TextInput& input, const ReadingOptions& options) {
    ReadingReport chosen;
    chosen.separator = options.separator ? options.separator : stated_separator(input);
    if (options.format) {
        require_options_for(*options.format, options);
        chosen.format = *options.format;
    } else {
        refuse_class_file(input);
        const FormatGuess guess = guess_format(input, {chosen.separator, options.weighted});
        if (!guess.format) {
            refuse_doubtful(input, guess, options.weighted);
        }
        require_options_for(guess, input, options);
        chosen.format = *guess.format;
        chosen.format_seen = guess.seen;
        if (!chosen.separator) {
            chosen.separator = guess.separator;
            chosen.separator_guessed = guess.separator.has_value();
        }
    }
    if (chosen.format == Format::fimi) {
        chosen.separator = {};
        return chosen;
    }
    if (!chosen.separator) {
        chosen.separator = guess_separator(input, chosen.format, options.weighted);
        chosen.separator_guessed = true;
    }
    return chosen;
}

/// Reads one text after the other by the reader that the first one asks for.
class Texts {
public:
    explicit Texts(const ReadingOptions& options) : options_(options) {}

    void add(TextInput input) {
        require_line_ends(input);
        if (!reader_ && is_blank(input) && options_.format != Format::table) {
            blank_.push_back(std::move(input));  // which says nothing about the format
            return;
        }
        if (reader_) {
            require_same_kind(input);
        } else {
            choose_reader(input);
        }
        if (chosen_.format == Format::table) {
            require_cells(input, *chosen_.separator);
        }
        read(input);
    }

    /// Call this once, last.
    Database finish() {
        return reader_ ? std::visit([](auto& reader) { return reader.finish(); }, *reader_) : Database();
    }

    /// Call this behind finish().
    ReadingReport report() const {
        ReadingReport report = chosen_;
        if (reader_ && std::holds_alternative<TableReader>(*reader_)) {
            report.table = std::get<TableReader>(*reader_).report();
        }
        return report;
    }

private:
    void choose_reader(const TextInput& input) {
        chosen_ = choose(input, options_);
        first_ = input.name;
        make_reader();
        for (const TextInput& blank : blank_) {
            read(blank);
        }
        blank_.clear();
    }

    void make_reader() {
        switch (chosen_.format) {
            case Format::fimi:
                reader_.emplace(std::in_place_type<FimiReader>, options_.weighted);
                return;
            case Format::basket:
                reader_.emplace(std::in_place_type<BasketReader>, *chosen_.separator, options_.weighted);
                return;
            case Format::table:
                reader_.emplace(std::in_place_type<TableReader>, *chosen_.separator, options_.table);
                return;
        }
    }

    /// Throws Error where the lines of a later text tell another format or separator than those of the first.
    void require_same_kind(const TextInput& input) const {
        if (is_blank(input)) {
            return;
        }
        if (chosen_.separator && !options_.separator) {
            const auto other = another_separator(input, *chosen_.separator, options_.weighted);
            if (other) {
                throw Error(input.name + ": found " + shown_separator(*other) + " between cells; expected " +
                            shown_separator(*chosen_.separator) + " as in " + first_ +
                            ", or --separator to say which");
            }
        }
        if (!options_.format) {
            const FormatGuess guess = guess_format(input, {chosen_.separator, options_.weighted});
            if (guess.format && guess.format != chosen_.format) {
                throw Error(input.name + ": found " + guess.seen + ", which looks like " +
                            word_for(*guess.format) + "; expected " + word_for(chosen_.format) + " as in " +
                            first_ + ", or --format to say which");
            }
        }
    }

    void read(const TextInput& input) {
        try {
            if (auto* const fimi = std::get_if<FimiReader>(&*reader_)) {
                fimi->add(input);
            } else if (auto* const baskets = std::get_if<BasketReader>(&*reader_)) {
                baskets->add(input, begin_of(input));
            } else {
                std::get<TableReader>(*reader_).add(input, begin_of(input));
            }
        } catch (const FormError& error) {
            throw Error(error.what() + hint_behind_error(input));
        } catch (const Error& error) {
            if (!options_.weighted || !is_table_without_weights(input, options_.separator)) {
                throw;
            }
            throw Error(error.what() +
                        std::string("; if this is a table, say --format table, and --weight COLUMN where a "
                                    "column says how many times each line occurs"));
        }
    }

    /// Where the cells begin: behind a line that says what their separator is.
    std::size_t begin_of(const TextInput& input) const {
        const auto line = separator_line(input);
        return line && line->separator == chosen_.separator ? line->end : 0;
    }

    /// How to read an input that does not have the form that it should have.
    std::string hint_behind_error(const TextInput& input) const {
        if (chosen_.format == Format::fimi) {
            const FormatGuess guess = guess_format_of_names(input, {{}, options_.weighted});
            return guess.format
                       ? "; try --format " + word_for(*guess.format) + ", since there are " + guess.seen
                       : "";
        }
        return chosen_.format_seen.empty()
                   ? ""
                   : " (read as " + noun_for(chosen_.format) + ", guessed from " + chosen_.format_seen +
                         "; say --format if it is something else)";
    }

    const ReadingOptions& options_;
    ReadingReport chosen_;
    std::string first_;  ///< the name of the text by which it was chosen
    std::optional<std::variant<FimiReader, BasketReader, TableReader>> reader_;
    std::vector<TextInput> blank_;  ///< those before that text
};

/// The number of transactions without an item. O(lines + occurrences of items).
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

/// Standard input has an end only once.
void require_standard_input_once(const std::vector<std::string>& paths) {
    if (std::ranges::count(paths, "-") > 1) {
        throw UsageError("-: found twice among the inputs; expected standard input at most once");
    }
}

std::string name_of(const std::vector<std::string>& paths) {
    const std::string first = paths.front() == "-" ? "standard input" : paths.front();
    return paths.size() == 1 ? first : first + " and " + std::to_string(paths.size() - 1) + " more";
}

}  // namespace

Database read_database(const std::vector<std::string>& paths, const ReadingOptions& options,
                       ReadingReport& report) {
    require_standard_input_once(paths);
    return read_database(read_text(paths.front()), paths, options, report);
}

Database read_database(TextInput first, const std::vector<std::string>& paths, const ReadingOptions& options,
                       ReadingReport& report) {
    require_standard_input_once(paths);
    Texts texts(options);
    texts.add(std::move(first));
    for (auto path = std::next(paths.begin()); path != paths.end(); ++path) {
        texts.add(read_text(*path));
    }
    Database database = texts.finish();
    if (database.items.empty()) {
        throw Error(name_of(paths) + ": found no item; expected one transaction a line");
    }
    report = texts.report();
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
