#pragma once

#include <cstdint>
#include <limits>
#include <variant>
#include <vector>

namespace korv::tools {

/// A column of numbers, one for each line, with as many bytes each as the largest needs: 1, 2 or 4.
class ColumnNumbers {
public:
    /// Amortized O(1).
    void push_back(std::uint32_t number) {
        if (number > most_) {
            widen(number);
        }
        std::visit([number](auto& numbers) { append(number, numbers); }, numbers_);
    }

    /// Calls `visit` with the std::vector of unsigned numbers that holds them.
    template <typename Visit>
    void visit(Visit visit) const {
        std::visit(visit, numbers_);
    }

private:
    template <typename Number>
    static void append(std::uint32_t number, std::vector<Number>& numbers) {
        numbers.push_back(static_cast<Number>(number));
    }

    template <typename Number>
    void widen_to() {
        visit(
            [this](const auto& numbers) { numbers_ = std::vector<Number>(numbers.begin(), numbers.end()); });
        most_ = std::numeric_limits<Number>::max();
    }

    void widen(std::uint32_t number) {
        if (number <= std::numeric_limits<std::uint16_t>::max()) {
            widen_to<std::uint16_t>();
        } else {
            widen_to<std::uint32_t>();
        }
    }

    std::variant<std::vector<std::uint8_t>, std::vector<std::uint16_t>, std::vector<std::uint32_t>> numbers_;
    std::uint32_t most_ = std::numeric_limits<std::uint8_t>::max();  ///< that numbers_ can hold
};

}  // namespace korv::tools
