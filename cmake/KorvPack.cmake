# cpack makes a .deb and a .tar.gz of the programs and their documents.
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_INSTALL_CMAKE_PROJECTS "${PROJECT_BINARY_DIR};${PROJECT_NAME};programs;/")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_FILE_NAME korv-${PROJECT_VERSION}-Linux-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_VENDOR "The KORV authors")
set(CPACK_PACKAGE_CONTACT "The KORV authors")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS python3)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"korv derives generalized association rules, whose sides are disjunctions of
items or absences of them, from the closed itemsets of a transaction database.
korv-mine makes these from transactions. korv-rules goes from transactions to
the rules that matter, in words, ranked. korv-check tells whether a class
file is what it should be.")
include(CPack)
