#include "io/class_file_reader.h"

#include <algorithm>
#include <string>

namespace korv {

namespace {

/// What a character is read as when there is none.
constexpr int end_of_file = std::char_traits<char>::eof();

// Everything else, bytes of 128 and above and the end of the file among them, only separates numbers.
bool is_digit(int character) {
    return character >= '0' && character <= '9';
}

}  // namespace

void ClassFileReader::rewind() {
    input_.clear();
    input_.seekg(0);
    if (!input_) {
        input_.clear();
    }
}

bool ClassFileReader::read(Itemset& itemset, data& of_class) {
    source_ = input_.rdbuf();
    ended_ = false;
    itemset = read_itemset('\t');
    int character = read_character();
    of_class.support = is_digit(character) ? scan_number(character) : 0;
    // The spare character before the first essential itemset: skipped whatever it is.
    read_character();
    of_class.essentials = read_essentials(itemset.size());
    return !itemset.empty();
}

/// Reads one character, or end_of_file. Where the file ends, or cannot be read on, there are no more
/// characters, which ends every loop of the reader.
///
/// From the stream's buffer, since a formatted or unformatted input function costs several times as much.
int ClassFileReader::read_character() {
    int character = end_of_file;
    try {
        character = ended_ ? end_of_file : source_->sbumpc();
    } catch (...) {
        // A read error. What was read until then counts, as at the end of the file.
    }
    if (character == end_of_file) {
        ended_ = true;
        input_.setstate(std::ios::eofbit | std::ios::failbit);
    }
    return character;
}

/// The number that begins with the digit `character`. Consumes the character that ends it, which becomes
/// `character`.
Count ClassFileReader::scan_number(int& character) {
    Count value = 0;
    do {
        value = value * 10 + static_cast<Count>(character - '0');
        character = read_character();
    } while (is_digit(character));
    return value;
}

/// Reads the numbers up to `terminator` or the end of the file, sorted: into a buffer that stays, since an
/// itemset that is not kept then costs no allocation, and one that is costs one of its size.
const Itemset& ClassFileReader::read_itemset(char terminator) {
    items_.clear();
    int character = end_of_file;
    do {
        character = read_character();
        if (is_digit(character)) {
            items_.push_back(scan_number(character));
        }
    } while (character != end_of_file && character != terminator);
    // In a class file they are in order already, as a rule.
    if (!std::ranges::is_sorted(items_)) {
        std::ranges::sort(items_);
    }
    return items_;
}

/// The essential itemsets of a record, up to a comma directly followed by a line end.
std::vector<Itemset> ClassFileReader::read_essentials(std::size_t closed_itemset_size) {
    std::vector<Itemset> essentials;
    int character = end_of_file;
    do {
        const Itemset& essential = read_itemset(',');
        // An essential itemset as large as its closed itemset is that itemset: the class does not store it.
        // Sizes alone decide; an empty one is stored.
        if (essential.size() != closed_itemset_size) {
            essentials.push_back(essential);
        }
        // The character after a comma is not looked at, except for a line end: a digit there is lost.
        character = read_character();
    } while (character != end_of_file && character != '\n');
    return essentials;
}

}  // namespace korv
