#include "check/checked_lines.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "check/korv_reading.h"
#include "check/meant_line.h"
#include "common/class_file.h"
#include "common/quantity.h"

namespace korv::tools {

namespace {

/// "line 3", or "lines 3 to 7".
std::string lines_text(std::size_t first, std::size_t last) {
    return first == last ? "line " + std::to_string(first)
                         : "lines " + std::to_string(first) + " to " + std::to_string(last);
}

std::string and_lines_behind(std::size_t lines) {
    return lines == 0   ? "this line"
           : lines == 1 ? "this line and the one behind it"
                        : "this line and the " + with_commas(lines) + " behind it";
}

std::size_t line_ends_in(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

/// How many lines a piece of text has, the last of which may lack its line end.
std::size_t lines_in(std::string_view text) {
    return line_ends_in(text) + (text.empty() || text.ends_with('\n') ? 0 : 1);
}

class LineCheck {
public:
    LineCheck(const TextInput& input, Findings& findings)
        : text_(input.text), findings_(findings), reader_(input) {
        checked_.records.reserve(line_ends_in(text_));
        checked_.places.reserve(line_ends_in(text_));
    }

    CheckedLines run() {
        for (bool is_there = true; is_there;) {
            bool is_odd = false;
            try {
                is_there = reader_.next();
                is_odd = is_there && (reader_.unordered() || reader_.leading_zeros());
            } catch (const ClassLineFault&) {
                is_odd = true;
            }
            if (is_odd) {
                look_at_odd_line();
            } else if (is_there) {
                add_record(stored_class(reader_), {line(), is_korv_here(), true});
                go_on();
            }
        }
        return std::move(checked_);
    }

private:
    std::uint32_t line() const { return static_cast<std::uint32_t>(reader_.line()); }

    /// Whether korv begins a record at the current line.
    bool is_korv_here() const { return !stopped_at_ && korv_position_ <= reader_.line_begin(); }

    /// korv takes the current line, and no more.
    void go_on() {
        if (is_korv_here()) {
            korv_position_ = reader_.line_end();
        }
    }

    void add_record(std::pair<Itemset, data> record, RecordPlace place) {
        checked_.records.push_back(std::move(record));
        checked_.places.push_back(place);
    }

    void look_at_odd_line() {
        const std::size_t begin = reader_.line_begin();
        MeantLine line_of = meant_line(text_.substr(begin, reader_.line_end() - begin));
        if (!is_korv_here()) {
            add_findings(line_of.faults, Severity::error, loss());
            add_meant(std::move(line_of), false);
        } else if (line_of.is_skipped) {
            add_findings(line_of.faults, Severity::warning, "korv skips it");
            go_on();
        } else {
            look_at_korv(std::move(line_of));
        }
    }

    /// Looks at what korv makes of a line at which it begins a record.
    void look_at_korv(MeantLine line_of) {
        KorvRecord record = read_as_korv(text_, reader_.line_begin());
        const bool is_meant = line_of.meant && record.is_class && record.end == reader_.line_end() &&
                              record.closed_itemset == line_of.meant->first &&
                              record.of_class.support == line_of.meant->second.support &&
                              record.of_class.essentials == line_of.meant->second.essentials;
        if (is_meant) {
            add_findings(line_of.faults, Severity::warning, "korv reads it as it is meant");
            add_meant(std::move(line_of), true);
            go_on();
            return;
        }
        add_findings(line_of.faults, Severity::error, effect(record));
        add_meant(std::move(line_of), false);
        if (!record.is_class) {
            stopped_at_ = line();
            return;
        }
        korv_position_ = record.end;
        record_line_ = line();
        add_record({std::move(record.closed_itemset), std::move(record.of_class)}, {line(), true, false});
    }

    /// `is_stored`: whether korv stores the class that is meant.
    void add_meant(MeantLine line_of, bool is_stored) {
        if (line_of.meant && (is_stored || !line_of.is_guess)) {
            add_record(std::move(*line_of.meant), {line(), is_stored, true});
        } else if (!line_of.is_skipped) {
            ++checked_.unclear_lines;
        }
    }

    /// What becomes of the current line, at which korv begins no record.
    std::string loss() const {
        return stopped_at_ ? "korv ignores it, since it stops reading at line " + std::to_string(*stopped_at_)
                           : "korv takes it into the class of line " + std::to_string(record_line_);
    }

    /// What korv makes of a record that begins at the current line.
    std::string effect(const KorvRecord& record) const {
        if (!record.is_class) {
            return "korv stops reading here, and ignores " +
                   and_lines_behind(lines_in(text_.substr(reader_.line_end())));
        }
        std::string text = "korv reads " + description(record);
        const std::size_t lines =
            lines_in(text_.substr(reader_.line_begin(), record.end - reader_.line_begin()));
        if (lines > 1) {
            text += ", into which it takes " + lines_text(line() + 1, line() + lines - 1);
        }
        return text;
    }

    /// `severity`: of faults that korv does not read as they are meant.
    void add_findings(const std::vector<LineFault>& faults, Severity severity, const std::string& effect) {
        for (const LineFault& fault : faults) {
            findings_.add({.kind = fault.kind,
                           .severity = std::min(severity, description(fault.kind).severity),
                           .place = {line(), fault.column},
                           .found = fault.found,
                           .expected = fault.expected,
                           .effect = effect});
        }
    }

    std::string_view text_;
    Findings& findings_;
    ClassRecordReader reader_;
    CheckedLines checked_;
    std::size_t korv_position_ = 0;  ///< where korv begins its next record
    std::size_t record_line_ = 0;    ///< of the last one that goes beyond its line
    std::optional<std::size_t> stopped_at_;
};

}  // namespace

CheckedLines check_lines(const TextInput& input, Findings& findings) {
    return LineCheck(input, findings).run();
}

}  // namespace korv::tools
