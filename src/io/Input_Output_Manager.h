#pragma once

#include <istream>
#include <string>
#include <vector>

#include "base/itemset.h"
#include "io/Output_Manager.h"

namespace korv {

/// Reader of the class file, and at the same time the lattice file's output stream.
///
/// A record of the class file is the items of a closed itemset, a TAB, its support, a separator and a spare
/// character, then the essential itemsets, each closed by a comma; a comma directly followed by a line end
/// closes the record. Nothing is validated: everything else is taken as the steps of read_in_a_line make it,
/// and a character never leads to an error. One pass, one character at a time, O(characters).
///
/// All state of the reader is the read position and the flags of `input`, which must outlive it and is never
/// closed here.
class Input_Output_Manager : public Output_Manager {
public:
    /// Reads from `input`; creates, or empties, the output file `file_name`.
    Input_Output_Manager(std::istream& input, const std::string& file_name);

    /// Makes the next read start at the beginning of the file; of an input that cannot be repositioned (a
    /// pipe), where it stands.
    void rewind();

    /// Parses the next record: `itemset` and each of `essentials` come sorted ascending with duplicates kept,
    /// `essentials` in the order of the record. Numbers wrap at 32 bits.
    ///
    /// Returns false for a record without items, which is also what the end of the file looks like. A call
    /// made when the end of the file was already met prints "fin de fichier" on standard output, returns
    /// false, and leaves the outputs alone.
    bool read_in_a_line(Itemset& itemset, Count& support, std::vector<Itemset>& essentials);

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
