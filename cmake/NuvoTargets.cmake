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
    if(NUVO_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${NUVO_SANITIZE} -fno-sanitize-recover=all
                               -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${NUVO_SANITIZE})
        # g++ 12 finds these in the standard library's own templates once they are instrumented.
        target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
    endif()
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                               QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endfunction()

# nuvo_test(NAME SOURCES…): one GoogleTest program whose cases CTest lists one by one. Windows are real but
# offscreen; every case runs in a process of its own. Further gtest_discover_tests arguments go after DISCOVER.
function(nuvo_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS;DISCOVER" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    nuvo_target_defaults(${name})
    target_link_libraries(${name} PRIVATE Nuvo::Statistics nuvo_test_support ${arg_LIBS})
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 ${arg_DISCOVER})
endfunction()
