#pragma once

#include <string>

#include "common/error.h"

namespace korv::tools {

/// A check for CLI11: says what is wrong with a text that `parse` rejects; empty for any other text.
template <typename Parse>
auto argument_check(Parse parse, const std::string& expected) {
    return [parse, expected](const std::string& text) {
        return parse(text) ? "" : "found " + shown(text) + "; expected " + expected;
    };
}

}  // namespace korv::tools
