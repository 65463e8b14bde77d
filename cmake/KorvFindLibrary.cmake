# korv_find_library(NAME HEADER LIBRARY DEBIAN_PACKAGE OPTION WHAT_IS): the imported target NAME::NAME for a library
# that has no CMake package everywhere. Where it is missing, one line says so; NAME_FOUND tells the caller.
function(korv_find_library name header library debian_package option what_is)
    find_path(${name}_INCLUDE_DIR ${header})
    find_library(${name}_LIBRARY ${library})
    mark_as_advanced(${name}_INCLUDE_DIR ${name}_LIBRARY)
    if(NOT ${name}_INCLUDE_DIR OR NOT ${name}_LIBRARY)
        message(NOTICE "${what_is} left out: install ${debian_package}, or -D${option}=OFF to say so yourself")
        set(${name}_FOUND FALSE PARENT_SCOPE)
        return()
    endif()
    set(${name}_FOUND TRUE PARENT_SCOPE)
    if(NOT TARGET ${name}::${name})
        add_library(${name}::${name} UNKNOWN IMPORTED GLOBAL)
        set_target_properties(${name}::${name} PROPERTIES
            IMPORTED_LOCATION ${${name}_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES ${${name}_INCLUDE_DIR})
    endif()
endfunction()
