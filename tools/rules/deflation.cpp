#include "rules/deflation.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace korv::tools {

/// One stream of zlib.
class Deflation::State {
public:
    explicit State(TextSink sink) : sink_(std::move(sink)), compressed_(buffer_bytes) {
        constexpr int level = 6;
        constexpr int most_memory = 9;
        // A negative number of bits stands for deflate without a frame.
        if (::deflateInit2(&stream_, level, Z_DEFLATED, -MAX_WBITS, most_memory, Z_DEFAULT_STRATEGY) !=
            Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~State() { ::deflateEnd(&stream_); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void add(std::string_view bytes) {
        while (!bytes.empty()) {
            const std::size_t size = std::min<std::size_t>(bytes.size(), std::numeric_limits<uInt>::max());
            // zlib takes bytes that it does not change as bytes that it might.
            stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
            stream_.avail_in = static_cast<uInt>(size);
            compress(Z_NO_FLUSH);
            bytes.remove_prefix(size);
        }
    }

    void finish() { compress(Z_FINISH); }

private:
    static constexpr std::size_t buffer_bytes = std::size_t{1} << 16;

    /// Takes all that is offered. There is no error to expect where the state is sound.
    void compress(int flush) {
        do {
            stream_.next_out = reinterpret_cast<Bytef*>(compressed_.data());
            stream_.avail_out = static_cast<uInt>(compressed_.size());
            ::deflate(&stream_, flush);
            sink_({compressed_.data(), compressed_.size() - stream_.avail_out});
        } while (stream_.avail_out == 0);
    }

    TextSink sink_;
    std::vector<char> compressed_;
    z_stream stream_ = {};
};

Deflation::Deflation(TextSink sink) : state_(std::make_unique<State>(std::move(sink))) {}

Deflation::~Deflation() = default;

void Deflation::add(std::string_view bytes) {
    state_->add(bytes);
}

void Deflation::finish() {
    state_->finish();
}

}  // namespace korv::tools
