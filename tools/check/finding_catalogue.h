#pragma once

#include <span>
#include <string>
#include <string_view>

#include "common/finding_kind.h"

namespace korv::tools {

/// How much a finding matters.
enum class Severity {
    note,     ///< something is missing
    warning,  ///< something cannot be so, or is written in an odd way that korv reads as it is meant
    error,    ///< korv reads something else than what is written, or the data say something else
};

/// "error", "warning" or "note".
std::string_view word_for(Severity severity);

/// What there is to say of a kind of finding.
struct FindingDescription {
    FindingKind kind;
    std::string_view code;  ///< stays the same for ever
    Severity severity;      ///< the worst one: an error of form is a warning where korv reads what is meant
    bool is_mended;         ///< whether --fix mends it
    std::string_view meaning;
};

/// All kinds, in the order of the enumeration.
std::span<const FindingDescription> finding_catalogue();

const FindingDescription& description(FindingKind kind);

/// The catalogue as a table of tabs: code, severity, "mended" or "-", and meaning, one kind a line.
std::string catalogue_text();

}  // namespace korv::tools
