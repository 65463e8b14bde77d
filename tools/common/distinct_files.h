#pragma once

#include <string>
#include <vector>

namespace korv::tools {

/// A file that a program is told to read or to write.
struct NamedFile {
    std::string path;     ///< "-" stands for standard input or output
    std::string purpose;  ///< for messages, such as "the input" or "the class file (-o)"
};

/// Throws Error when an output is also an input, whether by the same path, by links or because a standard
/// stream is redirected, or when two outputs would be written to the same place: "PATH: is both the input and
/// the class file (-o); expected two files". Two outputs may go to the same device, such as /dev/null. Also
/// throws Error when the path of an output is wrong (see find_output).
void require_distinct(const std::vector<NamedFile>& inputs, const std::vector<NamedFile>& outputs);

}  // namespace korv::tools
