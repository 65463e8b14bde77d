#pragma once

#include <string>

#include "engine/rule.h"
#include "io/Output_Manager.h"
#include "io/rule_printing.h"

namespace korv {

/// Writes rules to the four rule files: those without exception to the exact files, those with a confidence
/// to the approximate ones.
class RuleFiles final : public RuleSink {
public:
    /// The files of the rules within nodes, or between them.
    struct Files {
        Output_Manager& exact;
        Output_Manager& approx;
    };

    /// Refers to the four files.
    RuleFiles(const Files& intra_node, const Files& inter_node)
        : intra_node_(intra_node), inter_node_(inter_node) {}

    /// Writes the headers of the four files.
    void write_headers();

    void begin(const Pair& pair) override;
    void add(const Rule& rule) override;

    /// Brings what was written to the disk.
    void flush();

private:
    const Files intra_node_;
    const Files inter_node_;
    const Files* files_ = &intra_node_;  ///< those of the current pair
    // Of the current pair.
    Sides base_;
    Sides difference_;
};

}  // namespace korv
