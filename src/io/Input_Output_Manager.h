#pragma once

#include <istream>
#include <string>
#include <vector>

#include "base/itemset.h"
#include "io/Output_Manager.h"
#include "io/class_file_reader.h"

namespace korv {

/// Reader of the class file, and at the same time the lattice file's output stream.
class Input_Output_Manager : public Output_Manager {
public:
    /// Reads from `input`, which must outlive it and is never closed here; creates, or empties, the output
    /// file `file_name`.
    Input_Output_Manager(std::istream& input, const std::string& file_name)
        : Output_Manager(file_name), reader_(input) {}

    /// Makes the next read start at the beginning of the file; of an input that cannot be repositioned (a
    /// pipe), where it stands.
    void rewind() { reader_.rewind(); }

    /// Parses the next record, as ClassFileReader::read does. A call made when the end of the file was
    /// already met prints "fin de fichier" on standard output, returns false, and leaves the outputs alone.
    bool read_in_a_line(Itemset& itemset, Count& support, std::vector<Itemset>& essentials);

private:
    ClassFileReader reader_;
};

}  // namespace korv
