#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/descriptor.h"
#include "common/output_place.h"
#include "common/temporary_file.h"

namespace korv::tools {

/// A file that is written completely or not at all: its content goes to a temporary file beside it, which
/// takes its name when it is committed. Until then, and when the program is ended by a signal (see
/// remove_temporary_files_on_signals), whatever had that name before is left unchanged.
class AtomicOutput {
public:
    /// "-" stands for standard output. It is written to directly, from where it stands, and so are other open
    /// descriptors (/dev/stdout, /dev/fd/3), devices and pipes. See find_output for links.
    ///
    /// A file that is replaced passes on its permissions, and its owner and group where the user may give
    /// files to them. A file that the user may not write is not replaced, and neither is one that nobody may
    /// write, not even for root. Throws Error when the file cannot be created or replaced.
    explicit AtomicOutput(const std::string& path);
    AtomicOutput(const AtomicOutput&) = delete;
    AtomicOutput& operator=(const AtomicOutput&) = delete;

    /// Appends text. Throws Error when it cannot be written, for example because the disk is full; BrokenPipe
    /// where nobody reads it any more and SIGPIPE is ignored.
    void write(std::string_view text);

    /// The path that was given, or "standard output", for messages.
    const std::string& name() const { return name_; }

    /// The path of the temporary file, for a library that fills it by itself, instead of write(): it is
    /// there, and empty. Valid until it is committed. Empty for what is written to directly.
    std::string temporary_path() const;

    /// Brings everything that was written to the disk, under the temporary name. Throws Error when that
    /// fails.
    void finish();

    /// Finishes the file and gives it its name. Throws Error when that fails. Call this once, last.
    void commit();

    /// Commits files that belong together. When one of them cannot be finished or given its name, those
    /// before it are taken back: whatever had their names has them again. Signals wait meanwhile, and
    /// programs that commit into the same directories do so one after the other, so that no two of them mix
    /// their files. Only a crash between two names, which are given one directly after the other, can part
    /// them.
    ///
    /// Throws Error when a file cannot be written or given its name.
    static void commit_together(const std::vector<AtomicOutput*>& outputs);

private:
    void create_temporary();
    void keep_rights(const struct stat& earlier) const;
    void place();
    void take_back();
    void settle();
    void flush();
    void wait_until_writable() const;
    [[noreturn]] void fail(const std::string& what) const;

    std::string name_;  ///< for messages
    OutputPlace place_;
    std::optional<TemporaryFile> temporary_;  ///< none for what is written to directly
    Descriptor direct_;                       ///< of what is written to directly
    std::optional<HiddenName> earlier_;       ///< of the file that is replaced, while that can be undone
    bool is_new_ = false;                     ///< nothing had the name when it was given
    std::string buffer_;
};

}  // namespace korv::tools
