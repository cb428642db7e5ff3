# SPDX-License-Identifier: MIT
# What every target of the project is compiled with.
function(nuvo_target_defaults target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    # Double-double arithmetic relies on every operation being rounded as written.
    target_compile_options(${target} PRIVATE -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                           -Woverloaded-virtual -Wcast-align -Wconversion -Wno-sign-conversion)
    if(NUVO_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(NUVO_UNITY AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Batches need more memory; a tenth of the time went into looking for what could be given back.
        target_compile_options(${target} PRIVATE --param=ggc-min-heapsize=524288)
    endif()
    if(NUVO_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${NUVO_SANITIZE} -fno-sanitize-recover=all
                               -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${NUVO_SANITIZE})
        # g++ 12 finds these in the standard library's own templates once they are instrumented.
        target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    endif()
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                               QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endfunction()

# nuvo_precompile(TARGET [FROM OTHER]): the headers that nearly every source of the target includes, read once. OTHER has
# read them already, with the same options.
function(nuvo_precompile target)
    if(NOT NUVO_PRECOMPILE)
        return()
    endif()
    cmake_parse_arguments(arg "" "FROM" "" ${ARGN})
    if(arg_FROM)
        target_precompile_headers(${target} REUSE_FROM ${arg_FROM})
        get_target_property(type ${arg_FROM} TYPE)
        if(type STREQUAL SHARED_LIBRARY)
            # As the other's objects are. Qt 6.4 asks for it itself, later ones do not.
            target_compile_options(${target} PRIVATE -fPIC)
            if(NUVO_UNITY)
                target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O1>) # see nuvo_unity
            endif()
        endif()
    else()
        target_precompile_headers(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/Precompiled.h)
    endif()
endfunction()

# nuvo_unity(TARGET): compiles its sources in batches where NUVO_UNITY says so, ten of a folder at most. Called when the
# target has all of them. They are optimised less then, as a third of the time of compiling them would go into speed that
# a test does not need; the numerics, which are no such target, are compiled as they ship.
function(nuvo_unity target)
    if(NOT NUVO_UNITY)
        return()
    endif()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    # A source is a file that another includes then, in which what is its own alone would be a mistake.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>
                           $<$<CONFIG:RelWithDebInfo>:-O1>)
    get_target_property(sources ${target} SOURCES)
    get_target_property(base ${target} SOURCE_DIR)
    get_target_property(binary ${target} BINARY_DIR)
    set(folders "")
    foreach(source IN LISTS sources)
        if(source MATCHES "\\.cpp$" AND NOT source MATCHES "^\\$<")
            cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${base} NORMALIZE)
            cmake_path(GET source PARENT_PATH folder)
            list(APPEND folders ${folder})
            list(APPEND in_${folder} ${source})
        endif()
    endforeach()
    list(REMOVE_DUPLICATES folders)
    foreach(folder IN LISTS folders)
        file(RELATIVE_PATH name ${PROJECT_SOURCE_DIR} ${folder})
        string(MAKE_C_IDENTIFIER "${name}" name)
        list(LENGTH in_${folder} count)
        math(EXPR batches "(${count} + 9) / 10")
        # CMake 4 takes a batch that it is told of for a source that is missing, and leaves all others out, unless it knows
        # that the batch is made.
        math(EXPR last "${batches} - 1")
        foreach(batch RANGE ${last})
            set_source_files_properties(${binary}/CMakeFiles/${target}.dir/Unity/unity_${name}_${batch}_cxx.cxx
                                        TARGET_DIRECTORY ${target} PROPERTIES GENERATED ON)
        endforeach()
        set(index 0)
        foreach(source IN LISTS in_${folder})
            math(EXPR batch "${index} * ${batches} / ${count}")
            set_source_files_properties(${source} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP ${name}_${batch})
            # The batch depends on what its sources do, which CMake does not see to.
            get_source_file_property(needed ${source} TARGET_DIRECTORY ${target} OBJECT_DEPENDS)
            if(needed)
                set_property(SOURCE ${binary}/CMakeFiles/${target}.dir/Unity/unity_${name}_${batch}_cxx.cxx
                             TARGET_DIRECTORY ${target} APPEND PROPERTY OBJECT_DEPENDS ${needed})
            endif()
            math(EXPR index "${index} + 1")
        endforeach()
    endforeach()
endfunction()

# What a test program is compiled with beyond that: it is compiled more often than it runs.
function(nuvo_test_defaults target)
    nuvo_target_defaults(${target})
    # Qt Test names a folder for each target, and a precompiled header takes no macro that differs.
    target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O0> $<$<CONFIG:Debug>:-Og -g1>
                           -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF UNITY_BUILD ${NUVO_UNITY} UNITY_BUILD_BATCH_SIZE 16)
    if(NUVO_UNITY)
        # A source is a file that another includes then, in which what is its own alone would be a mistake.
        target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
    endif()
endfunction()

# nuvo_cases(TARGET [EACH SUITES…] [PROPERTIES …]): gives CTest what a GoogleTest program can run: a suite is a test, but for
# those whose cases each want a process of their own; NuvoCases.cmake says more.
function(nuvo_cases target)
    cmake_parse_arguments(arg "" "" "EACH;PROPERTIES" ${ARGN})
    set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}_cases.cmake)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -D NAME=${target} -D PROGRAM=$<TARGET_FILE:${target}> -D FOLDER=${CMAKE_CURRENT_BINARY_DIR}
                -D OUTPUT=${list} -D "EACH=${arg_EACH}" -D "PROPERTIES=${arg_PROPERTIES}"
                -P ${PROJECT_SOURCE_DIR}/cmake/NuvoCases.cmake
        BYPRODUCTS ${list} VERBATIM)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/NuvoCases.cmake)
    set(include ${CMAKE_CURRENT_BINARY_DIR}/${target}_include.cmake)
    set(properties "")
    if(arg_PROPERTIES)
        list(JOIN arg_PROPERTIES " " properties)
        set(properties "set_tests_properties(${target}_NOT_BUILT PROPERTIES ${properties})\n")
    endif()
    file(WRITE ${include} "if(EXISTS [==[${list}]==])\ninclude([==[${list}]==])\n"
                          "else()\nadd_test(${target}_NOT_BUILT ${target}_NOT_BUILT)\n${properties}endif()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${include})
endfunction()

# nuvo_test(NAME SOURCES…): one GoogleTest program. Windows are real but offscreen. What nuvo_cases takes goes after CASES.
function(nuvo_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS;CASES" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    nuvo_test_defaults(${name})
    target_link_libraries(${name} PRIVATE Nuvo::Statistics nuvo_test_support ${arg_LIBS})
    nuvo_precompile(${name} FROM nuvo_test_support)
    nuvo_cases(${name} ${arg_CASES})
    if(arg_CASES MATCHES "LABELS;long")
        add_dependencies(long_tests ${name})
        if(NOT NUVO_SANITIZE) # CI makes that build too, so that they are compiled for every change
            set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
        endif()
    endif()
endfunction()
