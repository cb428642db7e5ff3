# SPDX-License-Identifier: MIT
# Debian's packages, a component each: scripts/package makes and checks them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME nuvostatistics)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Nuvo Statistics")
# Nobody reads this address, and the packages say so as their maintainer: a release puts its own here (docs/releasing.md), or
# gives -D NUVO_PACKAGE_CONTACT=...
set(NUVO_PACKAGE_CONTACT "No contact was given <nuvostatistics@example.org>" CACHE STRING "Who is asked about the packages")
set(CPACK_PACKAGE_CONTACT ${NUVO_PACKAGE_CONTACT})
if(NUVO_PACKAGE_CONTACT MATCHES "@example\\.org")
    message(NOTICE "The packages' contact is a placeholder: -D \"NUVO_PACKAGE_CONTACT=NAME <ADDRESS>\" sets it.")
endif()
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL library development program workbench)
if(NUVO_BUILD_DESIGNER)
    list(APPEND CPACK_COMPONENTS_ALL designer)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SOURCE nuvostatistics)

set(library libnuvostatistics${PROJECT_VERSION_MAJOR})
# nuvo_package(COMPONENT NAME SECTION SUMMARY TEXT): what the package of a component is called and said to be.
function(nuvo_package component name section summary text)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
    set(documents ${CMAKE_INSTALL_DATADIR}/doc/${name})
    install(FILES ${PROJECT_BINARY_DIR}/packaging/copyright ${PROJECT_BINARY_DIR}/packaging/changelog.gz
            DESTINATION ${documents} COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

set(about "Nuvo Statistics fits multiple linear regressions to the records of a
table or a query, chooses their variables, and tells what a fit says as
text, HTML, PDF, pictures and windows.")
nuvo_package(library ${library} libs "multiple linear regression as datasets for Qt" "${about}
.
This package holds the library.")
nuvo_package(development libnuvostatistics-dev libdevel "multiple linear regression as datasets for Qt - development"
             "${about}
.
This package holds what a program is compiled with: headers, and what
CMake and pkg-config ask for.")
nuvo_package(designer nuvo-designer-plugin libdevel "components of Nuvo Statistics in Qt Designer" "${about}
.
This package lets Qt Designer put the components on forms.")
nuvo_package(program nuvostat science "multiple linear regression on the tables of a database" "${about}
.
This package holds the command line: fit, select, run, import, ftable.")
nuvo_package(workbench nuvo-workbench science "linear regression on databases and CSV files" "${about}
.
This package holds the workbench, a window in which models are tried on
tables and files, with the guide.")

file(WRITE ${PROJECT_BINARY_DIR}/packaging/shlibs
     "libNuvoStatistics ${PROJECT_VERSION_MAJOR} ${library} (>= ${PROJECT_VERSION})\n")
file(WRITE ${PROJECT_BINARY_DIR}/packaging/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
    "${PROJECT_BINARY_DIR}/packaging/shlibs;${PROJECT_BINARY_DIR}/packaging/triggers")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS "libqt6sql6-sqlite, fonts-liberation, fonts-dejavu-core")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SUGGESTS "libqt6sql6-psql, libqt6sql6-mysql, libqt6sql6-odbc")
set(same "${library} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same}, qt6-base-dev (>= 6.4)")
set(CPACK_DEBIAN_DESIGNER_PACKAGE_DEPENDS "${same}")
set(CPACK_DEBIAN_DESIGNER_PACKAGE_RECOMMENDS designer-qt6)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${same}, libqt6sql6-sqlite")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "fonts-liberation, fonts-dejavu-core")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS libqt6sql6-psql)
# Qt has the drivers of databases in packages of their own, which no library asks for.
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_DEPENDS "${same}, libqt6sql6-sqlite")
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_RECOMMENDS "fonts-liberation, fonts-dejavu-core, libqt6sql6-psql, qt6-translations-l10n, shared-mime-info")
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_SUGGESTS "nuvostat, libqt6sql6-mysql, libqt6sql6-odbc, qt6-wayland")

# Copyright and changelog, as Debian's policy wants them.
file(STRINGS ${PROJECT_SOURCE_DIR}/LICENSE lines)
set(nuvo_license "")
list(REMOVE_AT lines 0 1 2 3) # the heading, and whose it is
foreach(line IN LISTS lines)
    if(line STREQUAL "")
        set(line .)
    endif()
    string(APPEND nuvo_license " ${line}\n")
endforeach()
string(TIMESTAMP nuvo_changelog_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${PROJECT_SOURCE_DIR}/packaging/copyright.in ${PROJECT_BINARY_DIR}/packaging/copyright @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/packaging/changelog.in ${PROJECT_BINARY_DIR}/packaging/changelog @ONLY)
find_program(NUVO_GZIP gzip REQUIRED)
execute_process(COMMAND ${NUVO_GZIP} -9 -n -k -f ${PROJECT_BINARY_DIR}/packaging/changelog COMMAND_ERROR_IS_FATAL ANY)

include(CPack)
