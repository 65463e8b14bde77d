#include "Input_Output_Manager.h"

#include <algorithm>
#include <iostream>
#include <string>
#include <utility>

namespace korv {

namespace {

// Everything else, bytes of 128 and above among them, only separates numbers.
bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

Input_Output_Manager::Input_Output_Manager(std::istream& input, const std::string& file_name)
    : Output_Manager(file_name), input_(input) {}

void Input_Output_Manager::rewind() {
    input_.clear();
    input_.seekg(0);
    if (!input_) {
        input_.clear();
    }
}

bool Input_Output_Manager::read_in_a_line(Itemset& itemset, Count& support,
                                          std::vector<Itemset>& essentials) {
    if (input_.eof()) {
        std::cout << "fin de fichier" << std::endl;
        return false;
    }
    itemset = read_itemset('\t');
    support = read_digit() ? scan_number() : 0;
    // The spare character before the first essential itemset: skipped whatever it is.
    read_character();
    essentials = read_essentials(itemset.size());
    return !itemset.empty();
}

/// Reads one character into `current_`. At the end of the file, and where the file cannot be read on, it sets
/// the end-of-file flag, which ends every loop of the reader, and leaves `current_` as it is.
///
/// From the stream's buffer, since a formatted or unformatted input function costs several times as much.
void Input_Output_Manager::read_character() {
    constexpr auto end_of_file = std::char_traits<char>::eof();
    auto next = end_of_file;
    try {
        next = input_.rdbuf()->sbumpc();
    } catch (...) {
        // A read error. What was read until then counts, as at the end of the file.
    }
    if (next == end_of_file) {
        input_.setstate(std::ios::eofbit | std::ios::failbit);
        return;
    }
    current_ = std::char_traits<char>::to_char_type(next);
}

/// Reads one character; true when there was one and it is a digit.
bool Input_Output_Manager::read_digit() {
    read_character();
    return input_.good() && is_digit(current_);
}

/// The number whose first digit was just read. Consumes the character that ends it, which becomes `current_`.
Count Input_Output_Manager::scan_number() {
    Count value = 0;
    do {
        value = value * 10 + static_cast<Count>(current_ - '0');
    } while (read_digit());
    return value;
}

/// The numbers up to `terminator` or the end of the file, sorted.
Itemset Input_Output_Manager::read_itemset(char terminator) {
    Itemset items;
    do {
        if (read_digit()) {
            items.push_back(scan_number());
        }
    } while (!input_.eof() && current_ != terminator);
    std::sort(items.begin(), items.end());
    return items;
}

/// The essential itemsets of a record, up to a comma directly followed by a line end.
std::vector<Itemset> Input_Output_Manager::read_essentials(std::size_t closed_itemset_size) {
    std::vector<Itemset> essentials;
    do {
        Itemset essential = read_itemset(',');
        // An essential itemset as large as its closed itemset is that itemset: the class does not store it.
        // Sizes alone decide; an empty one is stored.
        if (essential.size() != closed_itemset_size) {
            essentials.push_back(std::move(essential));
        }
        // The character after a comma is not looked at, except for a line end: a digit there is lost.
        read_character();
    } while (!input_.eof() && current_ != '\n');
    return essentials;
}

}  // namespace korv
