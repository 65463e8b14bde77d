#pragma once

#include <istream>
#include <vector>

#include "base/itemset.h"
#include "engine/classes.h"

namespace korv {

/// Reads a class file, record by record.
///
/// A record is the items of a closed itemset, a TAB, its support, a separator and a spare character, then the
/// essential itemsets, each closed by a comma; a comma directly followed by a line end closes the record.
/// Nothing is validated: everything else is taken as the steps of the reader make it, and a character never
/// leads to an error. One pass, one character at a time, O(characters).
///
/// All state of the reader is the read position and the flags of `input`, which must outlive it and is never
/// closed here.
class ClassFileReader {
public:
    explicit ClassFileReader(std::istream& input) : input_(input) {}

    /// Makes the next read start at the beginning of the file; of an input that cannot be repositioned (a
    /// pipe), where it stands.
    void rewind();

    /// Whether the end of the file was met. There is nothing more to read then.
    bool is_at_end() const { return input_.eof(); }

    /// Parses the next record: `itemset` and each essential itemset come sorted ascending with duplicates
    /// kept, the essential ones in the order of the record. Numbers wrap at 32 bits. Returns false for a
    /// record without items, which is also what the end of the file looks like.
    bool read(Itemset& itemset, data& of_class);

private:
    int read_character();
    Count scan_number(int& character);
    const Itemset& read_itemset(char terminator);
    std::vector<Itemset> read_essentials(std::size_t closed_itemset_size);

    std::istream& input_;
    // While a record is read.
    std::streambuf* source_ = nullptr;  ///< of `input_`
    bool ended_ = false;                ///< whether the end of the file was met
    Itemset items_;                     ///< of the itemset just read
};

}  // namespace korv
