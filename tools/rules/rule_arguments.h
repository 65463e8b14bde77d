#pragma once

#include <optional>
#include <string>
#include <vector>

#include "rules/dot_graph.h"
#include "rules/exclusion_request.h"
#include "rules/measures.h"
#include "rules/rule_input.h"
#include "rules/rule_request.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// What the command line of korv-rules asks for.
struct RuleArguments {
    InputRequest input;
    RuleRequest rules;
    /// Which exclusions are told in the place of rules. `rules` then says which items, how many of them, and
    /// what the confidence of a rule is that is told with them.
    std::optional<ExclusionRequest> exclusions;
    std::vector<Measure> measures;  ///< besides those that are always told
    RuleFormat format = RuleFormat::words;
    GraphKind graph = GraphKind::lattice;  ///< what is drawn where the format is dot
    TerminalStyle style;
    std::string output = "-";  ///< path, or "-" for standard output, always where is_count
    bool is_count = false;     ///< whether rules and bytes of files are counted, and no rule is written
    bool verifies = false;     ///< whether each rule that is written is counted again
    bool quiet = false;
    /// The options that decide which rules there are and what is told of them, as they can be typed, in the
    /// order of --help; files without their directories.
    std::string decisive_options;
};

/// The forms that --forms names: labels such as R121, groups 1 to 4 or the words for groups such as or-none,
/// with commas between them. In the order of the catalogue. Throws Error for anything else.
std::vector<Form> parse_forms(const std::string& text);

/// The kinds that --kinds names, with commas between them. Throws Error for anything else.
std::vector<Certainty> parse_kinds(const std::string& text);

/// The measures that --measures names, with commas between them, in the order of the catalogue; all of them
/// for "all". Throws Error, with the nearest known names, for anything else.
std::vector<Measure> parse_measures(const std::string& text);

/// The format that the extension of a path names. Throws Error where it names none.
RuleFormat format_of_path(const std::string& path);

/// Reads the command line. When it asks for help or the version, or when it is wrong, prints that and ends
/// the program, with the status 2 where it is wrong. Throws Error for options that contradict each other.
RuleArguments parse_rule_arguments(int argc, char** argv);

}  // namespace korv::tools
