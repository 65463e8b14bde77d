#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace korv::tools {

/// An open file descriptor, closed at the end of the scope. A negative number stands for none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return number_; }
    bool is_open() const { return number_ >= 0; }

private:
    int number_;
};

/// Whether two statuses are of the same file, directory, pipe or device.
inline bool is_same(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace korv::tools
