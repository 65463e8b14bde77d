#include "common/temporary_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <random>

namespace korv::tools {

namespace {

/// What is to be removed by signals. These are plain atomic pointers, since the signal handler reads them.
std::array<std::atomic<const TemporaryFile::Entry*>, 64> to_remove = {};

void remember(const TemporaryFile::Entry* entry) {
    for (auto& slot : to_remove) {
        const TemporaryFile::Entry* expected = nullptr;
        if (slot.compare_exchange_strong(expected, entry)) {
            return;
        }
    }
}

void forget(const TemporaryFile::Entry* entry) {
    for (auto& slot : to_remove) {
        const TemporaryFile::Entry* expected = entry;
        slot.compare_exchange_strong(expected, nullptr);
    }
}

std::atomic<BeforeTheEnd> before_the_end = nullptr;

extern "C" void remove_and_end(int signal) {
    if (const BeforeTheEnd first = before_the_end) {
        first(signal);
    }
    for (const auto& slot : to_remove) {
        if (const auto* const entry = slot.load()) {
            ::unlinkat(entry->directory, entry->name.data(), 0);
        }
    }
    // The program ends as if there were no handler, so that a shell sees which signal it was.
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// Signals that do not end a program, or that no program can handle.
constexpr std::array not_handled = {SIGCHLD, SIGCONT, SIGURG,  SIGWINCH, SIGTSTP,
                                    SIGTTIN, SIGTTOU, SIGSTOP, SIGKILL,  SIGXFSZ};

HiddenName hidden_name() {
    static std::random_device random;
    HiddenName name = {};
    std::snprintf(name.data(), name.size(), ".korv-%08x%08x", static_cast<std::uint32_t>(random()),
                  static_cast<std::uint32_t>(random()));
    return name;
}

/// Calls `make` with hidden names until there is one that nothing has. Returns what it returns then.
template <typename Make>
int with_new_name(HiddenName& name, const Make& make) {
    for (;;) {
        name = hidden_name();
        const int result = make(name.data());
        if (result >= 0 || errno != EEXIST) {
            return result;
        }
    }
}

}  // namespace

TemporaryFile::TemporaryFile(int directory, mode_t mode) : entry_{directory, {}} {
    const SignalsBlocked blocked;  // until their handler knows the name of the file
    descriptor_ = Descriptor(with_new_name(entry_.name, [directory, mode](const char* name) {
        return ::openat(directory, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    }));
    if (is_open()) {
        remember(&entry_);
    }
}

TemporaryFile::~TemporaryFile() {
    if (entry_.name.front() != '\0' && is_open()) {
        ::unlinkat(entry_.directory, entry_.name.data(), 0);
        forget(&entry_);
    }
}

bool TemporaryFile::rename_to(const char* name) {
    const SignalsBlocked blocked;  // their handler must not miss that the file has another name
    if (::renameat(entry_.directory, entry_.name.data(), entry_.directory, name) != 0) {
        return false;
    }
    forget(&entry_);
    entry_.name.front() = '\0';
    return true;
}

std::optional<HiddenName> hidden_link(int directory, const char* name) {
    HiddenName link = {};
    const int result = with_new_name(link, [directory, name](const char* second) {
        return ::linkat(directory, name, directory, second, 0);
    });
    return result == 0 ? std::optional(link) : std::nullopt;
}

void remove_temporary_files_on_signals(BeforeTheEnd first) {
    before_the_end = first;
    struct sigaction remove = {};
    remove.sa_handler = remove_and_end;
    ::sigfillset(&remove.sa_mask);
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        // nohup relies on what is ignored, and sanitizers on their handlers.
        struct sigaction before = {};
        const bool is_handled = std::ranges::find(not_handled, signal) == not_handled.end() &&
                                ::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL;
        if (is_handled) {
            ::sigaction(signal, &remove, nullptr);
        }
    }
    std::signal(SIGXFSZ, SIG_IGN);
}

SignalsBlocked::SignalsBlocked() {
    sigset_t signals;
    ::sigfillset(&signals);
    ::pthread_sigmask(SIG_BLOCK, &signals, &before_);
}

SignalsBlocked::~SignalsBlocked() {
    const int error = errno;
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = error;
}

}  // namespace korv::tools
