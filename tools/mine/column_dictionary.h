#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korv::tools {

/// The distinct texts of a column, numbered from 0 in the order in which they first occur. A text takes its
/// bytes and about 20 more.
class ColumnDictionary {
public:
    struct Entry {
        std::uint32_t number;
        bool is_new;
    };

    /// The number of a text, which gets the next one when it is new. O(length) on average.
    Entry number_of(std::string_view text);

    /// The text with this number. It is valid until the next new text.
    std::string_view text(std::uint32_t number) const {
        const std::size_t begin = number == 0 ? 0 : ends_[number - 1];
        return {bytes_.data() + begin, ends_[number] - begin};
    }

    /// The number of distinct texts.
    std::uint32_t size() const { return static_cast<std::uint32_t>(ends_.size()); }

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = none;
    };

    void grow();

    std::vector<Slot> slots_;  ///< open addressing; a power of two of them, at most three quarters taken
    std::string bytes_;        ///< all texts, one behind the other
    std::vector<std::size_t> ends_;  ///< of the texts in `bytes_`
};

}  // namespace korv::tools
