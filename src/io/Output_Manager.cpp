#include "io/Output_Manager.h"

#include <array>
#include <charconv>
#include <cstring>

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
    if (std::cmp_greater(bytes, epptr() - pptr())) {
        // Writes the buffer.
        if (failed_ || std::cmp_greater(bytes, buffer_bytes) || pubsync() != 0) {
            return nullptr;
        }
    }
    return pptr();
}

/// Appends a text for which there is no room: the buffer, and a text longer than it, are written.
bool FileBuffer::append_through(std::string_view text) {
    const auto size = static_cast<std::streamsize>(text.size());
    if (!failed_ && sputn(text.data(), size) != size) {
        failed_ = true;
        setp(nullptr, nullptr);  // no room for any later text
    }
    return !failed_;
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
    for (const Item item : itemset) {
        if (item < item_texts_.size() && item_texts_[item].size != 0) {
            std::memcpy(next, &item_texts_[item], sizeof(ItemText));
            next += item_texts_[item].size;
            continue;
        }
        const char* const first = next;
        next = write_number(item, next);
        *next++ = ' ';
        remember(item, {first, next});
    }
    file_.advance(next);
}

/// Keeps the text of an item for the next time, if it is short enough.
void Output_Manager::remember(Item item, std::string_view written) {
    if (item >= most_texts) {
        return;
    }
    if (item >= item_texts_.size()) {
        item_texts_.resize(std::max<std::size_t>(item + 1, 2 * item_texts_.size()));
    }
    ItemText& text = item_texts_[item];
    std::ranges::copy(written, text.text.begin());
    text.size = static_cast<unsigned char>(written.size());
}

}  // namespace korv
