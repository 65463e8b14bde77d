#include "app/process_arguments.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <string>

#include "app/globals.h"

namespace korv {

namespace {

/// The number at the start of `text`, held to the range of a 32-bit signed number, then stored as unsigned.
Count to_count(const char* text) {
    constexpr long lowest = std::numeric_limits<std::int32_t>::min();
    constexpr long highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<Count>(std::clamp(std::strtol(text, nullptr, 10), lowest, highest));
}

/// Opens the file for reading; false when it cannot be opened or, like a directory, not be read. What cannot
/// be repositioned (a pipe) is not tried: the first character may be long in coming.
bool open_readable(std::ifstream& input, const char* path) {
    input.open(path);
    if (!input) {
        return false;
    }
    if (!input.seekg(0)) {
        input.clear();
        return true;
    }
    input.peek();
    return !input.bad();
}

void set_file_names(const std::string& label, const std::string& minsupp, const std::string& minconf) {
    // The lattice does not depend on minconf, nor does the name of its file.
    const std::string run = "_" + label + "_" + minsupp;
    const std::string suffix = run + "_" + minconf + ".txt";
    S1 = "intra_exact" + suffix;
    S2 = "intra_approx" + suffix;
    S3 = "inter_exact" + suffix;
    S4 = "inter_approx" + suffix;
    S5 = "Lattice" + run + ".txt";
    S6 = "number_rules" + suffix;
}

}  // namespace

int process_arguments(int argc, char** argv, std::ifstream& input, double& minconf, Count& minsupp) {
    if (argc <= 5) {
        std::cerr
            << "\n Erreur! Entrez le fichier des Inputs suivi d'un minsupp superieur ou egal a 1 et d'un "
               "minconf compris entre 0 et 1!\n"
            << std::flush;
        return 1;
    }
    if (!open_readable(input, argv[2])) {
        // Ends without a line end, unlike the message above.
        std::cerr << "\n Erreur! Le fichier entre ne peut etre lu!" << std::flush;
        return 1;
    }
    minsupp = to_count(argv[3]);
    minconf = std::strtod(argv[4], nullptr);
    set_file_names(argv[1], argv[3], argv[4]);
    nbrtransaction = to_count(argv[5]);
    return 0;
}

}  // namespace korv
