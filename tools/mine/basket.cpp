#include "mine/basket.h"

#include <string_view>

#include "mine/weighted_line.h"

namespace korv::tools {

void BasketReader::add(const TextInput& input, std::size_t begin) {
    const std::string_view text = input.text;
    CsvReader reader(input, separator_);
    reader.move_to(begin);
    for (std::vector<CsvCell> row; reader.position() < text.size();) {
        Count weight = 1;
        if (weighted_) {
            std::string_view rest = text.substr(reader.position());
            rest = rest.substr(0, rest.find('\n'));
            rest.remove_suffix(rest.ends_with('\r') ? 1 : 0);
            weight = take_weight(rest, input);
            reader.move_to(static_cast<std::size_t>(rest.data() - text.data()));
        }
        reader.next(row);
        builder_.begin_transaction(weight);
        add_items(row, input);
    }
}

void BasketReader::add_items(const std::vector<CsvCell>& row, const TextInput& input) {
    for (const CsvCell& cell : row) {
        if (cell.text.empty()) {
            continue;
        }
        const std::size_t known = items_.size();
        builder_.add(items_.number_of(cell.text));
        if (items_.size() > known) {
            check_name(cell.text, cell.position, input);
        }
    }
}

Database BasketReader::finish() {
    Database database = builder_.finish();
    database.names = items_.names();
    return database;
}

}  // namespace korv::tools
