#pragma once

#include <memory>

#include "rules/rule_writer.h"

namespace korv::tools {

/// Writes rules as a table for a terminal that fits its width:
///
///      #  rule                        confidence  lift  support  leverage
///      1  sex=female => survived=yes       0.732  2.27      344    0.0873
///
/// Long rules go on in further lines. A side of more than 6 items names the first 6, names of more than 40
/// columns end with an ellipsis, and where the numbers leave too little room for the rules they stand below
/// them. The columns are as wide as the first 1,000 rules need, and grow with the next ones. Names are
/// printable (see printable.h). Where a terminal has colour, conclusions and the header are bold.
std::unique_ptr<RuleWriter> table_writer(const RuleBook& book, const TerminalStyle& style, TextSink sink);

}  // namespace korv::tools
