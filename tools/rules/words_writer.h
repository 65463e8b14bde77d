#pragma once

#include <cstddef>
#include <memory>

#include "rules/rule_writer.h"

namespace korv::tools {

/// Writes rules as sentences, a paragraph for each, in lines of at most `width` columns of a terminal:
///
///     1. If sex=female, then in 73 % of cases: survived=yes
///        344 of 470, against 711 of all 2,201 (32 %): 2.27 times as often as in general
///
/// A side of more than 12 items names the first 12. Names are printable (see printable.h).
std::unique_ptr<RuleWriter> words_writer(const RuleBook& book, std::size_t width, TextSink sink);

}  // namespace korv::tools
