# SPDX-License-Identifier: MIT
# The installed package: find_package(Nuvo) gives Nuvo::Statistics, pkg-config knows it as nuvo. The components are those of
# cmake/NuvoPackages.cmake; without --component all of them are installed.
include(CMakePackageConfigHelpers)

set(nuvo_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Nuvo)
install(TARGETS NuvoStatistics EXPORT NuvoTargets
        LIBRARY COMPONENT library NAMELINK_COMPONENT development
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nuvo COMPONENT development
        FILE_SET generated DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nuvo COMPONENT development)
install(TARGETS nuvostat RUNTIME COMPONENT program)
install(TARGETS nuvo-workbench RUNTIME COMPONENT workbench)
install(EXPORT NuvoTargets NAMESPACE Nuvo:: DESTINATION ${nuvo_cmake_dir} COMPONENT development)

set(nuvo_qt ${Qt6_VERSION_MAJOR}.${Qt6_VERSION_MINOR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/NuvoConfig.cmake.in ${PROJECT_BINARY_DIR}/NuvoConfig.cmake
                              INSTALL_DESTINATION ${nuvo_cmake_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/NuvoConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/NuvoConfig.cmake ${PROJECT_BINARY_DIR}/NuvoConfigVersion.cmake
        DESTINATION ${nuvo_cmake_dir} COMPONENT development)

set(nuvo_pkgconfig_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH nuvo_prefix_from_pc ${nuvo_pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" nuvo_prefix_from_pc ${nuvo_prefix_from_pc})
configure_file(${CMAKE_CURRENT_LIST_DIR}/nuvo.pc.in ${PROJECT_BINARY_DIR}/nuvo.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/nuvo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# The programs find their library wherever they are installed together; in /usr the system does.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    file(RELATIVE_PATH nuvo_lib_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(nuvostat nuvo-workbench PROPERTIES INSTALL_RPATH $ORIGIN/${nuvo_lib_from_bin})
endif()

# Below the prefix as Qt's own plugins are below Qt's: installed to Qt's prefix, Qt Designer finds it by itself.
if(NUVO_BUILD_DESIGNER)
    set(nuvo_designer_dir ${QT6_INSTALL_PLUGINS}/designer)
    install(TARGETS nuvo_designer LIBRARY DESTINATION ${nuvo_designer_dir} COMPONENT designer)
    if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
        file(RELATIVE_PATH nuvo_lib_from_plugin ${CMAKE_INSTALL_PREFIX}/${nuvo_designer_dir}
             ${CMAKE_INSTALL_FULL_LIBDIR})
        set_target_properties(nuvo_designer PROPERTIES INSTALL_RPATH $ORIGIN/${nuvo_lib_from_plugin})
    endif()
endif()

# The manual pages and what a shell completes are made from what the programs say of themselves.
set(nuvo_manual ${PROJECT_BINARY_DIR}/manual)
set(nuvo_fromhelp ${PROJECT_SOURCE_DIR}/packaging/fromhelp.sh)
set(nuvo_pages "")
foreach(program_component nuvostat:program nuvo-workbench:workbench)
    string(REPLACE : ";" program_component ${program_component})
    list(GET program_component 0 program)
    list(GET program_component 1 component)
    set(page ${nuvo_manual}/${program}.1)
    add_custom_command(OUTPUT ${page} ${nuvo_manual}/${program}.bash ${nuvo_manual}/_${program}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${nuvo_manual}
        COMMAND ${nuvo_fromhelp} $<TARGET_FILE:${program}> manual > ${page}
        COMMAND ${nuvo_fromhelp} $<TARGET_FILE:${program}> bash > ${nuvo_manual}/${program}.bash
        COMMAND ${nuvo_fromhelp} $<TARGET_FILE:${program}> zsh > ${nuvo_manual}/_${program}
        DEPENDS ${program} ${nuvo_fromhelp} ${PROJECT_SOURCE_DIR}/packaging/manual.awk
        COMMENT "Writing the manual page of ${program}"
        VERBATIM)
    list(APPEND nuvo_pages ${page})
    if(NUVO_PACKAGES) # Debian's are compressed
        install(CODE "execute_process(COMMAND gzip -9 -n -k -f \"${page}\" COMMAND_ERROR_IS_FATAL ANY)"
                COMPONENT ${component})
        set(page ${page}.gz)
    endif()
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
    install(FILES ${nuvo_manual}/${program}.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            RENAME ${program} COMPONENT ${component})
    install(FILES ${nuvo_manual}/_${program} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
            COMPONENT ${component})
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/${program}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
            COMPONENT ${component})
endforeach()
add_custom_target(manual ALL DEPENDS ${nuvo_pages})

# What a desktop needs to offer the workbench.
install(FILES ${PROJECT_SOURCE_DIR}/workbench/nuvo-workbench.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT workbench)
install(FILES ${PROJECT_SOURCE_DIR}/workbench/nuvo-workbench.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT workbench)
foreach(size 16 24 32 48 64 128 256)
    install(FILES ${PROJECT_SOURCE_DIR}/workbench/icons/${size}.png RENAME nuvo-workbench.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps COMPONENT workbench)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/packaging/nuvo-workbench.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT workbench)
