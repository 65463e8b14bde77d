#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/lattice_entries.h"
#include "engine/rule.h"
#include "engine/rule_counts.h"
#include "rules/rule_writer.h"

namespace korv::tools {

/// A sink that only counts: adds the bytes of each text to `bytes`, which must outlive it.
TextSink counting_sink(std::uint64_t& bytes);

/// The files that korv writes rules to.
enum class RuleFile : std::size_t { intra_exact, intra_approximate, inter_exact, inter_approximate };

inline constexpr std::size_t number_of_rule_files = 4;

/// Counts the rules that korv would write, and the bytes that they would take in its four rule files (see
/// RuleFiles), without making their text. A rule costs little, and a pair that has rules O(items).
class SizeCount final : public RuleSink {
public:
    /// The headers of the files are counted at once.
    SizeCount();

    void begin(const Pair& pair) override;
    void add(const Rule& rule) override;

    /// The rules by form and kind, and by kind, as korv reports them.
    const RuleCounts& counts() const { return counts_; }

    /// The size of a rule file, in bytes.
    std::uint64_t bytes(RuleFile file) const { return bytes_[static_cast<std::size_t>(file)]; }

    /// The size of the four rule files together.
    std::uint64_t bytes() const;

    /// The size of the file with the numbers of rules.
    std::uint64_t bytes_of_counts() const;

private:
    /// An itemset of the current pair: how many bytes it takes as a side.
    struct Part {
        const Itemset* itemset = nullptr;
        std::size_t digits = 0;  ///< of all items together
        bool is_counted = false;
    };

    static std::size_t bytes_of_side(Part& part, Mode mode);

    RuleCounts counts_;
    std::array<std::uint64_t, number_of_rule_files> bytes_ = {};
    bool is_intra_node_ = true;
    Part base_;
    Part difference_;
};

/// The size of the lattice file, in bytes (see write_lattice). The successors of the entries must be linked.
/// O(items of all classes + successors).
std::uint64_t bytes_of_lattice_file(const LatticeEntries& entries);

}  // namespace korv::tools
