#include "mine/fimi.h"

#include <string_view>

#include "base/number_text.h"
#include "common/error.h"
#include "common/lines.h"
#include "mine/database_builder.h"

namespace korv::tools {

namespace {

constexpr std::string_view blanks = " \t";

/// The number for which a word stands. Throws Error when it stands for none.
Item item_of(std::string_view word, const TextInput& input) {
    if (const auto item = parse_number<Item>(word)) {
        return *item;
    }
    const auto position = static_cast<std::size_t>(word.data() - input.text.data());
    const bool is_too_large = word.find_first_not_of("0123456789") == std::string_view::npos;
    throw input_error(input.name, place_of(input.text, position), shown(word),
                      is_too_large ? "an item number below 4294967296" : "an item number");
}

void add_items(std::string_view line, const TextInput& input, DatabaseBuilder& builder) {
    for (;;) {
        const std::size_t begin = line.find_first_not_of(blanks);
        if (begin == std::string_view::npos) {
            return;
        }
        const std::string_view word = line.substr(begin, line.find_first_of(blanks, begin) - begin);
        builder.add(item_of(word, input));
        line.remove_prefix(begin + word.size());
    }
}

}  // namespace

Database read_fimi(const TextInput& input) {
    DatabaseBuilder builder;
    for_each_line(input.text, [&](std::string_view line) {
        builder.begin_transaction();
        add_items(line, input, builder);
    });
    Database database = builder.finish();
    if (database.items.empty()) {
        throw Error(input.name + ": found no item; expected one transaction a line");
    }
    return database;
}

}  // namespace korv::tools
