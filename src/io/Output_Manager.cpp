#include "io/Output_Manager.h"

#include <array>
#include <charconv>

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
    std::array<char, 10> digits;
    const auto* const last = std::to_chars(digits.begin(), digits.end(), number).ptr;
    return put(std::string_view(digits.begin(), last));
}

Output_Manager& Output_Manager::put(double number) {
    // Six significant digits, sign, point and an exponent of three digits fit.
    std::array<char, 16> digits;
    const auto* const last =
        std::to_chars(digits.begin(), digits.end(), number, std::chars_format::general, 6).ptr;
    return put(std::string_view(digits.begin(), last));
}

void Output_Manager::write_out_basket(const Itemset& itemset) {
    for (const Item item : itemset) {
        put(item).put(" ");
    }
}

}  // namespace korv
