#pragma once

#include <string>
#include <string_view>

namespace korv::tools {

/// A file that is there whole or not at all: what is written goes to a temporary file beside it, which takes
/// its name at commit(). Until then, and when the program is ended by a signal (see
/// remove_outputs_on_signals), whatever was at that name stays as it was.
class AtomicOutput {
public:
    /// "-" stands for standard output, which is written as it comes, like a device, a pipe and all that is in
    /// /dev and /proc. A symbolic link is followed. An earlier file's rights are kept. Throws Error when the
    /// file cannot be created.
    explicit AtomicOutput(std::string path);
    /// Removes the temporary file, unless it was committed.
    ~AtomicOutput();
    AtomicOutput(const AtomicOutput&) = delete;
    AtomicOutput& operator=(const AtomicOutput&) = delete;

    /// Appends text. Throws Error when it cannot be written, on a full disk for example.
    void write(std::string_view text);

    /// Brings all that was written to the disk, under the temporary name. Throws Error when that fails. For
    /// several outputs that belong together: all are finished before one is committed.
    void finish();

    /// Finishes the file and gives it its name. Throws Error when that fails. To be called once, last.
    void commit();

private:
    static constexpr int standard_output = 1;

    void create_temporary();
    void flush();
    [[noreturn]] void fail(std::string_view what) const;

    std::string path_;       ///< for messages
    std::string target_;     ///< the path behind symbolic links
    std::string temporary_;  ///< empty when there is none (any more)
    int descriptor_ = standard_output;
    std::string buffer_;
};

/// Whether a path leads to a device, a pipe or what the system keeps, and not to a file that can be replaced.
bool is_special(const std::string& path);

/// Whether two paths lead to the same regular file, there or not; or both are "-".
bool is_same_file(const std::string& one, const std::string& other);

/// From now on the signals that end a program from outside (SIGINT, SIGTERM, SIGHUP, SIGPIPE) remove the
/// temporary files of all outputs before they do; and a file that grows beyond its limit is an error like a
/// full disk.
void remove_outputs_on_signals();

}  // namespace korv::tools
