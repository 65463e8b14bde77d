// Any bytes as a rule file: the reader ends with records or an Error, whatever pieces the bytes come in. What
// is recovered from a record lies within what it says.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "common/error.h"
#include "rules/recorded_counts.h"
#include "rules/rule_file.h"

namespace {

using korv::tools::recorded_counts;
using korv::tools::RuleFileReader;
using korv::tools::RuleRecord;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void require_within(const RuleRecord& record) {
    require(std::ranges::is_sorted(record.premise.items) && std::ranges::is_sorted(record.conclusion.items));
    require(record.first_form() >= korv::Form::R111);
    const auto counts = recorded_counts(record, std::nullopt);
    if (!counts) {
        return;
    }
    require(counts->at_low.both == record.support.low && counts->at_high.both <= record.support.high);
    require(counts->at_low.both <= counts->at_low.premise && counts->at_high.both <= counts->at_high.premise);
}

/// What is read, as the lines of the rules and how it ends.
std::vector<std::string> read(const std::string& text, std::size_t piece) {
    std::size_t position = 0;
    RuleFileReader reader(
        [&](char* out, std::size_t size) {
            const std::size_t count = std::min({size, piece, text.size() - position});
            std::copy_n(text.data() + position, count, out);
            position += count;
            return count;
        },
        "a.txt");
    std::vector<std::string> found;
    try {
        while (reader.next()) {
            require_within(reader.record());
            found.push_back(std::to_string(reader.record().line));
        }
    } catch (const korv::tools::Error& error) {
        found.emplace_back(error.what());
    }
    return found;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(bytes, bytes + size);
    require(read(text, 3) == read(text, size + 1));
    return 0;
}
