#include "mine_mpi/input_parts.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "common/error.h"
#include "common/input_file.h"

namespace korv::tools {

namespace {

/// More than guess_format looks at.
constexpr std::size_t bytes_of_beginning = (std::size_t{1} << 20) + 64;

constexpr std::size_t bytes_at_once = std::size_t{1} << 16;

/// About how many times longer a text is than what gzip makes of it.
constexpr std::uint64_t times_compressed = 4;

InputFigures figures_of_input(const std::string& path) {
    struct stat status = {};
    if (path == "-") {
        return {.is_stream = true};
    }
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {.is_stream = S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode)};
    }
    try {
        InputFile file(path);
        std::string mark(byte_order_mark.size(), '\0');
        mark.resize(file.read_at(0, mark.data(), mark.size()));
        const auto size = static_cast<std::uint64_t>(file.expected_size());
        if (mark.starts_with(gzip_mark)) {
            return {.size = size * times_compressed};
        }
        return {.size = size,
                .begin = mark == byte_order_mark ? byte_order_mark.size() : 0,
                .is_divisible = true};
    } catch (const Error&) {
        return {};  // whoever reads it says what is wrong
    }
}

/// Where the first line begins that begins at `position` or behind, and behind the header, but for the first
/// line of all; the end of the file where none does.
std::uint64_t line_from(InputFile& file, const InputFigures& input, std::uint64_t position,
                        std::uint64_t header_end) {
    if (position <= input.begin) {
        return input.begin;
    }
    std::string bytes(bytes_at_once, '\0');
    for (std::uint64_t begin = position - 1; begin < input.size; begin += bytes.size()) {
        bytes.resize(file.read_at(begin, bytes.data(), bytes_at_once));
        const std::size_t end = bytes.find('\n');
        if (end != std::string::npos) {
            return std::max(begin + end + 1, header_end);
        }
        if (bytes.size() < bytes_at_once) {
            break;
        }
    }
    return input.size;
}

std::string bytes_between(InputFile& file, std::uint64_t begin, std::uint64_t end) {
    std::string bytes(end - begin, '\0');
    bytes.resize(file.read_at(begin, bytes.data(), bytes.size()));
    return bytes;
}

/// Where the first row begins behind the quoted cell in which `position` is; the end of the file where none
/// does.
std::uint64_t row_from(InputFile& file, const InputFigures& input, std::uint64_t position,
                       const RowForm& form) {
    for (std::size_t size = bytes_at_once;; size *= 2) {
        const std::string text = bytes_between(file, position, std::min(input.size, position + size));
        const auto row = find_quoted_rows(text, true, form).first_row;
        if (row || position + size >= input.size) {
            return row ? position + *row : input.size;
        }
    }
}

/// The lines of a file from one position to another.
std::size_t lines_between(const std::string& path, std::uint64_t from, std::uint64_t to) {
    InputFile file(path);
    std::size_t lines = 0;
    for (std::uint64_t position = from; position < to; position += bytes_at_once) {
        const std::string bytes = bytes_between(file, position, std::min(to, position + bytes_at_once));
        lines += static_cast<std::size_t>(std::ranges::count(bytes, '\n'));
    }
    return lines;
}

TextInput first_bytes(const TextInput& input) {
    const std::size_t end = input.text.find('\n', std::min(bytes_of_beginning, input.text.size()));
    return {input.name, input.text.substr(0, std::min(end, input.text.size() - 1) + 1)};
}

/// Puts the ranges of the part [begin, end) of the bytes of all inputs behind each other into `ranges`.
void add_ranges(const std::vector<InputFigures>& inputs, std::size_t first, std::uint64_t begin,
                std::uint64_t end, bool is_last, std::vector<InputRange>& ranges) {
    const auto is_in = [&](std::uint64_t position) {
        return position >= begin && (position < end || is_last);
    };
    std::uint64_t offset = 0;  // of the input among all
    for (std::size_t i = first; i < inputs.size(); ++i) {
        const InputFigures& input = inputs[i];
        const std::uint64_t size = input.size - input.begin;
        if (!input.is_divisible || size == 0) {
            if (is_in(offset + size / 2)) {
                ranges.push_back({i, input.begin, input.size});
            }
        } else if (std::max(begin, offset) < std::min(end, offset + size)) {
            ranges.push_back({i, input.begin + std::max(begin, offset) - offset,
                              input.begin + std::min(end, offset + size) - offset});
        }
        offset += size;
    }
}

}  // namespace

