#pragma once

#include <string>

#include "common/error.h"

namespace korv::tools {

/// What the Error says that a call throws; empty when it throws none.
template <typename Call>
std::string complaint_of(Call call) {
    try {
        call();
    } catch (const Error& error) {
        return error.what();
    }
    return "";
}

}  // namespace korv::tools
