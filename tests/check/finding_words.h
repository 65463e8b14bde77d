#pragma once

#include <string>

#include "check/findings.h"

namespace korv::tools {

/// "LINE:COLUMN SEVERITY CODE".
inline std::string place_and_code(const Finding& finding) {
    return std::to_string(finding.place.line) + ":" + std::to_string(finding.place.column) + " " +
           std::string(word_for(finding.severity)) + " " + std::string(description(finding.kind).code);
}

}  // namespace korv::tools
