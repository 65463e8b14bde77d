# cmake -DPAGE=page.html -DSOURCE=page_program.cpp -P page_program.cmake: makes the source that holds the program of the
# page, cut at its marks.
file(READ ${PAGE} bytes HEX)

# cut(MARK): parts what is left of the bytes at a mark, of which there must be one.
macro(cut mark)
    string(HEX ${mark} digits)
    string(REGEX MATCHALL "${digits}" found "${bytes}")
    list(LENGTH found number)
    string(FIND "${bytes}" "${digits}" position)
    math(EXPR is_between "${position} % 2")
    if(NOT number EQUAL 1 OR is_between)
        message(FATAL_ERROR "${PAGE}: found ${mark} ${number} times behind the marks before it; expected it once")
    endif()
    string(SUBSTRING "${bytes}" 0 ${position} part)
    string(LENGTH "${digits}" length)
    math(EXPR position "${position} + ${length}")
    string(SUBSTRING "${bytes}" ${position} -1 bytes)
endmacro()

# as_array(NAME HEX): a definition of the bytes.
function(as_array name digits)
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," numbers "${digits}")
    set(definition "constexpr unsigned char ${name}[] = {\n    ${numbers}\n};\n" PARENT_SCOPE)
endfunction()

set(definitions "")
cut("%KORV_TITLE%")
as_array(before_title "${part}")
string(APPEND definitions "${definition}")
cut("%KORV_DATA%")
as_array(before_data "${part}")
string(APPEND definitions "${definition}")
as_array(after_data "${bytes}")
string(APPEND definitions "${definition}")

file(WRITE ${SOURCE} "// Made of page/dist/page.html by page_program.cmake.

#include \"rules/page_program.h\"

namespace korv::tools {

namespace {

${definitions}
template <std::size_t size>
std::string_view text_of(const unsigned char (&bytes)[size]) {
    return {reinterpret_cast<const char*>(bytes), size};  // the same bytes as characters
}

}  // namespace

const PageProgram& page_program() {
    static const PageProgram program = {text_of(before_title), text_of(before_data), text_of(after_data)};
    return program;
}

}  // namespace korv::tools
")
