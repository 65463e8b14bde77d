#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "check/finding_catalogue.h"
#include "common/error.h"

namespace korv::tools {

/// Something that was found in a file.
struct Finding {
    FindingKind kind = {};
    Severity severity = {};
    std::size_t file = 0;  ///< the number of its name in Findings
    Place place = {};
    std::string found = {};
    std::string expected = {};
    std::string effect = {};     ///< what korv makes of it; may be empty
    std::size_t other_line = 0;  ///< the line that it contradicts; 0 for none
    /// Where there are several of them: the others.
    std::vector<std::size_t> more_lines = {};
};

/// Collects findings: the first ones in the order of the files, their lines and columns; the others are
/// counted. Memory is bounded by how many are kept. Notes may be counted without being kept.
class Findings {
public:
    /// `names`: of the files, for messages. `most`: how many are kept; 0 for all.
    Findings(std::vector<std::string> names, std::size_t most, bool keeps_notes);

    /// From now on, notes are neither kept nor counted.
    void ignore_notes() { ignores_notes_ = true; }

    /// O(log most).
    void add(Finding finding);

    /// Whether notes are kept, rather than counted.
    bool keeps_notes() const { return keeps_notes_; }

    /// The kept ones, in order.
    std::vector<Finding> in_order() const;

    const std::string& name(std::size_t file) const { return names_.at(file); }
    const std::string& name_of(const Finding& finding) const { return name(finding.file); }

    /// How many there are of a severity, and of a kind.
    std::size_t count(Severity severity) const { return by_severity_.at(static_cast<std::size_t>(severity)); }
    std::size_t count(FindingKind kind) const { return by_kind_.at(static_cast<std::size_t>(kind)); }

private:
    static constexpr std::size_t kinds = static_cast<std::size_t>(FindingKind::no_upper_bound) + 1;

    std::vector<std::string> names_;
    std::size_t most_;
    bool keeps_notes_;
    bool ignores_notes_ = false;
    std::vector<Finding> kept_;  ///< a heap, the last one in order on top, once it is full
    std::array<std::size_t, 3> by_severity_ = {};
    std::array<std::size_t, kinds> by_kind_ = {};
};

}  // namespace korv::tools
