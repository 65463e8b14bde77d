#pragma once

#include <string_view>

namespace korv::tools {

/// The program of the page: HTML with two gaps, which the build cuts out of page/dist/page.html at its marks.
struct PageProgram {
    std::string_view before_title;
    std::string_view before_data;
    std::string_view after_data;
};

const PageProgram& page_program();

}  // namespace korv::tools
