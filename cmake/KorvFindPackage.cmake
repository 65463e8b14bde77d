# korv_find_package(PACKAGE DEBIAN_PACKAGE OPTION WHAT_IS [ARGUMENT...]): find_package(PACKAGE ARGUMENT...) for parts
# that the build can do without. Where the package is missing, one line says so; PACKAGE_FOUND tells the caller.
macro(korv_find_package package debian_package option what_is)
    find_package(${package} ${ARGN} QUIET)
    if(NOT ${package}_FOUND)
        message(NOTICE "${what_is} left out: install ${debian_package}, or -D${option}=OFF to say so yourself")
    endif()
endmacro()
