#include "rules/page_arrays.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <limits>
#include <utility>

namespace korv::tools {

namespace {

constexpr unsigned bits_of_a_byte = 8;

/// A type of unsigned numbers.
struct Width {
    std::string_view type;
    unsigned bytes;
};

Width width_for(std::span<const std::uint32_t> numbers) {
    const std::uint32_t largest = numbers.empty() ? 0 : std::ranges::max(numbers);
    if (largest <= std::numeric_limits<std::uint8_t>::max()) {
        return {"u8", 1};
    }
    return largest <= std::numeric_limits<std::uint16_t>::max() ? Width{"u16", 2} : Width{"u32", 4};
}

char byte_of(std::uint32_t number, unsigned position) {
    return static_cast<char>(static_cast<unsigned char>(number >> position * bits_of_a_byte));
}

/// The numbers as they stand in the file: as they are, or their differences.
class Stored {
public:
    Stored(std::span<const std::uint32_t> numbers, bool has_deltas)
        : numbers_(numbers), has_deltas_(has_deltas) {}

    /// Its higher bytes are those of a wider type.
    std::uint32_t operator[](std::size_t position) const {
        const std::uint32_t before = has_deltas_ && position > 0 ? numbers_[position - 1] : 0;
        return numbers_[position] - before;
    }

    std::size_t size() const { return numbers_.size(); }

private:
    std::span<const std::uint32_t> numbers_;
    bool has_deltas_;
};

std::string bytes_of(const Stored& numbers, unsigned width, bool in_planes) {
    std::string bytes;
    bytes.reserve(numbers.size() * width);
    if (in_planes) {
        for (unsigned position = 0; position < width; ++position) {
            for (std::size_t i = 0; i < numbers.size(); ++i) {
                bytes += byte_of(numbers[i], position);
            }
        }
        return bytes;
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        for (unsigned position = 0; position < width; ++position) {
            bytes += byte_of(numbers[i], position);
        }
    }
    return bytes;
}

}  // namespace

void PageArrays::add(std::string_view name, std::span<const std::uint32_t> numbers, PageCoding coding) {
    if (numbers.empty()) {
        return;
    }
    const Width width = width_for(numbers);
    coding.in_planes = coding.in_planes && width.bytes > 1;
    arrays_.push_back({std::string(name), width.type, numbers.size(), coding,
                       bytes_of(Stored(numbers, coding.has_deltas), width.bytes, coding.in_planes)});
}

void PageArrays::add_unless_all(std::uint32_t usual, std::string_view name,
                                std::span<const std::uint32_t> numbers, PageCoding coding) {
    if (std::ranges::any_of(numbers, [usual](std::uint32_t each) { return each != usual; })) {
        add(name, numbers, coding);
    }
}

void PageArrays::add_signed(std::string_view name, std::span<const std::int8_t> numbers) {
    if (!numbers.empty()) {
        arrays_.push_back({std::string(name), "i8", numbers.size(), {}, {numbers.begin(), numbers.end()}});
    }
}

void PageArrays::add_floats(std::string_view name, std::span<const float> numbers) {
    if (numbers.empty()) {
        return;
    }
    std::vector<std::uint32_t> bits(numbers.size());
    std::ranges::transform(numbers, bits.begin(), std::bit_cast<std::uint32_t, float>);
    arrays_.push_back(
        {std::string(name), "f32", numbers.size(), {}, bytes_of(Stored(bits, false), sizeof(float), false)});
}

void PageArrays::append(PageArrays&& others) {
    std::ranges::move(others.arrays_, std::back_inserter(arrays_));
    others.arrays_.clear();
}

std::vector<std::size_t> PageArrays::offsets() const {
    std::vector<std::size_t> offsets;
    std::size_t end = 0;
    for (const PageArray& array : arrays_) {
        offsets.push_back(end);
        end += array.bytes.size() + page_padding(array.bytes.size()).size();
    }
    return offsets;
}

void PageArrays::write(const TextSink& sink) const {
    for (const PageArray& array : arrays_) {
        sink(array.bytes);
        sink(page_padding(array.bytes.size()));
    }
}

std::string_view page_padding(std::size_t size) {
    static constexpr std::array<char, page_alignment> zeros = {};
    return {zeros.data(), (page_alignment - size % page_alignment) % page_alignment};
}

}  // namespace korv::tools
