#include "common/distinct_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <optional>

#include "common/descriptor.h"
#include "common/error.h"
#include "common/output_place.h"

namespace korv::tools {

namespace {

/// Whether something that is written there can be read there.
bool is_stored(const struct stat& status) {
    return S_ISREG(status.st_mode) || S_ISBLK(status.st_mode);
}

std::optional<struct stat> input_status(const std::string& path) {
    struct stat status = {};
    const bool is_there =
        path == "-" ? ::fstat(STDIN_FILENO, &status) == 0 : ::stat(path.c_str(), &status) == 0;
    return is_there ? std::optional(status) : std::nullopt;
}

bool is_replaced(const std::string& input, const OutputPlace& output) {
    const auto status = input_status(input);
    return status && output.status && is_stored(*status) && is_same(*status, *output.status);
}

/// Whether two outputs would be mixed, or replace each other.
bool are_mixed(const OutputPlace& one, const OutputPlace& other) {
    if (one.open_descriptor >= 0 && one.open_descriptor == other.open_descriptor) {
        return true;
    }
    if (one.status && other.status) {
        return !S_ISCHR(one.status->st_mode) && is_same(*one.status, *other.status);
    }
    struct stat directory = {};
    struct stat other_directory = {};
    return !one.status && !other.status && one.name == other.name &&
           ::fstat(one.directory.number(), &directory) == 0 &&
           ::fstat(other.directory.number(), &other_directory) == 0 && is_same(directory, other_directory);
}

[[noreturn]] void fail(const NamedFile& one, const NamedFile& output) {
    throw Error((output.path == "-" ? "standard output" : output.path) + ": is both " + one.purpose +
                " and " + output.purpose + "; expected two files");
}

}  // namespace

void require_distinct(const std::vector<NamedFile>& inputs, const std::vector<NamedFile>& outputs) {
    std::vector<OutputPlace> places;
    for (const NamedFile& output : outputs) {
        OutputPlace place = find_output(output.path);
        for (const NamedFile& input : inputs) {
            if (is_replaced(input.path, place)) {
                fail(input, output);
            }
        }
        for (std::size_t i = 0; i < places.size(); ++i) {
            if (are_mixed(places[i], place)) {
                fail(outputs[i], output);
            }
        }
        places.push_back(std::move(place));
    }
}

}  // namespace korv::tools
