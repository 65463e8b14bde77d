#include "common/gzip.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include "common/byte_pieces.h"
#include "common/error.h"

namespace korv::tools {

/// The decompression of one input.
class Gunzip::State {
public:
    State(ReadBytes read, std::string_view beginning, std::string name)
        : read_(std::move(read)), name_(std::move(name)), compressed_(buffer_bytes) {
        std::ranges::copy(beginning, compressed_.begin());
        constexpr int gzip_alone = 16;
        if (::inflateInit2(&stream_, MAX_WBITS + gzip_alone) != Z_OK) {
            throw std::bad_alloc();
        }
        offer(beginning.size());
    }
    ~State() { ::inflateEnd(&stream_); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    /// The next bytes of the text, at most `size`; none at its end.
    std::size_t text(char* out, std::size_t size) {
        const auto most = static_cast<uInt>(std::min<std::size_t>(size, std::numeric_limits<uInt>::max()));
        stream_.next_out = bytes_of(out);
        stream_.avail_out = most;
        while (stream_.avail_out == most && prepare()) {
            inflate_some();
        }
        return most - stream_.avail_out;
    }

private:
    static constexpr std::size_t buffer_bytes = std::size_t{1} << 18;

    static Bytef* bytes_of(char* bytes) {
        return reinterpret_cast<Bytef*>(bytes);  // the same bytes as zlib calls them
    }

    void offer(std::size_t size) {
        stream_.next_in = bytes_of(compressed_.data());
        stream_.avail_in = static_cast<uInt>(size);
    }

    /// Returns false at the end of the last member.
    bool prepare() {
        if (stream_.avail_in == 0 && !is_at_end_) {
            const std::size_t count = read_(compressed_.data(), compressed_.size());
            is_at_end_ = count == 0;
            offer(count);
        }
        if (is_between_members_ && stream_.avail_in > 0) {
            ::inflateReset(&stream_);
            is_between_members_ = false;
        }
        return !is_between_members_;
    }

    void inflate_some() {
        const int status = ::inflate(&stream_, Z_NO_FLUSH);
        if (status == Z_MEM_ERROR) {
            throw std::bad_alloc();
        }
        if (status == Z_BUF_ERROR && is_at_end_) {
            throw Error(name_ + ": ends in the middle of its compressed data; expected a whole gzip file");
        }
        if (status != Z_OK && status != Z_STREAM_END && status != Z_BUF_ERROR) {
            throw Error(name_ + ": its compressed data is damaged; expected a gzip file");
        }
        is_between_members_ = status == Z_STREAM_END;
    }

    const ReadBytes read_;
    const std::string name_;
    std::vector<char> compressed_;
    z_stream stream_ = {};
    bool is_at_end_ = false;  ///< of the compressed bytes
    bool is_between_members_ = false;
};

Gunzip::Gunzip(ReadBytes read, std::string_view beginning, std::string name)
    : state_(std::make_unique<State>(std::move(read), beginning, std::move(name))) {}

Gunzip::~Gunzip() = default;

std::size_t Gunzip::text(char* out, std::size_t size) {
    return state_->text(out, size);
}

std::string gunzip(const ReadBytes& read, std::string_view beginning, const std::string& name) {
    Gunzip source(read, beginning, name);
    BytePieces pieces;
    while (pieces.fill([&source](char* out, std::size_t size) { return source.text(out, size); })) {
    }
    std::string text;
    pieces.move_to(text);
    return text;
}

}  // namespace korv::tools
