#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/itemset.h"

namespace korv {

/// A file's buffer to which short texts can be appended without the calls of the stream in between.
///
/// Once a text could not be written, because the disk is full for example, nothing more is.
class FileBuffer : public std::filebuf {
public:
    FileBuffer();
    ~FileBuffer() override;
    FileBuffer(const FileBuffer&) = delete;
    FileBuffer& operator=(const FileBuffer&) = delete;

    /// Where at least so many bytes can be written, which `advance` then appends; nullptr when there is no
    /// such room even in an empty buffer, when nothing was appended yet, or when a text could not be written.
    char* room_for(std::size_t bytes);

    /// Appends what was written to the room, up to `end`.
    void advance(const char* end) { pbump(static_cast<int>(end - pptr())); }

    /// False when the text, or an earlier one, could not be written.
    bool append(std::string_view text) {
        if (std::cmp_greater(text.size(), epptr() - pptr())) {
            return append_through(text);
        }
        std::ranges::copy(text, pptr());
        pbump(static_cast<int>(text.size()));
        return true;
    }

protected:
    int sync() override;

private:
    bool append_through(std::string_view text);
    void fail();

    bool failed_ = false;
    std::vector<char> memory_;
};

/// A text output file: created, or emptied, at construction; whole on disk after destruction.
///
/// Text goes in through the stream operators: numbers in decimal, doubles with six significant digits. It is
/// kept in a large buffer, since a run can write gigabytes in short lines: end lines with '\n', not
/// std::endl. A file that cannot be created is not reported: the stream stays failed and what is written to
/// it is lost.
class Output_Manager : public std::ofstream {
public:
    explicit Output_Manager(const std::string& file_name);
    Output_Manager(const Output_Manager&) = delete;
    Output_Manager& operator=(const Output_Manager&) = delete;

    // Of the file that is written, not of the one that the base would write.
    bool is_open() const { return file_.is_open(); }
    FileBuffer* rdbuf() { return &file_; }
    void open(const char*) = delete;
    void close() = delete;

    /// Appends text or a number, a double as "%g" would print it. The bytes are those of the stream
    /// operators; these go to the buffer without the stream's formatting, for the files that hold millions of
    /// numbers.
    Output_Manager& put(std::string_view text) {
        if (!file_.append(text)) {
            setstate(std::ios::badbit);
        }
        return *this;
    }
    Output_Manager& put(Count number);
    Output_Manager& put(double number);

    /// Writes each item in decimal, followed by one blank: {1, 4} as "1 4 ", the empty itemset as nothing.
    void write_out_basket(const Itemset& itemset);

private:
    /// An item and a blank, as a word of 8 bytes that is copied at once, the rest of it too.
    struct ItemText {
        std::array<char, 7> text;
        unsigned char size = 0;  ///< 0: not made
    };
    /// Items below this have a text of their own: at most six digits and a blank.
    static constexpr Item most_texts = 1'000'000;

    char* write_new(Item item, char* to);

    /// The buffer of the stream, in the place of its own.
    FileBuffer file_;
    std::vector<ItemText> item_texts_;  ///< by item, made when first written
};

}  // namespace korv
