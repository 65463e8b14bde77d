#pragma once

#include <iosfwd>
#include <vector>

#include "engine/rule.h"

namespace korv {

// For the messages of failed expectations.
void PrintTo(Form form, std::ostream* out);
void PrintTo(Kind kind, std::ostream* out);
/// As a row: "{R212 as R111, appro, support 25, confidence 0.625}".
void PrintTo(const Rule& rule, std::ostream* out);

}  // namespace korv

namespace korv::test {

/// Keeps the rules that it takes, of all pairs.
class CollectedRules final : public RuleSink {
public:
    void begin(const Pair& /*pair*/) override { ++pairs; }
    void add(const Rule& rule) override { rules.push_back(rule); }

    std::vector<Rule> rules;
    int pairs = 0;  ///< that were begun
};

}  // namespace korv::test
