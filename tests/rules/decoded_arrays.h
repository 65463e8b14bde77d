#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "rules/page_arrays.h"

namespace korv::tools {

/// The elements of arrays of whole numbers by their names: decoded byte by byte, signed ones as they are.
inline std::map<std::string, std::vector<std::int64_t>> numbers_of(const PageArrays& arrays) {
    std::map<std::string, std::vector<std::int64_t>> all;
    for (const PageArray& array : arrays.all()) {
        const std::size_t width = array.bytes.size() / array.length;
        std::vector<std::int64_t>& numbers = all[array.name];
        for (std::size_t i = 0; i < array.length; ++i) {
            std::uint32_t number = 0;
            for (std::size_t plane = 0; plane < width; ++plane) {
                const std::size_t at = array.coding.in_planes ? plane * array.length + i : i * width + plane;
                number |= std::uint32_t{static_cast<unsigned char>(array.bytes[at])} << 8 * plane;
            }
            numbers.push_back(array.type == "i8" ? std::int64_t{static_cast<std::int8_t>(number)} : number);
        }
    }
    return all;
}

/// An array of which it is known that it is there.
inline std::vector<std::int64_t> numbers_of(const PageArrays& arrays, const std::string& name) {
    return numbers_of(arrays).at(name);
}

}  // namespace korv::tools
