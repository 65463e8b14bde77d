#pragma once

#include <string>
#include <string_view>

namespace korv::tools {

/// A file that is written completely or not at all: its content goes to a temporary file beside it, which
/// takes its name at commit(). Until then, and when the program is ended by a signal (see
/// remove_outputs_on_signals), whatever had that name before is left unchanged.
class AtomicOutput {
public:
    /// "-" stands for standard output. It is written to directly, and so are devices, pipes and everything in
    /// /dev and /proc. A symbolic link is followed. The permissions of a file that is replaced are kept.
    /// Throws Error when the file cannot be created.
    explicit AtomicOutput(std::string path);
    /// Removes the temporary file, unless it was committed.
    ~AtomicOutput();
    AtomicOutput(const AtomicOutput&) = delete;
    AtomicOutput& operator=(const AtomicOutput&) = delete;

    /// Appends text. Throws Error when it cannot be written, for example because the disk is full.
    void write(std::string_view text);

    /// Brings everything that was written to the disk, under the temporary name. Throws Error when that
    /// fails. Outputs that belong together are all finished before the first of them is committed.
    void finish();

    /// Finishes the file and gives it its name. Throws Error when that fails. Call this once, last.
    void commit();

private:
    static constexpr int standard_output = 1;

    void create_temporary();
    void flush();
    [[noreturn]] void fail(std::string_view what) const;

    std::string path_;       ///< for messages
    std::string target_;     ///< the path behind symbolic links
    std::string temporary_;  ///< empty when there is none, or none any more
    int descriptor_ = standard_output;
    std::string buffer_;
};

/// Whether a path leads to a device, a pipe or something of the system's own, rather than to a file that can
/// be replaced.
bool is_special(const std::string& path);

/// Whether two paths lead to the same regular file, which need not exist, or are both "-".
bool is_same_file(const std::string& one, const std::string& other);

/// From now on, the signals that end a program from outside (SIGINT, SIGTERM, SIGHUP, SIGPIPE) first remove
/// the temporary files of all outputs, and a file that grows beyond the limit of its size is an error like a
/// full disk.
void remove_outputs_on_signals();

}  // namespace korv::tools
