#include "common/text_input.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "common/byte_pieces.h"
#include "common/error.h"
#include "common/gzip.h"
#include "common/input_file.h"

namespace korv::tools {

namespace {

/// What is no text in UTF-8, by its first bytes, and what makes one of it.
struct Foreign {
    std::string_view mark;
    std::string_view found;
    std::string_view expected;
};

constexpr std::string_view as_utf8 = "UTF-8 (iconv -f UTF-16 -t UTF-8 converts it)";
constexpr std::string_view as_csv = "text (programs for spreadsheets save it as CSV)";
constexpr std::string_view as_text = "text or gzip, so decompress it first";

constexpr std::array<Foreign, 7> foreign = {{
    {"\xFF\xFE", "text in UTF-16", as_utf8},
    {"\xFE\xFF", "text in UTF-16", as_utf8},
    {"PK\x03\x04", "a ZIP file, such as XLSX or ODS", as_csv},
    {"\xD0\xCF\x11\xE0", "an Office file, such as XLS", as_csv},
    {"\xFD\x37zXZ", "data compressed by xz", as_text},
    {"\x28\xB5\x2F\xFD", "data compressed by zstd", as_text},
    {"BZh91AY&SY", "data compressed by bzip2", as_text},
}};

void refuse_foreign(std::string_view beginning, const std::string& name) {
    const auto* const it =
        std::ranges::find_if(foreign, [&](const Foreign& each) { return beginning.starts_with(each.mark); });
    if (it != foreign.end()) {
        throw input_error(name, {1, 1}, it->found, it->expected);
    }
}

}  // namespace

/// The bytes as text.
class TextStream::Source {
public:
    explicit Source(const std::string& path) : bytes_(path) {
        std::string mark(gzip_mark.size(), '\0');
        mark.resize(bytes_.read(mark.data(), mark.size()));
        if (mark == gzip_mark) {
            gunzip_.emplace([this](char* out, std::size_t size) { return bytes_.read(out, size); }, mark,
                            bytes_.name());
        } else {
            ahead_ = mark;
        }
        constexpr std::size_t bytes_ahead = std::size_t{1} << 16;
        const std::size_t begin = ahead_.size();
        ahead_.resize(bytes_ahead);
        ahead_.resize(begin + read_on(ahead_.data() + begin, bytes_ahead - begin));
        refuse_foreign(ahead_, bytes_.name());
        if (ahead_.starts_with(byte_order_mark)) {
            ahead_.erase(0, byte_order_mark.size());
            has_byte_order_mark_ = true;
        }
    }

    const std::string& name() const { return bytes_.name(); }
    bool is_compressed() const { return gunzip_.has_value(); }
    bool has_byte_order_mark() const { return has_byte_order_mark_; }

    std::string_view ahead() const { return std::string_view(ahead_).substr(taken_); }

    std::size_t read(char* out, std::size_t size) {
        const std::size_t from_ahead = std::min(size, ahead_.size() - taken_);
        std::copy_n(ahead_.data() + taken_, from_ahead, out);
        taken_ += from_ahead;
        return from_ahead == size ? size : from_ahead + read_on(out + from_ahead, size - from_ahead);
    }

    /// A text of known size is read to its place; any other is collected in pieces.
    std::string rest() {
        std::string text(ahead());
        taken_ = ahead_.size();
        if (!is_at_end_) {
            const std::size_t begin = text.size();
            const std::size_t expected = gunzip_ ? 0 : bytes_.expected_size();
            text.resize(std::max(expected, begin));
            text.resize(begin + read_on(text.data() + begin, text.size() - begin));
        }
        if (!is_at_end_) {
            BytePieces pieces;
            while (pieces.fill([this](char* out, std::size_t size) { return read_on(out, size); })) {
            }
            pieces.move_to(text);
        }
        return text;
    }

private:
    /// Reads what is not read ahead.
    std::size_t read_on(char* out, std::size_t size) {
        std::size_t done = 0;
        while (!is_at_end_ && done < size) {
            const std::size_t count =
                gunzip_ ? gunzip_->text(out + done, size - done) : bytes_.read(out + done, size - done);
            done += count;
            if (count == 0) {
                is_at_end_ = true;
                bytes_.require_unchanged();
            }
        }
        return done;
    }

    InputFile bytes_;
    std::optional<Gunzip> gunzip_;
    std::string ahead_;      ///< the beginning of the text
    std::size_t taken_ = 0;  ///< of what is ahead
    bool is_at_end_ = false;
    bool has_byte_order_mark_ = false;
};

Place place_of(const TextInput& input, std::size_t position) {
    Place place = place_of(std::string_view(input.text), position);
    place.line += input.lines_before ? input.lines_before() : 0;
    return place;
}

TextStream::TextStream(const std::string& path) : source_(std::make_unique<Source>(path)) {}
TextStream::TextStream(TextStream&&) noexcept = default;
TextStream& TextStream::operator=(TextStream&&) noexcept = default;
TextStream::~TextStream() = default;

const std::string& TextStream::name() const {
    return source_->name();
}

bool TextStream::is_compressed() const {
    return source_->is_compressed();
}

bool TextStream::has_byte_order_mark() const {
    return source_->has_byte_order_mark();
}

std::string_view TextStream::beginning() const {
    return source_->ahead();
}

std::size_t TextStream::read(char* out, std::size_t size) {
    return source_->read(out, size);
}

std::string TextStream::rest() {
    return source_->rest();
}

TextInput read_text(const std::string& path) {
    TextStream stream(path);
    std::string text = stream.rest();
    return {stream.name(), std::move(text), stream.is_compressed(), stream.has_byte_order_mark()};
}

}  // namespace korv::tools
