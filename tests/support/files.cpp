#include "support/files.h"

#include <sys/mman.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace korv::test {

namespace fs = std::filesystem;

TemporaryDirectory::TemporaryDirectory() {
    std::string name = (fs::temp_directory_path() / "korv-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("cannot create a temporary directory like " + name);
    }
    path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string read_file(const fs::path& path) {
    const std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::string memory_file() {
    const int descriptor = memfd_create("korv-test", MFD_CLOEXEC);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "memfd_create");
    }
    return "/proc/self/fd/" + std::to_string(descriptor);
}

void write_file(const fs::path& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

}  // namespace korv::test
