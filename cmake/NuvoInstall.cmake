# The installed package: find_package(Nuvo) gives Nuvo::Statistics.
include(CMakePackageConfigHelpers)

set(nuvo_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Nuvo)
install(TARGETS NuvoStatistics EXPORT NuvoTargets
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nuvo
        FILE_SET generated DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/nuvo)
install(TARGETS nuvostat)
install(EXPORT NuvoTargets NAMESPACE Nuvo:: DESTINATION ${nuvo_cmake_dir})

configure_package_config_file(cmake/NuvoConfig.cmake.in ${PROJECT_BINARY_DIR}/NuvoConfig.cmake
                              INSTALL_DESTINATION ${nuvo_cmake_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/NuvoConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/NuvoConfig.cmake ${PROJECT_BINARY_DIR}/NuvoConfigVersion.cmake
        DESTINATION ${nuvo_cmake_dir})

# The program finds its library wherever the two are installed together.
file(RELATIVE_PATH nuvo_lib_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(nuvostat PROPERTIES INSTALL_RPATH $ORIGIN/${nuvo_lib_from_bin})

# Below the prefix as Qt's own plugins are below Qt's: installed to Qt's prefix, Qt Designer finds it by itself.
if(NUVO_BUILD_DESIGNER)
    set(nuvo_designer_dir ${QT6_INSTALL_PLUGINS}/designer)
    install(TARGETS nuvo_designer LIBRARY DESTINATION ${nuvo_designer_dir})
    file(RELATIVE_PATH nuvo_lib_from_plugin ${CMAKE_INSTALL_PREFIX}/${nuvo_designer_dir} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(nuvo_designer PROPERTIES INSTALL_RPATH $ORIGIN/${nuvo_lib_from_plugin})
endif()
