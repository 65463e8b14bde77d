#include "io/Output_Manager.h"

#include <array>
#include <charconv>
#include <cstring>
#include <span>

#include "base/number_text.h"

namespace korv {

namespace {

constexpr std::streamsize buffer_bytes = 1 << 16;

}  // namespace

FileBuffer::FileBuffer() : memory_(buffer_bytes) {
    // Taken only before the file is open.
    pubsetbuf(memory_.data(), buffer_bytes);
}

FileBuffer::~FileBuffer() {
    // Before the members go: the file is still written from the memory.
    close();
}

char* FileBuffer::room_for(std::size_t bytes) {
    const auto is_full = [&] { return std::cmp_greater(bytes, epptr() - pptr()); };
    if (is_full() && !failed_) {
        pubsync();  // writes the buffer
    }
    return is_full() ? nullptr : pptr();
}

/// Appends a text for which there is no room: the buffer, and a text longer than it, are written.
bool FileBuffer::append_through(std::string_view text) {
    const auto size = static_cast<std::streamsize>(text.size());
    if (!failed_ && sputn(text.data(), size) != size) {
        fail();
    }
    return !failed_;
}

/// Writes the buffer.
int FileBuffer::sync() {
    const int result = std::filebuf::sync();
    if (result != 0) {
        fail();
    }
    return failed_ ? -1 : result;
}

void FileBuffer::fail() {
    failed_ = true;
    setp(nullptr, nullptr);  // no room for any later text, and nothing left to be written again
}

Output_Manager::Output_Manager(const std::string& file_name) {
    std::ios& stream = *this;
    stream.rdbuf(&file_);
    if (file_.open(file_name, std::ios::out | std::ios::trunc) == nullptr) {
        setstate(std::ios::failbit);
    }
}

Output_Manager& Output_Manager::put(Count number) {
    std::array<char, most_digits> digits;
    return put(std::string_view(digits.data(), write_number(number, digits.data())));
}

Output_Manager& Output_Manager::put(double number) {
    // Six significant digits, sign, point and an exponent of three digits fit.
    std::array<char, 16> digits;
    const auto* const last =
        std::to_chars(digits.begin(), digits.end(), number, std::chars_format::general, 6).ptr;
    return put(std::string_view(digits.begin(), last));
}

void Output_Manager::write_out_basket(const Itemset& itemset) {
    constexpr std::size_t most_bytes = most_digits + 1;  // of an item and a blank
    char* next = file_.room_for(itemset.size() * most_bytes);
    if (next == nullptr) {
        for (const Item item : itemset) {
            put(item).put(" ");
        }
        return;
    }
    // Locals, since what is written through a pointer to characters might be any member.
    std::span<const ItemText> texts = item_texts_;
    for (const Item item : itemset) {
        if (item < texts.size() && texts[item].size != 0) {
            const ItemText text = texts[item];
            std::memcpy(next, &text, sizeof text);
            next += text.size;
        } else {
            next = write_new(item, next);
            texts = item_texts_;
        }
    }
    file_.advance(next);
}

/// Writes an item and a blank to `to`, and keeps the text for the next time if it is short enough. Returns
/// the end of the text.
char* Output_Manager::write_new(Item item, char* to) {
    char* const blank = write_number(item, to);
    *blank = ' ';
    if (item < most_texts) {
        if (item >= item_texts_.size()) {
            item_texts_.resize(std::max<std::size_t>(item + 1, 2 * item_texts_.size()));
        }
        ItemText& text = item_texts_[item];
        text.size = static_cast<unsigned char>(blank + 1 - to);
        std::copy_n(to, text.size, text.text.begin());
    }
    return blank + 1;
}

}  // namespace korv
