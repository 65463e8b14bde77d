#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/bit_words.h"
#include "mine/bit_rows.h"

namespace korv::tools {

/// The lines of one item, numbered from 0, and which of them hold some other items, by row: a small database
/// of its own, in which the joint supports of itemsets with that item are counted.
///
/// Rows are bit vectors, or lists where bit vectors would take too much memory.
class JointLines {
public:
    /// How rows are represented. The counts do not depend on it.
    enum class Rows { bits, lists };

    /// A set of lines.
    struct Set {
        std::vector<BitWord> bits;         ///< for Rows::bits
        std::vector<std::uint32_t> lines;  ///< for Rows::lists: ascending
    };

    /// Becomes so many empty rows of `lines` lines with these weights, by line; with none, each is 1. Keeps
    /// memory.
    void reset(Rows kind, std::size_t rows, std::size_t lines, const std::vector<Count>& weights);

    /// Adds a line to a row, behind those before it.
    void insert(std::size_t row, std::size_t line);

    /// Makes `set` the lines of a row.
    void assign(std::size_t row, Set& set) const;

    /// Makes `both` the lines of a set that are in a row, too.
    void intersect(const Set& set, std::size_t row, Set& both) const;

    /// The weight of the lines of a set that are in a row, too.
    Count joint(const Set& set, std::size_t row) const;

    /// What the rows and the weights take in memory. O(rows).
    std::size_t bytes() const;

private:
    Rows kind_ = Rows::bits;
    BitRows bits_;
    std::vector<std::vector<std::uint32_t>> lists_;
    std::vector<Count> weights_;  ///< for Rows::lists
};

/// The representation for rows that hold `entries` lines together: bit vectors, which are faster, unless they
/// take more than 16 MiB and more than lists.
JointLines::Rows suitable_rows(std::size_t rows, std::size_t lines, std::uint64_t entries);

}  // namespace korv::tools
