#include "mine_mpi/dense_part.h"

#include "base/bit_words.h"
#include "mine/candidate_search.h"

namespace korv::tools {

DensePart::DensePart(const PartItems& items, std::size_t processes)
    : cover_(items.ranked),
      places_(items.places),
      frequent_(items.ranked.frequent),
      nanoseconds_of_own_(words_for(items.lines / processes) / 2),
      outside_(2, Ranks(words_for(items.ranked.size()))) {
    for (Rank rank = 0; rank < items.ranked.size(); ++rank) {
        if (!items.ranked.transactions[rank].empty()) {
            outside_.front()[word_of(places_[rank])] |= bit_of(places_[rank]);
        }
    }
}

void DensePart::enter(Rank rank) {
    ++size_;
    if (outside_.size() == size_ + 1) {
        outside_.emplace_back();
    }
    put_outside(cover_.enter(rank), outside_[size_ - 1], outside_[size_]);
}

void DensePart::enter_to_count(Rank rank) {
    ++size_;
    cover_.enter_to_count(rank);
}

void DensePart::leave() {
    cover_.leave();
    --size_;
}

bool DensePart::counts_own(std::size_t size) const {
    constexpr std::size_t nanoseconds_of_a_look = 10;
    return !CandidateSearch::has_parts(size) ||
           CandidateSearch::looks(size) * nanoseconds_of_a_look > nanoseconds_of_own_;
}

void DensePart::tell_outside(Rank rank, BitStream& outside) {
    // Whoever enters an item overwrites this.
    put_outside(cover_.gain(rank), outside_[size_], outside_[size_ + 1]);
    outside.append(outside_[size_ + 1]);
}

void DensePart::put_outside(const std::vector<Rank>& gained, const Ranks& before, Ranks& after) const {
    after = before;
    for (const Rank rank : gained) {
        after[word_of(places_[rank])] &= ~bit_of(places_[rank]);
    }
}

}  // namespace korv::tools
