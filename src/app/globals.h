#pragma once

#include <string>

#include "base/itemset.h"

namespace korv {

// What the command line says to the whole program: set once by process_arguments, then only read.

extern std::string S1;  ///< name of the intra-node exact rules file
extern std::string S2;  ///< name of the intra-node approximate rules file
extern std::string S3;  ///< name of the inter-node exact rules file
extern std::string S4;  ///< name of the inter-node approximate rules file
extern std::string S5;  ///< name of the lattice file
extern std::string S6;  ///< name of the rule-count file

extern Count nbrtransaction;  ///< number of transactions of the mined database

/// Time stamp (seconds) at which the lattice file was finished: set by Lattice::LATTICE, read by main.
extern double en1;

}  // namespace korv
