#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "rules/rule_writer.h"

namespace korv::tools {

/// How the elements of an array of unsigned numbers stand in its bytes. What is meant to be shorter is so
/// once it is compressed.
struct PageCoding {
    bool in_planes = false;   ///< the lowest bytes of all elements first, then all second ones, and so on
    bool has_deltas = false;  ///< each element as its difference from the one before it, modulo its type
};

/// An array of the data of a page.
struct PageArray {
    std::string name;
    std::string_view type;  ///< u8, u16, u32, i8, f32 or f64
    std::size_t length;     ///< in elements
    PageCoding coding;
    std::string bytes;  ///< little-endian
};

/// The arrays of the data of a page, in the order in which they are added. An empty one is not kept.
class PageArrays {
public:
    /// In the narrowest type that holds all numbers. One-byte numbers are never in planes.
    void add(std::string_view name, std::span<const std::uint32_t> numbers, PageCoding coding = {});

    /// The same, but for numbers that all are `usual`, which need no array.
    void add_unless_all(std::uint32_t usual, std::string_view name, std::span<const std::uint32_t> numbers,
                        PageCoding coding = {});

    void add_signed(std::string_view name, std::span<const std::int8_t> numbers);
    void add_floats(std::string_view name, std::span<const float> numbers);

    /// Moves the arrays of `others` behind these.
    void append(PageArrays&& others);

    const std::vector<PageArray>& all() const { return arrays_; }

    /// Where each array begins, counted from the beginning of the first: multiples of 8.
    std::vector<std::size_t> offsets() const;

    /// Gives the bytes of all arrays to `sink`, with zeros between them.
    void write(const TextSink& sink) const;

private:
    std::vector<PageArray> arrays_;
};

/// How many bytes arrays are that begin at multiples of this.
inline constexpr std::size_t page_alignment = 8;

/// The bytes after `size` bytes that the next multiple of page_alignment takes: zeros.
std::string_view page_padding(std::size_t size);

}  // namespace korv::tools
