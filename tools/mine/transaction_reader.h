#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "common/text_input.h"
#include "mine/basket.h"
#include "mine/database.h"
#include "mine/fimi.h"
#include "mine/reading.h"
#include "mine/table.h"

namespace korv::tools {

/// How all texts of a database are read.
struct ReaderChoice {
    ReadingReport report;             ///< what is known before anything is read
    std::string first;                ///< the name of the text by which it was chosen
    std::vector<std::string> header;  ///< of a table: the names of its columns
};

/// Decides how to read, by the first text in which anything is written. `input` is that text, or its
/// beginning as guess_format needs it, with the whole header of a table; where that header cannot be read,
/// none is set. Throws Error where the format or the separator cannot be told, and where options do not go
/// with it.
ReaderChoice choose_reader(const TextInput& input, const ReadingOptions& options);

/// Whether a text decides how to read: something is written in it, or it has to be a table. `input`: as for
/// choose_reader. Throws Error for a text whose lines end with CR alone.
bool decides_reader(const TextInput& input, const ReadingOptions& options);

/// Where the lines behind the header begin in a table, or in its beginning as choose_reader needs it; 0 where
/// the header cannot be read.
std::size_t end_of_header(const TextInput& input, const ReadingReport& chosen);

/// Throws UsageError where options do not go with the format that was given.
void require_options_for(Format format, const ReadingOptions& options);

/// Lines of a text that several processes read.
struct TextPart {
    TextInput lines;
    bool is_beginning = false;  ///< whether the text begins with them
    bool is_deciding = false;   ///< whether it is the text by which the reader was chosen
    /// Gives the beginning of the text as guess_format needs it.
    std::function<TextInput()> beginning = {};
};

/// Reads texts, one after the other, as one database. Throws Error as read_database does.
class TransactionReader {
public:
    /// A reader that is chosen by the first text in which anything is written. `options` must outlive it.
    explicit TransactionReader(const ReadingOptions& options) : options_(options) {}

    /// A reader that was chosen, for parts of texts.
    TransactionReader(const ReadingOptions& options, ReaderChoice choice);

    /// Reads a whole text.
    void add(TextInput input);

    /// Reads lines behind those that were read before. A reader of tables must begin with the deciding text,
    /// or be told the header.
    void add_part(const TextPart& part);

    /// Tells a reader of tables the header of the deciding text, whose beginning it does not read.
    void take_header();

    /// The transactions of all texts in their order; empty where nothing is written in any. Call this once,
    /// last.
    Database finish();

    /// Call this behind finish().
    ReadingReport report() const;

    using Reader = std::variant<FimiReader, BasketReader, TableReader>;

    /// What reads, once it was chosen.
    Reader& reader() { return *reader_; }

private:
    void make_reader();
    void require_same_kind(const TextInput& input) const;
    void read(const TextPart& part);
    void read_lines(const TextPart& part);
    std::string hint_behind_error(const TextInput& input) const;

    const ReadingOptions& options_;
    ReaderChoice choice_;
    std::optional<Reader> reader_;
    std::vector<TextInput> blank_;  ///< those before the text that decides
};

}  // namespace korv::tools
