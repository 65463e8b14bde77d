// What stands in for gzip.cpp where there is no zlib.

#include <cerrno>

#include "common/error.h"
#include "common/gzip.h"

namespace korv::tools {

class Gunzip::State {};

// The parameters are those of the other source.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
Gunzip::Gunzip(ReadBytes /*read*/, std::string_view /*beginning*/, std::string name) {
    const std::string program = program_invocation_short_name;
    throw Error(name + ": is compressed, and " + program + " was built without zlib; try zcat FILE | " +
                program + " -");
}

Gunzip::~Gunzip() = default;

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): here it needs no state
std::size_t Gunzip::text(char* /*out*/, std::size_t /*size*/) {
    return 0;
}

std::string gunzip(const ReadBytes& read, std::string_view beginning, const std::string& name) {
    const Gunzip source(read, beginning, name);  // which throws
    return "";
}

}  // namespace korv::tools
