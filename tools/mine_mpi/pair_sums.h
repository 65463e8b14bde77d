#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "mine/cover.h"
#include "mine_mpi/processes.h"

namespace korv::tools {

/// Sums up over all processes which pairs of items are together in how many transactions. Each process does
/// so for some rows: for an item, and all frequent ones below it in rank. Part: see level_part.h.
template <typename Part>
class PairSums {
public:
    /// All must outlive the sums. `frequent`: so many items are. `least`: frequent pairs are together in so
    /// many transactions.
    PairSums(Processes& processes, Part& part, Rank frequent, Count least)
        : processes_(processes), part_(part), frequent_(frequent), least_(least), together_(frequent) {}

    /// Calls `visit(row, pairs)` in all processes for the rows from `begin` on, in order. `pairs`: those that
    /// are frequent, or that the part wants to keep, ascending.
    template <typename Visit>
    void for_each_row(Rank begin, Rank end, Visit visit) {
        const Numbers numbers = sums(begin, end);
        std::vector<std::size_t> begins(end - begin);
        for (std::size_t position = 0; position < numbers.size();) {
            begins[numbers[position] - begin] = position;
            position += 2 + 2 * std::size_t{numbers[position + 1]};
        }
        for (Rank row = begin; row < end; ++row) {
            const std::size_t position = begins[row - begin];
            pairs_.clear();
            for (std::size_t i = 0; i < numbers[position + 1]; ++i) {
                pairs_.push_back({numbers[position + 2 + 2 * i], numbers[position + 3 + 2 * i]});
            }
            visit(row, std::span<const Candidate>(pairs_));
        }
    }

private:
    /// Rows one behind the other: the row, how many pairs it has, and for each pair the other item and its
    /// joint support.
    using Numbers = std::vector<std::uint32_t>;

    /// The process that sums up a row.
    std::size_t owner(Rank row) const { return row % static_cast<std::size_t>(processes_.size()); }

    /// The rows with the sums of all processes, in any order.
    Numbers sums(Rank begin, Rank end) {
        std::vector<Numbers> for_each(static_cast<std::size_t>(processes_.size()));
        for (Rank row = begin; row < end; ++row) {
            part_.pairs_of(row, pairs_);
            put_pairs(row, for_each[owner(row)]);
        }
        const std::vector<Numbers> from_each = processes_.exchange(std::move(for_each));
        std::vector<std::size_t> positions(from_each.size());
        Numbers sums;
        for (Rank row = begin; row < end; ++row) {
            if (owner(row) == static_cast<std::size_t>(processes_.number())) {
                sum_up(row, from_each, positions);
                put_pairs(row, sums);
            }
        }
        return processes_.all_of(sums);
    }

    void put_pairs(Rank row, Numbers& numbers) const {
        numbers.push_back(row);
        numbers.push_back(static_cast<std::uint32_t>(pairs_.size()));
        for (const Candidate& pair : pairs_) {
            numbers.push_back(pair.rank);
            numbers.push_back(pair.joint);
        }
    }

    /// Replaces `pairs_` by those of a row that are needed, with the sums of what all processes told.
    /// `positions`: where the row is in the numbers of each process, and then the next one.
    void sum_up(Rank row, const std::vector<Numbers>& from_each, std::vector<std::size_t>& positions) {
        touched_.clear();
        for (std::size_t process = 0; process < from_each.size(); ++process) {
            const Numbers& numbers = from_each[process];
            std::size_t& position = positions[process];
            const std::size_t size = numbers[position + 1];
            position += 2;
            for (const std::size_t end = position + 2 * size; position < end; position += 2) {
                const Rank below = numbers[position];
                if (together_[below] == 0) {
                    touched_.push_back(below);
                }
                together_[below] += numbers[position + 1];
            }
        }
        pairs_.clear();
        for (const Rank below : touched_) {
            const Count together = std::exchange(together_[below], 0);
            if ((row < frequent_ && together >= least_) || part_.is_wanted(row, below, together)) {
                pairs_.push_back({below, together});
            }
        }
        std::ranges::sort(pairs_, {}, &Candidate::rank);
    }

    Processes& processes_;
    Part& part_;
    Rank frequent_;
    Count least_;
    std::vector<Candidate> pairs_;  ///< set and used in one call
    std::vector<Count> together_;   ///< by rank: set and used in one call, otherwise 0
    std::vector<Rank> touched_;     ///< ranks whose `together_` is not 0
};

}  // namespace korv::tools
