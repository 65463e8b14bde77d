#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "base/itemset.h"
#include "engine/rule_catalogue.h"

namespace korv::test {

/// One side of a rule that was read back. An empty one has no mode: it says a disjunction.
struct ReadSide {
    Mode mode = Mode::disjunction;
    Itemset itemset;

    bool operator==(const ReadSide&) const = default;
};

/// A support as printed: a single number has equal ends.
struct ReadSupport {
    bool interval = false;
    Count low = 0;
    Count high = 0;

    bool operator==(const ReadSupport&) const = default;
};

/// A confidence, digit for digit as printed: a single number has equal ends.
struct ReadConfidence {
    bool interval = false;
    std::string_view low;
    std::string_view high;

    bool operator==(const ReadConfidence&) const = default;
};

/// A record of a rule file.
struct ReadRule {
    ReadSide premise;
    ReadSide conclusion;
    ReadSupport support;
    std::optional<ReadConfidence> confidence;  ///< none: it is 1
    std::string_view text;                     ///< the whole record
};

struct ReadRuleFile {
    std::string_view title;  ///< without tabs and line end
    std::vector<ReadRule> rules;
};

/// Reads a rule file back. Refers to `text`, which must outlive the result.
///
/// Throws std::runtime_error with the number of the line at anything that is not exactly a header and
/// records.
ReadRuleFile read_rule_file(std::string_view text);

}  // namespace korv::test
