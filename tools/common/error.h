#pragma once

#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "common/printable.h"

namespace korv::tools {

/// An error of a companion program, in words for the person who runs it. `main` prints it on standard error
/// and ends with a status that is not 0. The message is made printable (see printable.h), so that names of
/// files need no care where messages are put together.
class Error : public std::runtime_error {
public:
    explicit Error(const std::string& message) : std::runtime_error(printable(message)) {}
};

/// An error about the form of an input, such as how many cells a line has. In another format, the input may
/// be as it should be.
class FormError : public Error {
public:
    explicit FormError(const Error& error) : Error(error) {}
};

/// An error of the command line that only the input shows, such as an option that does not go with its
/// format.
class UsageError : public Error {
public:
    explicit UsageError(const std::string& message) : Error(message) {}
};

/// Says that the memory did not suffice.
class OutOfMemory : public Error {
public:
    explicit OutOfMemory(const std::string& message) : Error(message) {}
};

/// Says that nobody reads what is written any more.
class BrokenPipe : public Error {
public:
    explicit BrokenPipe(const std::string& message) : Error(message) {}
};

/// A place in a text file, for messages.
struct Place {
    std::size_t line;    ///< from 1
    std::size_t column;  ///< bytes from 1
};

/// An error in an input file: "FILE:LINE:COLUMN: found FOUND; expected EXPECTED".
Error input_error(std::string_view file, Place place, std::string_view found, std::string_view expected);

/// The place of a byte in a text, for an error: O(position).
Place place_of(std::string_view text, std::size_t position);

/// A piece of input as a message can show it: in double quotes, printable (see printable.h), and cut off
/// after the last character that ends within its first 40 bytes.
std::string shown(std::string_view text);

/// Returns what `work` returns. When the memory is exhausted meanwhile, throws OutOfMemory: "out of memory",
/// and when that was, such as "while reading a.dat", for which `when` is asked only then.
template <typename Work, typename When>
auto within_memory(const Work& work, const When& when) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        throw OutOfMemory("out of memory " + when());
    }
}

}  // namespace korv::tools
