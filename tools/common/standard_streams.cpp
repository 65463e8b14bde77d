#include "common/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace korv::tools {

namespace {

struct Stream {
    int number;
    int access;  ///< the wrong one for input and output, so that their use fails
};

constexpr std::array<Stream, 3> streams = {{
    {STDIN_FILENO, O_WRONLY},
    {STDOUT_FILENO, O_RDONLY},
    {STDERR_FILENO, O_WRONLY},
}};

}  // namespace

void open_standard_streams() {
    // In this order each takes its own number, which is the lowest that is free.
    for (const Stream& stream : streams) {
        if (::fcntl(stream.number, F_GETFD) < 0 && errno == EBADF) {
            ::open("/dev/null", stream.access);
        }
    }
}

}  // namespace korv::tools
