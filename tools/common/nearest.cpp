#include "common/nearest.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "common/error.h"

namespace korv::tools {

namespace {

constexpr std::size_t most_compared = 64;

/// How many bytes have to be inserted, removed or replaced to make one text of the other.
std::size_t edit_distance(std::string_view one, std::string_view other) {
    std::vector<std::size_t> distances(other.size() + 1);
    std::iota(distances.begin(), distances.end(), std::size_t{0});
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = std::exchange(distances[0], i + 1);
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t replaced = diagonal + (one[i] == other[j] ? 0 : 1);
            diagonal = distances[j + 1];
            distances[j + 1] = std::min({replaced, diagonal + 1, distances[j] + 1});
        }
    }
    return distances.back();
}

char small_letter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string beginning_in_small_letters(std::string_view text) {
    std::string result(text.substr(0, most_compared));
    std::ranges::transform(result, result.begin(), small_letter);
    return result;
}

bool differ_in_case_alone(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, {}, small_letter, small_letter);
}

}  // namespace

std::vector<std::string> nearest(std::string_view word, std::span<const std::string> known,
                                 std::size_t most) {
    const std::string wanted = beginning_in_small_letters(word);
    std::vector<std::pair<std::size_t, std::size_t>> closest;  // distance and position
    for (std::size_t i = 0; i < known.size(); ++i) {
        const std::size_t distance = edit_distance(wanted, beginning_in_small_letters(known[i]));
        closest.emplace_back(differ_in_case_alone(word, known[i]) ? 0 : distance + 1, i);
    }
    const std::size_t listed = std::min(most, closest.size());
    std::ranges::partial_sort(closest, closest.begin() + static_cast<std::ptrdiff_t>(listed));
    std::vector<std::string> words;
    for (std::size_t i = 0; i < listed; ++i) {
        words.push_back(known[closest[i].second]);
    }
    return words;
}

std::vector<std::string> equal_but_for_case(std::string_view word, std::span<const std::string> known) {
    std::vector<std::string> words;
    std::ranges::copy_if(known, std::back_inserter(words),
                         [word](const std::string& each) { return differ_in_case_alone(word, each); });
    return words;
}

std::string all_shown(std::span<const std::string> words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + shown(word);
    }
    return text;
}

}  // namespace korv::tools
