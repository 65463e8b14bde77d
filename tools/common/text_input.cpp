#include "common/text_input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "common/byte_pieces.h"
#include "common/error.h"
#include "common/gzip.h"

namespace korv::tools {

namespace {

constexpr std::string_view gzip_mark = "\x1F\x8B";
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

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

void refuse_foreign(const TextInput& input) {
    const auto* const it = std::ranges::find_if(
        foreign, [&input](const Foreign& each) { return input.text.starts_with(each.mark); });
    if (it != foreign.end()) {
        throw input_error(input.name, {1, 1}, it->found, it->expected);
    }
}

/// A file or standard input that is read from beginning to end. Standard input stays open.
class Source {
public:
    Source(const std::string& path, const std::string& name)
        : name_(name),
          is_file_(path != "-"),
          descriptor_(is_file_ ? ::open(path.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO) {
        if (descriptor_ < 0 || ::fstat(descriptor_, &before_) != 0) {
            fail();
        }
    }
    ~Source() {
        if (is_file_ && descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    /// Reads `size` bytes, or fewer where the input ends before. Returns how many.
    std::size_t read(char* out, std::size_t size) {
        std::size_t done = 0;
        while (done < size) {
            const ssize_t count = ::read(descriptor_, out + done, size - done);
            if (count == 0) {
                break;
            }
            if (count < 0 && errno != EINTR) {
                fail();
            }
            done += static_cast<std::size_t>(std::max(count, ssize_t{0}));
        }
        return done;
    }

    /// The size of a file in bytes; 0 where it is not known before the end.
    std::size_t expected_size() const {
        return S_ISREG(before_.st_mode) ? static_cast<std::size_t>(before_.st_size) : 0;
    }

    /// Throws Error when somebody wrote to the file since it was opened.
    void require_unchanged() const {
        struct stat after = {};
        const bool is_known = expected_size() > 0 && ::fstat(descriptor_, &after) == 0;
        if (is_known && (after.st_size != before_.st_size || after.st_mtim.tv_sec != before_.st_mtim.tv_sec ||
                         after.st_mtim.tv_nsec != before_.st_mtim.tv_nsec)) {
            throw Error(name_ + ": changed while it was read; expected a file that nobody writes to");
        }
    }

private:
    [[noreturn]] void fail() const { throw Error(name_ + ": cannot be read: " + std::strerror(errno)); }

    const std::string& name_;
    bool is_file_;
    int descriptor_;
    struct stat before_ = {};
};

/// Everything that follows `beginning`. A text of known size is read to its place; any other is collected in
/// pieces.
std::string rest_of(Source& source, std::string beginning) {
    const std::size_t read_already = beginning.size();
    std::string text = std::move(beginning);
    text.resize(std::max(source.expected_size(), read_already));
    const std::size_t wanted = text.size() - read_already;
    const std::size_t count = source.read(text.data() + read_already, wanted);
    text.resize(read_already + count);
    if (count == wanted) {
        BytePieces pieces;
        while (pieces.fill([&source](char* out, std::size_t size) { return source.read(out, size); })) {
        }
        pieces.move_to(text);
    }
    return text;
}

}  // namespace

TextInput read_text(const std::string& path) {
    TextInput input = {path == "-" ? "standard input" : path, {}};
    Source source(path, input.name);
    std::string beginning(gzip_mark.size(), '\0');
    beginning.resize(source.read(beginning.data(), beginning.size()));
    if (beginning == gzip_mark) {
        input.text = gunzip([&source](char* out, std::size_t size) { return source.read(out, size); },
                            beginning, input.name);
    } else {
        input.text = rest_of(source, std::move(beginning));
    }
    source.require_unchanged();
    refuse_foreign(input);
    if (input.text.starts_with(byte_order_mark)) {
        input.text.erase(0, byte_order_mark.size());
    }
    return input;
}

}  // namespace korv::tools
