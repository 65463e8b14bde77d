#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace korv::tools {

/// Bytes of unknown number, in pieces that never move. Joining them frees each as soon as it is copied, so
/// that no second copy of all bytes exists at any time.
class BytePieces {
public:
    /// Has `read(char* out, std::size_t size)` write up to `size` bytes behind those so far; it returns how
    /// many there were. Returns false when there were none.
    template <typename Read>
    bool fill(Read read) {
        if (pieces_.empty() || pieces_.back().used == piece_bytes) {
            // NOLINTNEXTLINE(modernize-avoid-c-arrays): see Piece
            pieces_.push_back({std::make_unique_for_overwrite<char[]>(piece_bytes), 0});
        }
        Piece& last = pieces_.back();
        const std::size_t count = read(last.bytes.get() + last.used, piece_bytes - last.used);
        last.used += count;
        return count > 0;
    }

    /// Appends all bytes to `text`. None are left here.
    void move_to(std::string& text) {
        std::size_t size = text.size();
        for (const Piece& piece : pieces_) {
            size += piece.used;
        }
        text.reserve(size);
        for (Piece& piece : pieces_) {
            text.append(piece.bytes.get(), piece.used);
            piece.bytes.reset();
        }
        pieces_.clear();
    }

private:
    /// Above the size from which the system's allocator always gives freed memory back to the system. Pages
    /// that are never written cost nothing.
    static constexpr std::size_t piece_bytes = std::size_t{1} << 26;

    struct Piece {
        std::unique_ptr<char[]> bytes;  // NOLINT(modernize-avoid-c-arrays): a vector would clear them first
        std::size_t used;
    };
    std::vector<Piece> pieces_;
};

}  // namespace korv::tools
