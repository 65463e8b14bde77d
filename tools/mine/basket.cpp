#include "mine/basket.h"

#include <utility>

#include "common/csv.h"
#include "common/error.h"
#include "mine/database_builder.h"
#include "mine/named_items.h"

namespace korv::tools {

Database read_basket(const TextInput& input, char separator) {
    CsvReader reader(input, separator);
    NamedItems items;
    DatabaseBuilder builder;
    for (std::vector<CsvCell> row; reader.next(row);) {
        builder.begin_transaction();
        for (const CsvCell& cell : row) {
            if (!cell.text.empty()) {
                check_name(cell.text, cell.position, input);
                builder.add(items.number_of(std::string(cell.text)));
            }
        }
    }
    Database database = builder.finish();
    if (database.items.empty()) {
        throw Error(input.name + ": found no item; expected one transaction a line");
    }
    database.names = std::move(items).names();
    return database;
}

}  // namespace korv::tools
