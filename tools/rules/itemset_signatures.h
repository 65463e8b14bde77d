#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "rules/itemset_pool.h"

namespace korv::tools {

/// A set of columns: bit 63 of the first word is column 0.
class Signature {
public:
    static constexpr std::size_t words = 4;
    static constexpr std::size_t columns = 64 * words;

    void add(std::size_t column) { bits_[column / 64] |= bit_of(column); }
    bool has(std::size_t column) const { return (bits_[column / 64] & bit_of(column)) != 0; }

    bool is_within(const Signature& other) const {
        std::uint64_t rest = 0;
        for (std::size_t i = 0; i < words; ++i) {
            rest |= bits_[i] & ~other.bits_[i];
        }
        return rest == 0;
    }

    void unite(const Signature& other) {
        for (std::size_t i = 0; i < words; ++i) {
            bits_[i] |= other.bits_[i];
        }
    }

    void intersect(const Signature& other) {
        for (std::size_t i = 0; i < words; ++i) {
            bits_[i] &= other.bits_[i];
        }
    }

    /// All columns.
    static Signature full() {
        Signature all;
        all.bits_.fill(~std::uint64_t{0});
        return all;
    }

    /// Calls `visit` with each column, the largest first, until it returns false.
    template <typename Visit>
    void for_each(Visit visit) const {
        for (std::size_t i = words; i-- > 0;) {
            for (std::uint64_t rest = bits_[i]; rest != 0; rest &= rest - 1) {
                if (!visit(64 * i + 63 - static_cast<std::size_t>(std::countr_zero(rest)))) {
                    return;
                }
            }
        }
    }

    /// Signatures with column 0 come behind those without it; of those, likewise by column 1, and so on.
    bool operator<(const Signature& other) const { return bits_ < other.bits_; }
    bool operator==(const Signature&) const = default;

private:
    static std::uint64_t bit_of(std::size_t column) { return std::uint64_t{1} << (63 - column % 64); }

    std::array<std::uint64_t, words> bits_ = {};
};

/// The signatures of itemsets: the columns of their items.
///
/// Invariant: an itemset that lies within another one has a signature within that of the other. The more
/// itemsets hold an item, the smaller is its column; the rarest items share columns where they are many.
class ItemsetSignatures {
public:
    /// Of those itemsets of a pool that are wanted. O(their items).
    ItemsetSignatures(const ItemsetPool& itemsets, const std::vector<char>& is_wanted);

    const Signature& operator[](ItemsetId id) const { return signatures_[id]; }

private:
    std::vector<Signature> signatures_;  ///< by itemset; empty where it is not wanted
};

}  // namespace korv::tools
