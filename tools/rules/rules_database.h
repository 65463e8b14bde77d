#pragma once

#include <string>

#include "common/atomic_output.h"
#include "rules/rule_input.h"
#include "rules/rule_search.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// What a database says of rules besides themselves.
struct RulesOrigin {
    const RuleInput& input;
    std::string names_of_inputs;  ///< without their directories
    std::string options;          ///< as they were typed
};

/// Throws Error, which says what to do, where the program was built without SQLite.
void require_rules_database();

/// Writes rules, and the classes that they are derived from with their lattice (SearchResult::lattice), as a
/// database of SQLite into `output`, which is to be a file (see AtomicOutput::temporary_path). It is left to
/// the caller to commit it. The same rules give the same bytes by the same version of SQLite.
///
/// docs/rules-database.md describes its tables. Takes memory for two numbers of each side, and 64 MiB. Throws
/// Error when the database cannot be written.
void write_rules_database(const SearchResult& found, const RuleBook& book, const RulesOrigin& origin,
                          const AtomicOutput& output);

}  // namespace korv::tools
