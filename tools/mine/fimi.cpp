#include "mine/fimi.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "base/number_text.h"
#include "common/error.h"
#include "common/lines.h"
#include "mine/weighted_line.h"

namespace korv::tools {

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

/// The number for which a word stands that the fast way did not read. Throws Error when it stands for none.
Item item_of(std::string_view word, const TextInput& input) {
    if (const auto item = parse_number<Item>(word)) {
        return *item;
    }
    const auto position = static_cast<std::size_t>(word.data() - input.text.data());
    const bool is_too_large = word.find_first_not_of("0123456789") == std::string_view::npos;
    throw input_error(input.name, place_of(input.text, position), shown(word),
                      is_too_large ? "an item number below 4294967296" : "an item number");
}

/// Reads the word that begins at `begin`, and sets `begin` to its end.
Item next_item(const char*& begin, const char* end, const TextInput& input) {
    constexpr std::ptrdiff_t most_digits_read = 18;  // these fit into 64 bits
    std::uint64_t value = 0;
    const char* last = begin;
    for (; last != end && *last >= '0' && *last <= '9'; ++last) {
        value = value * 10 + static_cast<std::uint64_t>(*last - '0');
    }
    const bool is_whole_word = last == end || is_blank(*last);
    if (is_whole_word && last - begin <= most_digits_read && value <= std::numeric_limits<Item>::max()) {
        begin = last;
        return static_cast<Item>(value);
    }
    last = std::find_if(last, end, is_blank);
    const std::string_view word(begin, last);
    begin = last;
    return item_of(word, input);
}

void add_items(std::string_view line, const TextInput& input, DatabaseBuilder& builder) {
    const char* next = line.data();
    const char* const end = next + line.size();
    for (;;) {
        while (next != end && is_blank(*next)) {
            ++next;
        }
        if (next == end) {
            return;
        }
        builder.add(next_item(next, end, input));
    }
}

}  // namespace

void FimiReader::add(const TextInput& input) {
    for_each_line(input.text, [&](std::string_view line) {
        builder_.begin_transaction(weighted_ ? take_weight(line, input) : 1);
        add_items(line, input, builder_);
    });
}

Database read_fimi(const TextInput& input) {
    FimiReader reader;
    reader.add(input);
    return reader.finish();
}

}  // namespace korv::tools
