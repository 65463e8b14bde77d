#include "mine/transaction_reader.h"

#include <algorithm>
#include <utility>

#include "common/class_file.h"
#include "common/csv.h"
#include "common/error.h"
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

/// Where the cells of a text begin: behind a line that says what their separator is.
std::size_t begin_of_cells(const TextInput& input, const ReadingReport& chosen) {
    const auto line = separator_line(input);
    return line && line->separator == chosen.separator ? line->end : 0;
}

/// The names of the columns of a table; none where they cannot be read.
std::vector<std::string> header_of(const TextInput& input, const ReadingReport& chosen) {
    CsvReader reader(input, *chosen.separator);
    reader.move_to(begin_of_cells(input, chosen));
    std::vector<std::string> names;
    try {
        std::vector<CsvCell> cells;
        reader.next(cells);
        for (const CsvCell& cell : cells) {
            names.emplace_back(cell.text);
        }
    } catch (const FormError&) {
        names.clear();
    }
    return names;
}

}  // namespace

void require_options_for(Format format, const ReadingOptions& options) {
    if (const auto misplaced = misplaced_option(format, options)) {
        throw UsageError(misplaced->option + ": goes with --format " + joined(misplaced->formats, word_for) +
                         " only" + (misplaced->instead.empty() ? "" : ", and " + misplaced->instead) +
                         "; found --format " + word_for(format));
    }
}

ReaderChoice choose_reader(const TextInput& input, const ReadingOptions& options) {
    ReaderChoice choice = {choose(input, options), input.name, {}};
    if (choice.report.format == Format::table) {
        choice.header = header_of(input, choice.report);
    }
    return choice;
}

std::size_t end_of_header(const TextInput& input, const ReadingReport& chosen) {
    CsvReader reader(input, *chosen.separator);
    reader.move_to(begin_of_cells(input, chosen));
    std::vector<CsvCell> cells;
    try {
        reader.next(cells);
    } catch (const FormError&) {
        return 0;
    }
    return reader.position();
}

bool decides_reader(const TextInput& input, const ReadingOptions& options) {
    require_line_ends(input);
    return !is_blank(input) || options.format == Format::table;
}

TransactionReader::TransactionReader(const ReadingOptions& options, ReaderChoice choice)
    : options_(options), choice_(std::move(choice)) {
    make_reader();
}

void TransactionReader::add(TextInput input) {
    const bool decides = decides_reader(input, options_);
    if (!reader_ && !decides) {
        blank_.push_back(std::move(input));  // which says nothing about the format
        return;
    }
    if (reader_) {
        require_same_kind(input);
    } else {
        choice_ = {choose(input, options_), input.name, {}};
        make_reader();
        for (TextInput& blank : blank_) {
            read({std::move(blank), true, false, {}});
        }
        blank_.clear();
    }
    if (choice_.report.format == Format::table) {
        require_cells(input, *choice_.report.separator);
    }
    read({std::move(input), true, false, {}});
}

void TransactionReader::add_part(const TextPart& part) {
    if (part.is_beginning) {
        // Whoever has the first line of a text has the whole text where no line ends in it.
        require_line_ends(part.lines);
        const TextInput beginning = part.beginning();
        if (!part.is_deciding) {
            require_same_kind(beginning);
        }
        if (choice_.report.format == Format::table) {
            require_cells(beginning, *choice_.report.separator);
        }
    }
    read(part);
}

void TransactionReader::take_header() {
    if (choice_.report.format == Format::table && !choice_.header.empty()) {
        std::get<TableReader>(*reader_).take_header(choice_.header, choice_.first);
    }
}

Database TransactionReader::finish() {
    return reader_ ? std::visit([](auto& reader) { return reader.finish(); }, *reader_) : Database();
}

ReadingReport TransactionReader::report() const {
    ReadingReport report = choice_.report;
    if (reader_ && std::holds_alternative<TableReader>(*reader_)) {
        report.table = std::get<TableReader>(*reader_).report();
    }
    return report;
}

void TransactionReader::make_reader() {
    switch (choice_.report.format) {
        case Format::fimi:
            reader_.emplace(std::in_place_type<FimiReader>, options_.weighted);
            return;
        case Format::basket:
            reader_.emplace(std::in_place_type<BasketReader>, *choice_.report.separator, options_.weighted);
            return;
        case Format::table:
            reader_.emplace(std::in_place_type<TableReader>, *choice_.report.separator, options_.table);
            return;
    }
}

/// Throws Error where the lines of a later text tell another format or separator than those of the first.
void TransactionReader::require_same_kind(const TextInput& input) const {
    if (is_blank(input)) {
        return;
    }
    if (choice_.report.separator && !options_.separator) {
        const auto other = another_separator(input, *choice_.report.separator, options_.weighted);
        if (other) {
            throw Error(input.name + ": found " + shown_separator(*other) + " between cells; expected " +
                        shown_separator(*choice_.report.separator) + " as in " + choice_.first +
                        ", or --separator to say which");
        }
    }
    if (!options_.format) {
        const FormatGuess guess = guess_format(input, {choice_.report.separator, options_.weighted});
        if (guess.format && guess.format != choice_.report.format) {
            throw Error(input.name + ": found " + guess.seen + ", which looks like " +
                        word_for(*guess.format) + "; expected " + word_for(choice_.report.format) +
                        " as in " + choice_.first + ", or --format to say which");
        }
    }
}

void TransactionReader::read(const TextPart& part) {
    const auto beginning = [&] { return part.beginning ? part.beginning() : part.lines; };
    try {
        read_lines(part);
    } catch (const FormError& error) {
        throw Error(error.what() + hint_behind_error(beginning()));
    } catch (const Error& error) {
        if (!options_.weighted || !is_table_without_weights(beginning(), options_.separator)) {
            throw;
        }
        throw Error(error.what() +
                    std::string("; if this is a table, say --format table, and --weight COLUMN where a "
                                "column says how many times each line occurs"));
    }
}

void TransactionReader::read_lines(const TextPart& part) {
    const std::size_t begin = part.is_beginning ? begin_of_cells(part.lines, choice_.report) : 0;
    if (auto* const fimi = std::get_if<FimiReader>(&*reader_)) {
        fimi->add(part.lines);
    } else if (auto* const baskets = std::get_if<BasketReader>(&*reader_)) {
        baskets->add(part.lines, begin);
    } else if (part.is_beginning) {
        std::get<TableReader>(*reader_).add(part.lines, begin);
    } else {
        std::get<TableReader>(*reader_).add_lines(part.lines);
    }
}

/// How to read an input that does not have the form that it should have.
std::string TransactionReader::hint_behind_error(const TextInput& input) const {
    if (choice_.report.format == Format::fimi) {
        const FormatGuess guess = guess_format_of_names(input, {{}, options_.weighted});
        return guess.format ? "; try --format " + word_for(*guess.format) + ", since there are " + guess.seen
                            : "";
    }
    return choice_.report.format_seen.empty()
               ? ""
               : " (read as " + noun_for(choice_.report.format) + ", guessed from " +
                     choice_.report.format_seen + "; say --format if it is something else)";
}

}  // namespace korv::tools