std::vector<std::vector<InputRange>> divided(const std::vector<InputFigures>& inputs, std::size_t processes) {
    std::vector<std::vector<InputRange>> ranges(processes);
    const auto stream =
        std::find_if(inputs.rbegin(), inputs.rend(), [](const auto& each) { return each.is_stream; });
    const auto first = static_cast<std::size_t>(inputs.rend() - stream);
    for (std::size_t i = 0; i < first; ++i) {
        ranges.front().push_back({i, inputs[i].begin, inputs[i].size});
    }
    std::uint64_t total = 0;
    for (std::size_t i = first; i < inputs.size(); ++i) {
        total += inputs[i].size - inputs[i].begin;
    }
    const auto begin_of = [&](std::size_t process) {
        return total / processes * process + total % processes * process / processes;
    };
    for (std::size_t process = 0; process < processes; ++process) {
        add_ranges(inputs, first, begin_of(process), begin_of(process + 1), process + 1 == processes,
                   ranges[process]);
    }
    return ranges;
}

InputParts::InputParts(Processes& processes, const std::vector<std::string>& paths,
                       const ReadingOptions& options)
    : processes_(processes), paths_(paths), options_(options) {
    processes_.together([&] {
        if (processes_.is_first()) {
            require_standard_input_once(paths_);
            std::ranges::transform(paths_, std::back_inserter(inputs_), figures_of_input);
            decide();
        }
    });
    processes_.broadcast(inputs_);
    processes_.broadcast_value(deciding_);
    broadcast_choice();
    ranges_ = divided(
        inputs_, static_cast<std::size_t>(processes_.size()))[static_cast<std::size_t>(processes_.number())];
    if (choice_ && choice_->report.format != Format::fimi) {
        form_ = {*choice_->report.separator, options.weighted};
        look_for_quoted_rows();
    }
}

/// Reads one text after the other until one decides.
void InputParts::decide() {
    for (std::size_t input = 0; input < inputs_.size(); ++input) {
        const TextInput text = inputs_[input].is_stream ? first_bytes(stream(input)) : beginning_of(input);
        if (decides_reader(text, options_)) {
            choice_ = choose_reader(text, options_);
            deciding_ = input;
            return;
        }
    }
}

/// The text of a stream, which is kept.
TextInput InputParts::stream(std::size_t input) {
    auto found = streams_.find(input);
    if (found == streams_.end()) {
        found = streams_.emplace(input, read_text(paths_[input])).first;
    }
    return found->second;
}

/// As much of a file as decides, at least, and whole lines.
TextInput InputParts::beginning_of(std::size_t input) const {
    TextStream stream(paths_[input]);
    TextInput text = {stream.name(), std::string(bytes_of_beginning, '\0')};
    text.text.resize(stream.read(text.text.data(), bytes_of_beginning));
    bool is_at_end = text.text.size() < bytes_of_beginning;
    while (!is_at_end) {
        std::string more(bytes_at_once, '\0');
        more.resize(stream.read(more.data(), more.size()));
        is_at_end = more.size() < bytes_at_once;
        const std::size_t end = more.find('\n');
        if (end != std::string::npos) {
            return {text.name, text.text + more.substr(0, end + 1)};
        }
        text.text += more;
    }
    return text;
}

/// Where the lines behind the header begin in a table; where the text begins in anything else.
std::uint64_t InputParts::end_of_header_of(std::size_t input) const {
    const std::uint64_t begin = inputs_[input].begin;
    return choice_->report.format == Format::table
               ? begin + end_of_header(beginning_of(input), choice_->report)
               : begin;
}

void InputParts::broadcast_choice() {
    bool is_chosen = choice_.has_value();
    processes_.broadcast_value(is_chosen);
    if (!is_chosen) {
        return;
    }
    if (!choice_) {
        choice_.emplace();
    }
    ReadingReport& report = choice_->report;
    processes_.broadcast_value(report.format);
    processes_.broadcast(report.format_seen);
    processes_.broadcast_value(report.separator);
    processes_.broadcast_value(report.separator_guessed);
    processes_.broadcast(choice_->first);
    processes_.broadcast(choice_->header);
}

