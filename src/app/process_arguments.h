#pragma once

#include <fstream>

#include "base/itemset.h"

namespace korv {

/// Takes the command line: run label, class file, minsupp, minconf, number of transactions; further arguments
/// are ignored.
///
/// Opens the class file as `input`, converts the thresholds and sets S1 to S6 and nbrtransaction. Numbers are
/// not validated: text that is no number is 0, a whole number beyond 32 signed bits becomes the nearest that
/// fits, a negative one is then taken as unsigned. The file names are made of the arguments as typed.
///
/// Returns 0, or 1 after a message on standard error when an argument is missing or the class file cannot be
/// read (then nothing else is set). Creates no file.
int process_arguments(int argc, char** argv, std::ifstream& input, double& minconf, Count& minsupp);

}  // namespace korv
