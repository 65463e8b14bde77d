#include "mine_mpi/dense_part.h"

#include <algorithm>

#include "base/bit_words.h"
#include "mine/candidate_search.h"

namespace korv::tools {

DensePart::DensePart(const PartItems& items, std::size_t processes)
    : cover_(items.ranked),
      frequent_(items.ranked.frequent),
      nanoseconds_of_own_(words_for(items.lines / processes) / 2),
      words_of_closure_(words_for(items.ranked.size())) {}

void DensePart::count(std::span<const Rank> candidates, std::span<Count> counts) {
    std::ranges::transform(candidates, counts.begin(), [this](Rank rank) { return cover_.joint(rank); });
}

bool DensePart::counts_own(std::size_t size) const {
    constexpr std::size_t nanoseconds_of_a_look = 10;
    return !CandidateSearch::has_parts(size) ||
           CandidateSearch::looks(size) * nanoseconds_of_a_look > nanoseconds_of_own_;
}

}  // namespace korv::tools
