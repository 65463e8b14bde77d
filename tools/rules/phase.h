#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace korv::tools {

/// What a run is at, in this order.
enum class Phase : std::size_t {
    reading,
    mining,
    lattice,
    indexing,
    deriving,
    pruning,
    sorting,
    counting_pairs,    ///< of items
    counting_triples,  ///< of items
    writing,
};

/// A phase in words.
struct PhaseWords {
    std::string_view name;   ///< in the line of progress
    std::string_view doing;  ///< what the program does, in a sentence
};

/// The words for a phase. Safe in handlers of signals.
constexpr PhaseWords words_for(Phase phase) {
    constexpr std::array<PhaseWords, static_cast<std::size_t>(Phase::writing) + 1> words = {{
        {"reading", "reading the input"},
        {"mining", "mining"},
        {"lattice", "building the lattice of the classes"},
        {"indexing", "building the lattice of the classes"},
        {"deriving", "deriving rules"},
        {"pruning", "comparing rules"},
        {"sorting", "sorting rules"},
        {"counting pairs", "counting items that are together"},
        {"counting triples", "counting items that are together"},
        {"writing", "writing what was found"},
    }};
    return words[static_cast<std::size_t>(phase)];
}

}  // namespace korv::tools
