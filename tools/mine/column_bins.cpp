#include "mine/column_bins.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <optional>

#include "base/number_text.h"

namespace korv::tools {

namespace {

/// Positions in `numbers` from the smallest, equal numbers in the order in which they are given.
std::vector<std::size_t> ascending(const std::vector<NumberText>& numbers) {
    std::vector<std::size_t> order(numbers.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&numbers](std::size_t i) { return numbers[i].number; });
    return order;
}

std::string range_label(std::string_view first, std::string_view last) {
    std::string label(first);
    if (first != last) {
        label.append("..").append(last);
    }
    return label;
}

std::string point_label(const std::vector<std::string>& points, std::size_t bin) {
    const std::string begin = bin == 0 ? "" : points[bin - 1];
    return begin + (bin == points.size() ? ".." : "..<" + points[bin]);
}

}  // namespace

Bins quantile_bins(const std::vector<NumberText>& numbers, std::size_t bins) {
    std::uint64_t cells = 0;
    for (const NumberText& each : numbers) {
        cells += each.cells;
    }
    Bins result = {{}, std::vector<std::uint32_t>(numbers.size())};
    std::uint64_t smaller = 0;  // cells
    std::optional<std::uint64_t> last_bin;
    std::string_view first;
    const std::vector<std::size_t> order = ascending(numbers);
    for (auto same = order.begin(); same != order.end();) {
        const NumberText& spelling = numbers[*same];
        // The first position of a number among all sorted cells decides its bin.
        const std::uint64_t bin = smaller * std::min<std::uint64_t>(bins, cells) / cells;
        if (bin != last_bin) {
            result.labels.emplace_back();
            first = spelling.text;
            last_bin = bin;
        }
        result.labels.back() = range_label(first, spelling.text);
        for (; same != order.end() && numbers[*same].number == spelling.number; ++same) {
            result.bin_of[*same] = static_cast<std::uint32_t>(result.labels.size() - 1);
            smaller += numbers[*same].cells;
        }
    }
    return result;
}

Bins point_bins(const std::vector<NumberText>& numbers, const std::vector<std::string>& points) {
    std::vector<double> limits;
    for (const std::string& point : points) {
        limits.push_back(*parse_number<double>(point));
    }
    Bins result = {{}, std::vector<std::uint32_t>(numbers.size())};
    std::optional<std::ptrdiff_t> last_bin;
    for (const std::size_t i : ascending(numbers)) {
        const auto bin = std::distance(limits.begin(), std::ranges::upper_bound(limits, numbers[i].number));
        if (bin != last_bin) {
            result.labels.push_back(point_label(points, static_cast<std::size_t>(bin)));
            last_bin = bin;
        }
        result.bin_of[i] = static_cast<std::uint32_t>(result.labels.size() - 1);
    }
    return result;
}

}  // namespace korv::tools
