# The installed package: find_package(Nuvo) gives Nuvo::Statistics, pkg-config knows it as nuvo. The components are those of
# cmake/NuvoPackages.cmake; without --component all of them are installed.
include(CMakePackageConfigHelpers)

set(nuvo_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Nuvo)
install(TARGETS NuvoStatistics EXPORT NuvoTargets
        LIBRARY COMPONENT library NAMELINK_COMPONENT development
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nuvo COMPONENT development
        FILE_SET generated DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nuvo COMPONENT development)
install(TARGETS nuvostat RUNTIME COMPONENT program)
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

# The program finds its library wherever the two are installed together; in /usr the system does.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    file(RELATIVE_PATH nuvo_lib_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(nuvostat PROPERTIES INSTALL_RPATH $ORIGIN/${nuvo_lib_from_bin})
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

# The manual page and what a shell completes are made from what the program says of itself.
set(nuvo_manual ${PROJECT_BINARY_DIR}/manual)
set(nuvo_fromhelp ${PROJECT_SOURCE_DIR}/packaging/fromhelp.sh)
add_custom_command(OUTPUT ${nuvo_manual}/nuvostat.1 ${nuvo_manual}/nuvostat.bash ${nuvo_manual}/_nuvostat
    COMMAND ${CMAKE_COMMAND} -E make_directory ${nuvo_manual}
    COMMAND ${nuvo_fromhelp} $<TARGET_FILE:nuvostat> manual > ${nuvo_manual}/nuvostat.1
    COMMAND ${nuvo_fromhelp} $<TARGET_FILE:nuvostat> bash > ${nuvo_manual}/nuvostat.bash
    COMMAND ${nuvo_fromhelp} $<TARGET_FILE:nuvostat> zsh > ${nuvo_manual}/_nuvostat
    DEPENDS nuvostat ${nuvo_fromhelp} ${PROJECT_SOURCE_DIR}/packaging/manual.awk
    COMMENT "Writing the manual page of nuvostat"
    VERBATIM)
add_custom_target(manual ALL DEPENDS ${nuvo_manual}/nuvostat.1)
if(NUVO_PACKAGES) # Debian's are compressed
    install(CODE "execute_process(COMMAND gzip -9 -n -k -f \"${nuvo_manual}/nuvostat.1\" COMMAND_ERROR_IS_FATAL ANY)"
            COMPONENT program)
    install(FILES ${nuvo_manual}/nuvostat.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
else()
    install(FILES ${nuvo_manual}/nuvostat.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
endif()
install(FILES ${nuvo_manual}/nuvostat.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME nuvostat COMPONENT program)
install(FILES ${nuvo_manual}/_nuvostat DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT program)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/nuvostat.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
        COMPONENT program)
