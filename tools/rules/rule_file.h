#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/itemset.h"
#include "common/error.h"
#include "engine/rule.h"
#include "engine/rule_catalogue.h"

namespace korv::tools {

/// A side of a rule as a rule file has it.
struct RecordedSide {
    Itemset items;  ///< ascending, each once
    bool is_negated = false;
};

/// A record of a rule file: a rule, and what korv tells of it.
struct RuleRecord {
    RecordedSide premise;
    RecordedSide conclusion;
    Estimate<Count> support = {};
    /// As it was printed, with six digits. Nothing where the rule has no exception. The upper end of bounds
    /// may be infinite, or be no upper bound: see recorded_counts.h.
    std::optional<Estimate<double>> confidence;
    bool is_between_nodes = false;
    std::size_t line = 0;  ///< of the rule, from 1

    /// The group of its form, from 1, which the signs of its sides tell.
    std::size_t group() const {
        return premise.is_negated ? (conclusion.is_negated ? 2 : 4) : (conclusion.is_negated ? 3 : 1);
    }

    /// The first form of the catalogue that has such sides and comes from such nodes. Which of several it is
    /// cannot be told from a record.
    Form first_form() const;
};

/// A fault of a rule file.
class RuleFileFault : public Error {
public:
    RuleFileFault(std::string_view file, Place place, std::string_view found, std::string_view expected);

    Place place() const { return place_; }
    const std::string& found() const { return found_; }
    const std::string& expected() const { return expected_; }

private:
    Place place_;
    std::string found_;
    std::string expected_;
};

/// Reads the records of a rule file that korv wrote, one after the other, in bounded memory.
///
/// A file begins with the three lines of its header; what is in it is told from those and from the records,
/// not from its name. Several files may stand one behind the other. Each record must be as korv writes it,
/// but an item number may have zeros before it.
///
/// A side without items is written alike whether it is plain or negated; it is taken as negated where
/// transactions may meet it.
class RuleFileReader {
public:
    /// Writes up to `size` bytes to `out`, and fewer only at the end of the file. Returns how many.
    using ReadText = std::function<std::size_t(char* out, std::size_t size)>;

    /// `name`: of the file, for messages.
    RuleFileReader(ReadText read, std::string name);

    /// Reads the next record. Returns false at the end. Throws RuleFileFault at the first fault;
    /// there is nothing to be read then, and the record has what was read before it. O(bytes).
    bool next();

    /// The record that was read last.
    const RuleRecord& record() const { return record_; }

    const std::string& name() const { return name_; }

private:
    bool next_line();
    bool read_more();
    void read_header();
    void read_record();
    void read_rest_of_record();
    void read_side(RecordedSide& side, std::string_view end, std::string_view expected);
    void read_plain_items(Itemset& items);
    void read_negated_items(Itemset& items);
    void add_item(Itemset& items);
    void read_support(std::string_view expected);
    void read_bounds_of_confidence();
    void settle_sides_without_items();
    Count read_number(std::string_view expected);
    double read_ratio(std::string_view expected);
    void require_next_line(std::string_view expected);
    void take(std::string_view word, std::string_view expected);
    bool take_if(std::string_view word);
    void end_line();
    [[noreturn]] void fail(std::size_t position, std::string_view found, std::string_view expected) const;
    [[noreturn]] void fail_here(std::string_view expected) const;

    ReadText read_;
    std::string name_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;  ///< of what was read and is not yet taken, in the buffer
    std::size_t end_ = 0;
    std::string_view line_;     ///< without its line end
    bool has_line_end_ = true;  ///< whether it had one
    std::size_t line_number_ = 0;
    std::size_t position_ = 0;  ///< in the line
    bool is_exact_ = false;     ///< whether the rules have no exception, as the header says
    RuleRecord record_;
};

/// Whether a text begins with the first line of the header of a rule file.
bool looks_like_rule_file(std::string_view text);

}  // namespace korv::tools
