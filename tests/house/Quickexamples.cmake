# SPDX-License-Identifier: MIT
# Included in the project of the examples by its test: what nearly every one of them includes is read once. A test under
# the sanitizers compiles them as they are.
function(nuvo_precompile_examples)
    target_precompile_headers(example_fit PRIVATE <QApplication> <engine/Mlrtable.h> <platform/Errors.h> <cstdio>)
    get_property(targets DIRECTORY PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
        get_target_property(type ${target} TYPE)
        if(type STREQUAL EXECUTABLE AND NOT target STREQUAL example_fit)
            target_precompile_headers(${target} REUSE_FROM example_fit)
        endif()
    endforeach()
endfunction()
cmake_language(DEFER CALL nuvo_precompile_examples)
