#pragma once

#include <string>

#include "mine/database.h"
#include "mine/miner.h"
#include "mine/reading.h"

namespace korv::tools {

/// What a summary tells of a database.
struct DatabaseFigures {
    Count transactions = 0;
    std::size_t items = 0;
    std::size_t frequent_items = 0;  ///< in at least the minimum support
    bool has_names = false;
};

DatabaseFigures figures_of(const Database& database, Count min_support);

/// What a run did.
struct Run {
    DatabaseFigures database;
    const ReadingReport& reading;
    const MiningOptions& options;
    const ClassFigures& classes;
    bool is_complete;    ///< whether these are all classes
    std::string output;  ///< path of the class file, or "-"
    std::string names;   ///< path of the names file; empty when there is none
    double seconds;
};

/// How the input was read, with a line for each number, and what the person who goes on should know of it.
std::string summary_of_input(const Database& database, const ReadingReport& reading);
std::string summary_of_input(const DatabaseFigures& database, const ReadingReport& reading);

/// The results of a run, with a line for each number; what the person who goes on should know; and the korv
/// command to go on with, whose thresholds are for a first look: at least one of a hundred transactions.
std::string summary(const Run& run);

}  // namespace korv::tools
