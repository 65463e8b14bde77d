#pragma once

#include <sys/types.h>

#include <array>
#include <csignal>
#include <optional>

#include "common/descriptor.h"

namespace korv::tools {

/// A hidden name that nothing else has: ".korv-" and 16 hexadecimal digits. It does not hold the name of the
/// output, since that may be as long as a name can be.
using HiddenName = std::array<char, 23>;

/// A new file with a hidden name. It is removed at the end of the scope, and by any signal that ends the
/// program (see remove_temporary_files_on_signals), unless it was given another name.
class TemporaryFile {
public:
    /// Creates the file in `directory`, a descriptor that must outlive it, open for writing and with the
    /// rights `mode` less the umask. When that fails, `is_open` is false and errno says why.
    TemporaryFile(int directory, mode_t mode);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool is_open() const { return descriptor_.is_open(); }
    int descriptor() const { return descriptor_.number(); }

    /// Its hidden name; empty once it was given another one.
    const char* name() const { return entry_.name.data(); }

    /// Renames the file within its directory, which replaces the file of that name, if any. To be called
    /// once. False, with errno, when that fails.
    bool rename_to(const char* name);

    /// A name and the directory that it is in, for the handler of signals.
    struct Entry {
        int directory;
        HiddenName name;
    };

private:
    Entry entry_;
    Descriptor descriptor_;
};

/// Gives a file a second, hidden name in its directory. Nothing, with errno, when that is not possible.
std::optional<HiddenName> hidden_link(int directory, const char* name);

/// What is done first when a signal ends the program. It may call only what is safe in handlers of signals.
using BeforeTheEnd = void (*)(int signal);

/// From now on, every signal that ends a program, but for SIGKILL, first removes all temporary files, and a
/// file that grows beyond the limit of its size is an error like a full disk. Signals that are ignored or
/// have a handler are left as they are. Before the files are removed, `first` is called, unless it is null.
void remove_temporary_files_on_signals(BeforeTheEnd first = nullptr);

/// Holds back all signals from this thread for as long as it exists, but for SIGKILL and SIGSTOP; from the
/// threads that it starts meanwhile, forever.
class SignalsBlocked {
public:
    SignalsBlocked();
    ~SignalsBlocked();
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_ = {};
};

}  // namespace korv::tools
