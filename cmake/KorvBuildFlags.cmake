# What the targets of this build are compiled with. Linked PRIVATE, or PUBLIC to what is not installed: clients of the
# installed libraries do not get these flags.
add_library(korv_build_flags INTERFACE)
target_compile_options(korv_build_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)

# False alarms, both about the standard library's own code.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # The concatenation of strings.
    target_compile_options(korv_build_flags INTERFACE -Wno-restrict)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 15)
    # The buffer of stable sorts. Deprecated names of our own are left to g++ to find.
    target_compile_options(korv_build_flags INTERFACE -Wno-deprecated-declarations)
endif()

if(KORV_WERROR)
    target_compile_options(korv_build_flags INTERFACE -Werror)
endif()

if(KORV_SANITIZE)
    target_compile_options(korv_build_flags INTERFACE
        -fsanitize=${KORV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(korv_build_flags INTERFACE -fsanitize=${KORV_SANITIZE})
endif()
