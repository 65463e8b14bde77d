#pragma once

#include <memory>
#include <string>

#include "rules/found_rule.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// Writes JSON Lines: an object for each rule, its keys the columns of rule_columns.h. A side is an object
/// {"any":[names],"items":[numbers]} or, negated, {"none":[names],"items":[numbers]}, in the same order. The
/// text is UTF-8, not spelt as \u; what is not UTF-8 in a name becomes U+FFFD. Measures that are not defined
/// are null, infinite ones the strings "inf" and "-inf".
std::unique_ptr<RuleWriter> json_writer(const RuleBook& book, TextSink sink);

/// The object of a side.
std::string json_side(Side side, const RuleBook& book);

}  // namespace korv::tools
