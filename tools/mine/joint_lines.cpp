#include "mine/joint_lines.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace korv::tools {

void JointLines::reset(Rows kind, std::size_t rows, std::size_t lines, const std::vector<Count>& weights) {
    kind_ = kind;
    if (kind_ == Rows::bits) {
        bits_.reset(rows, lines);
        bits_.set_weights(weights);
        return;
    }
    weights_ = weights;
    lists_.resize(std::max(lists_.size(), rows));
    for (std::vector<std::uint32_t>& list : lists_) {
        list.clear();
    }
}

void JointLines::insert(std::size_t row, std::size_t line) {
    if (kind_ == Rows::bits) {
        bits_.insert(row, line);
    } else {
        lists_[row].push_back(static_cast<std::uint32_t>(line));
    }
}

void JointLines::assign(std::size_t row, Set& set) const {
    if (kind_ == Rows::bits) {
        set.bits.assign(bits_[row], bits_[row] + bits_.words());
    } else {
        set.lines = lists_[row];
    }
}

void JointLines::intersect(const Set& set, std::size_t row, Set& both) const {
    if (kind_ == Rows::bits) {
        both.bits.resize(bits_.words());
        std::transform(set.bits.begin(), set.bits.end(), bits_[row], both.bits.begin(), std::bit_and<>());
        return;
    }
    both.lines.clear();
    std::ranges::set_intersection(set.lines, lists_[row], std::back_inserter(both.lines));
}

Count JointLines::joint(const Set& set, std::size_t row) const {
    if (kind_ == Rows::bits) {
        return bits_.both(set.bits.data(), bits_[row]);
    }
    Count sum = 0;
    auto other = lists_[row].begin();
    for (const std::uint32_t line : set.lines) {
        while (other != lists_[row].end() && *other < line) {
            ++other;
        }
        if (other == lists_[row].end()) {
            break;
        }
        sum += *other != line ? 0 : weights_.empty() ? 1 : weights_[line];
    }
    return sum;
}

std::size_t JointLines::bytes() const {
    std::size_t bytes = bits_.bytes() + weights_.capacity() * sizeof(Count) +
                        lists_.capacity() * sizeof(std::vector<std::uint32_t>);
    for (const std::vector<std::uint32_t>& list : lists_) {
        bytes += list.capacity() * sizeof(std::uint32_t);
    }
    return bytes;
}

JointLines::Rows suitable_rows(std::size_t rows, std::size_t lines, std::uint64_t entries) {
    constexpr std::uint64_t bits_of_an_entry = 32;
    constexpr std::uint64_t most_bits = std::uint64_t{8} << 24;
    const std::uint64_t bits = std::uint64_t{rows} * lines;
    return bits > most_bits && bits > entries * bits_of_an_entry ? JointLines::Rows::lists
                                                                 : JointLines::Rows::bits;
}

}  // namespace korv::tools
