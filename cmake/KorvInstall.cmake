# Three components: "programs" (with their documents), "cluster" (the program that needs MPI), and "development" for
# those who link the libraries.

# The component of a program.
function(korv_component_of name result)
    set(${result} programs PARENT_SCOPE)
    if(name STREQUAL korv-mine-mpi)
        set(${result} cluster PARENT_SCOPE)
    endif()
endfunction()

# A program and its man page, made from man/NAME.1.in.
function(korv_install_program name)
    korv_component_of(${name} component)
    configure_file(man/${name}.1.in man/${name}.1 @ONLY)
    install(TARGETS ${name} COMPONENT ${component})
    install(FILES ${PROJECT_BINARY_DIR}/man/${name}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
endfunction()

# What completes the options of a companion program in bash and zsh, as it writes it, where both look for it.
function(korv_install_completions name)
    korv_component_of(${name} component)
    set(to ${PROJECT_BINARY_DIR}/completions)
    file(MAKE_DIRECTORY ${to})
    add_custom_command(OUTPUT ${to}/${name} ${to}/_${name}
        COMMAND ${name} --completions bash > ${to}/${name}
        COMMAND ${name} --completions zsh > ${to}/_${name}
        DEPENDS ${name} VERBATIM)
    add_custom_target(${name}-completions ALL DEPENDS ${to}/${name} ${to}/_${name})
    install(FILES ${to}/${name} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        COMPONENT ${component})
    install(FILES ${to}/_${name} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT ${component})
endfunction()

# The documents, laid out as in the tree, so that the links between them hold.
function(korv_install_documents)
    set(to ${CMAKE_INSTALL_DOCDIR})
    install(FILES README.md ARCHITECTURE.md CONTRIBUTING.md CHANGELOG.md LICENSE DESTINATION ${to} COMPONENT programs)
    install(DIRECTORY docs examples DESTINATION ${to} COMPONENT programs)
    install(FILES bench/README.md DESTINATION ${to}/bench COMPONENT programs)
    install(FILES page/README.md DESTINATION ${to}/page COMPONENT programs)
endfunction()

# The library korv_NAME as korv::NAME, with the headers of src/NAME: #include "NAME/header.h".
function(korv_install_library name)
    set_target_properties(korv_${name} PROPERTIES EXPORT_NAME ${name})
    install(TARGETS korv_${name} EXPORT korv COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/korv)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/${name} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/korv
        COMPONENT development FILES_MATCHING PATTERN "*.h")
endfunction()

# What find_package(korv) reads. The libraries need no other package.
function(korv_install_package_file)
    include(CMakePackageConfigHelpers)
    # Versions promise the bytes of the output, not the interface of the libraries.
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/korvConfigVersion.cmake COMPATIBILITY SameMinorVersion)
    set(to ${CMAKE_INSTALL_LIBDIR}/cmake/korv)
    install(FILES ${PROJECT_BINARY_DIR}/korvConfigVersion.cmake DESTINATION ${to} COMPONENT development)
    install(EXPORT korv NAMESPACE korv:: FILE korvConfig.cmake DESTINATION ${to} COMPONENT development)
endfunction()
