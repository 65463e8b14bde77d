// What stands in for gzip.cpp where there is no zlib.

#include <cerrno>

#include "common/error.h"
#include "common/gzip.h"

namespace korv::tools {

std::string gunzip(const ReadBytes&, std::string_view, const std::string& name) {
    const std::string program = program_invocation_short_name;
    throw Error(name + ": is compressed, and " + program + " was built without zlib; try zcat FILE | " +
                program + " -");
}

}  // namespace korv::tools
