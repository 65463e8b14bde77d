#include "check/korv_reading.h"

#include <algorithm>
#include <istream>
#include <streambuf>
#include <vector>

#include "common/quantity.h"
#include "io/class_file_reader.h"

namespace korv::tools {

namespace {

/// A text as the source of a stream, which never writes to it.
class TextBuffer : public std::streambuf {
public:
    explicit TextBuffer(std::string_view text) {
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the interface of the library
        char* const begin = const_cast<char*>(text.data());
        setg(begin, begin, begin + text.size());
    }

    std::size_t position() const { return static_cast<std::size_t>(gptr() - eback()); }
};

constexpr std::size_t most_items = 12;
constexpr std::size_t most_essentials = 4;

std::string shortened(const Itemset& itemset) {
    std::string text;
    for (std::size_t i = 0; i < std::min(itemset.size(), most_items); ++i) {
        text += (i == 0 ? "" : " ") + std::to_string(itemset[i]);
    }
    if (itemset.size() > most_items) {
        text += " and " + with_commas(itemset.size() - most_items) + " more items";
    }
    return text;
}

std::string words_for(const std::vector<Itemset>& essentials) {
    if (essentials.empty()) {
        return "no essential itemset";
    }
    std::string text = essentials.size() == 1 ? "the essential itemset " : "the essential itemsets ";
    const std::size_t shown = std::min(essentials.size(), most_essentials);
    const std::size_t more = essentials.size() - shown;
    for (std::size_t i = 0; i < shown; ++i) {
        const bool is_last = i + 1 == shown && more == 0;
        text += i == 0 ? "" : is_last ? " and " : ", ";
        text += "{" + shortened(essentials[i]) + "}";
    }
    return more == 0 ? text : text + " and " + with_commas(more) + " more";
}

}  // namespace

KorvRecord read_as_korv(std::string_view text, std::size_t begin) {
    TextBuffer buffer(text.substr(begin));
    std::istream input(&buffer);
    ClassFileReader reader(input);
    KorvRecord record;
    record.is_class = reader.read(record.closed_itemset, record.of_class);
    record.end = begin + buffer.position();
    return record;
}

std::string description(const KorvRecord& record) {
    return "the class " + shortened(record.closed_itemset) + " with support " +
           std::to_string(record.of_class.support) + " and " + words_for(record.of_class.essentials);
}

}  // namespace korv::tools
