// What stands in for rules_database.cpp where there is no SQLite.

#include "common/error.h"
#include "rules/rules_database.h"

namespace korv::tools {

void require_rules_database() {
    throw Error(
        "--to sqlite: korv-rules was built without SQLite (libsqlite3-dev); expected another format, such as "
        "csv, which the shell of SQLite imports");
}

void write_rules_database(const SearchResult&, const RuleBook&, const RulesOrigin&, const AtomicOutput&) {
    require_rules_database();
}

}  // namespace korv::tools
