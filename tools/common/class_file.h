#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/itemset.h"
#include "base/itemset_table.h"
#include "common/error.h"
#include "common/finding_kind.h"
#include "common/text_input.h"
#include "engine/classes.h"
#include "io/class_loading.h"

namespace korv::tools {

/// The classes of a class file.
struct ClassFile {
    std::string name;  ///< of the input, for messages
    ClassMap classes;
    std::vector<std::uint32_t> lines;  ///< of the classes, from 1, in their order
};

/// A fault of a line of a class file.
class ClassLineFault : public Error {
public:
    ClassLineFault(FindingKind kind, std::string_view file, Place place, std::string_view found,
                   std::string_view expected);

    FindingKind kind() const { return kind_; }
    Place place() const { return place_; }
    const std::string& found() const { return found_; }
    const std::string& expected() const { return expected_; }

private:
    FindingKind kind_;
    Place place_;
    std::string found_;
    std::string expected_;
};

/// Reads the records of a class file, line by line, and checks each of them.
///
/// A record must be written as the grammar of class files says. Items may come in any order, but each once.
/// Essential itemsets have items, differ, and lie within the closed itemset; one that is the closed itemset
/// is the only one. The support is at least 1.
class ClassRecordReader {
public:
    /// `input` must outlive the reader.
    explicit ClassRecordReader(const TextInput& input) : input_(input), text_(input.text) {}

    /// Reads the next line. Returns false at the end. Throws ClassLineFault, with the place, at the first
    /// fault; the next call then goes on with the line behind it. O(bytes), as a rule; where essential
    /// itemsets are not in order (by size, then lexicographically), O(bytes + items * log of the essential
    /// itemsets).
    bool next();

    // The record that was read last.
    /// The items of the closed itemset, ascending.
    const Itemset& closed_itemset() const { return closed_itemset_; }
    Count support() const { return support_; }
    /// Each ascending, in the order of the line.
    const ItemsetTable& essentials() const { return essentials_; }
    /// Where its line begins in the text.
    std::size_t line_begin() const { return line_begin_; }
    /// The number of its line, from 1.
    std::size_t line() const { return line_; }
    /// Where the next line begins in the text.
    std::size_t line_end() const { return next_line_; }
    /// Where its first item stands that is smaller than the one before it; nothing where all ascend.
    std::optional<std::size_t> unordered() const { return unordered_; }
    /// Where its first number stands that has zeros before it.
    std::optional<std::size_t> leading_zeros() const { return leading_zeros_; }

private:
    void read_record();
    void read_itemset(char end, std::string_view expected_behind_item);
    Item read_item(std::size_t itemset_begin);
    Count read_number(std::string_view noun);
    void read_essentials();
    void require_each_item_once(std::size_t begin);
    void require_within_closed_itemset(std::size_t begin) const;
    void require_different(std::size_t begin) const;
    std::size_t begin_of_essential(std::size_t begin, std::size_t number) const;
    /// The byte at the position; behind the text stands a byte 0.
    char here() const { return *(input_.text.c_str() + position_); }
    std::string shown_at(std::size_t position) const;
    void require_support() const;
    FindingKind kind_at_item(std::size_t itemset_begin) const;
    FindingKind kind_behind_item() const;
    FindingKind kind_before_essential() const;
    bool is_comment() const;
    bool lacks_tab() const;
    void skip_blanks_at_end();
    std::string_view cure_of_carriage_return() const;
    [[noreturn]] void fail_here(FindingKind kind, std::string_view expected) const;
    [[noreturn]] void fail(FindingKind kind, std::size_t position, std::string_view found,
                           std::string_view expected) const;

    const TextInput& input_;
    std::string_view text_;
    std::size_t position_ = 0;
    std::size_t next_line_ = 0;  ///< where it begins
    std::size_t line_begin_ = 0;
    std::size_t line_ = 0;
    std::size_t support_begin_ = 0;
    bool is_in_essentials_ = false;  ///< rather than in the closed itemset
    std::optional<std::size_t> unordered_;
    std::optional<std::size_t> leading_zeros_;
    Itemset closed_itemset_;
    Count support_ = 0;
    ItemsetTable essentials_;
    Itemset items_;  ///< of the itemset that was read last
};

/// Reads a class file of which every record is as ClassRecordReader says, each closed itemset is there once,
/// and there is a class at least. Throws Error, with the place, at the first fault. A class is stored as korv
/// does it: without the essential itemset that is its closed itemset.
///
/// O(bytes + classes * log classes). The text is freed before the classes are put in order; so all of it
/// takes little more memory than korv does.
ClassFile read_class_file(TextInput input);

/// The class of a record as korv stores it: without the essential itemset that is its closed itemset.
std::pair<Itemset, data> stored_class(const ClassRecordReader& record);

/// The positions of the records by their closed itemsets; of equal ones the first record comes first.
std::vector<std::uint32_t> in_order(const Records& records);

/// The words for a closed itemset that is there twice: what is found in the later line.
std::string found_again(std::size_t earlier_line);
inline constexpr std::string_view expected_once = "each closed itemset once";

/// The words for an empty file.
inline constexpr std::string_view found_no_class = "an empty file";
inline constexpr std::string_view expected_classes =
    "classes: items, a tab, a support, a tab, essential itemsets";

/// Whether a text seems to be a class file: half of its first ten lines at least begin as records do.
bool looks_like_class_file(std::string_view text);

}  // namespace korv::tools