/// Finds out whether the ranges of this process begin and end within quoted cells. A range tells, for either
/// state at its beginning, in which state it ends; so the states follow from the first process on.
void InputParts::look_for_quoted_rows() {
    if (processes_.size() == 1) {
        return;
    }
    std::array<char, 2> end_by_begin = {0, 1};
    if (!ranges_.empty()) {
        const InputRange& last = ranges_.back();
        const InputFigures& input = inputs_[last.input];
        end_by_begin = {0, 0};
        if (input.is_divisible && last.end < input.size) {
            try {
                InputFile file(paths_[last.input]);
                const std::uint64_t header_end = end_of_header_of(last.input);
                const std::uint64_t begin = line_from(file, input, last.begin, header_end);
                const std::string text =
                    bytes_between(file, begin, line_from(file, input, last.end, header_end));
                const bool is_beginning = last.begin == input.begin;
                for (const bool state : {false, true}) {
                    end_by_begin[state ? 1 : 0] =
                        find_quoted_rows(text, state && !is_beginning, form_).ends_in_quotes ? 1 : 0;
                }
            } catch (const Error&) {
                end_by_begin = {0, 0};  // the reading says what is wrong
            }
        }
    }
    const std::vector<std::array<char, 2>> all = processes_.all_of(end_by_begin);
    char state = 0;
    for (int process = 0; process < processes_.number(); ++process) {
        state = all[static_cast<std::size_t>(process)].at(static_cast<std::size_t>(state));
    }
    begins_in_quotes_ = state != 0;
    ends_in_quotes_ = end_by_begin.at(static_cast<std::size_t>(state)) != 0;
}

bool InputParts::has_deciding() const {
    return std::ranges::any_of(ranges_, [&](const InputRange& range) {
        return range.input == deciding_ && range.begin == inputs_[range.input].begin;
    });
}

void InputParts::read(const std::function<void(const TextPart& part)>& visit) {
    for (const InputRange& range : ranges_) {
        TextPart part = inputs_[range.input].is_divisible ? part_of(range) : whole_part(range.input);
        part.is_deciding = part.is_beginning && range.input == deciding_;
        if (part.is_beginning || !part.lines.text.empty()) {
            visit(part);
        }
    }
}

TextPart InputParts::part_of(const InputRange& range) const {
    const InputFigures& input = inputs_[range.input];
    const std::string& path = paths_[range.input];
    TextPart part;
    part.is_beginning = range.begin == input.begin;
    if (part.is_beginning) {
        part.beginning = [beginning = beginning_of(range.input)] { return beginning; };
    } else {
        part.beginning = [this, number = range.input] { return beginning_of(number); };
    }
    InputFile file(path);
    if (file.expected_size() != input.size) {
        throw Error(path + ": changed while it was read; expected a file that nobody writes to");
    }
    const std::uint64_t header_end = end_of_header_of(range.input);
    std::uint64_t begin = line_from(file, input, range.begin, header_end);
    std::uint64_t end = range.end == input.size ? input.size : line_from(file, input, range.end, header_end);
    if (begins_in_quotes_ && range.begin > input.begin && begin < input.size) {
        begin = row_from(file, input, begin, form_);
    }
    if (ends_in_quotes_ && range.end < input.size && end < input.size) {
        end = row_from(file, input, end, form_);
    }
    part.lines = {path, bytes_between(file, begin, std::max(begin, end))};
    file.require_unchanged();
    if (!part.is_beginning) {
        part.lines.lines_before = [path, first = input.begin, begin] {
            return lines_between(path, first, begin);
        };
    }
    return part;
}

/// An input that is read by one process.
TextPart InputParts::whole_part(std::size_t input) {
    TextPart part;
    part.lines = inputs_[input].is_stream ? stream(input) : read_text(paths_[input]);
    streams_.erase(input);
    part.is_beginning = true;
    part.beginning = [beginning = first_bytes(part.lines)] { return beginning; };
    return part;
}

}  // namespace korv::tools
