#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/text_input.h"
#include "mine/reading.h"
#include "mine/transaction_reader.h"
#include "mine_mpi/processes.h"
#include "mine_mpi/quoted_rows.h"

namespace korv::tools {

/// What is known of an input before it is read.
struct InputFigures {
    std::uint64_t size = 0;     ///< in bytes; of what is compressed, about that of its text
    std::uint64_t begin = 0;    ///< where its text begins: behind a byte-order mark
    bool is_divisible = false;  ///< whether several processes can read it, each a part
    bool is_stream = false;     ///< whether the first process alone can read it, and once
};

/// Bytes of an input.
struct InputRange {
    std::size_t input = 0;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;  ///< without meaning where the input is not divisible

    bool operator==(const InputRange&) const = default;
};

/// The ranges of each process. In the order of the processes they are all inputs from the first to the last
/// byte, in parts of about the same size: an input that is not divisible goes to one process, and so does
/// what is before a stream.
std::vector<std::vector<InputRange>> divided(const std::vector<InputFigures>& inputs, std::size_t processes);

/// The inputs of a run, divided among its processes at the beginnings of rows, so that what they read, in the
/// order of the processes, is the whole database.
class InputParts {
public:
    /// Looks at the inputs, and decides how they are read; the same in all processes. `paths` and `options`
    /// must outlive it. Throws Error in all processes, as read_database does.
    InputParts(Processes& processes, const std::vector<std::string>& paths, const ReadingOptions& options);

    /// How they are read; nothing where nothing is written in any of them.
    const std::optional<ReaderChoice>& choice() const { return choice_; }

    /// Reads the parts of this process, one after the other. Throws Error in this process.
    void read(const std::function<void(const TextPart& part)>& visit);

    /// Whether this process reads the beginning of the text that decided.
    bool has_deciding() const;

private:
    void decide();
    TextInput beginning_of(std::size_t input) const;
    TextInput stream(std::size_t input);
    std::uint64_t end_of_header_of(std::size_t input) const;
    void broadcast_choice();
    void look_for_quoted_rows();
    TextPart part_of(const InputRange& range) const;
    TextPart whole_part(std::size_t input);

    Processes& processes_;
    const std::vector<std::string>& paths_;
    std::vector<InputFigures> inputs_;
    std::vector<InputRange> ranges_;  ///< of this process
    std::optional<ReaderChoice> choice_;
    std::uint64_t deciding_ = 0;  ///< the input by which it was chosen
    const ReadingOptions& options_;
    RowForm form_;
    std::map<std::size_t, TextInput>
        streams_;                    ///< texts of streams, in the first process, until they are read
    bool begins_in_quotes_ = false;  ///< whether the first range begins within a quoted cell
    bool ends_in_quotes_ = false;    ///< whether the last range ends in one
};

}  // namespace korv::tools
