# SPDX-License-Identifier: MIT
# Run with cmake -P after a test program was linked: writes for CTest what the program can run. A suite is one test and
# runs in one process, as most of a case's time is the start of its process; so is each case of a suite that is named in
# EACH. Where the environment variable NUVO_EACH_CASE is set as CTest runs, every case is.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${PROGRAM} --gtest_list_tests WORKING_DIRECTORY ${FOLDER} TIMEOUT 60
                OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} does not list its cases (${result}):\n${output}${errors}")
endif()

# One test for a filter, and its name among those of that kind.
macro(nuvo_add kind name filter)
    string(APPEND ${kind} "add_test([==[${name}]==] \"${PROGRAM}\" [==[--gtest_filter=${filter}]==])\n"
                          "set_tests_properties([==[${name}]==] PROPERTIES ${properties})\n")
    string(APPEND ${kind}_names " [==[${name}]==]")
endmacro()
set(properties "WORKING_DIRECTORY [==[${FOLDER}]==] SKIP_RETURN_CODE 77")
foreach(property IN LISTS PROPERTIES)
    string(APPEND properties " [==[${property}]==]")
endforeach()

string(REPLACE "[" "<" output "${output}")
string(REPLACE "]" ">" output "${output}")
string(REPLACE ";" "\\;" output "${output}")
string(REPLACE "\n" ";" lines "${output}")
set(cases "")
set(suites "")
foreach(line IN LISTS lines)
    if(line MATCHES "gtest_main\\.cc")
        continue()
    elseif(line MATCHES "^([^ ]+)\\.( +# TypeParam = (.*))?$")
        set(suite ${CMAKE_MATCH_1})
        set(type "")
        set(shown ${suite})
        if(NOT "${CMAKE_MATCH_3}" STREQUAL "")
            set(type "<${CMAKE_MATCH_3}>")
            string(REGEX REPLACE "/[^/]+$" "" shown "${suite}")
        endif()
        set(each FALSE)
        foreach(name IN LISTS EACH)
            if("/${suite}" MATCHES "/${name}(/[0-9]+)?$")
                set(each TRUE)
            endif()
        endforeach()
        if(NOT each)
            # Suites of other programs may have its name, and CTest tells tests apart by their names alone.
            nuvo_add(suites "${shown}${type} (${NAME})" "${suite}.*")
        endif()
    elseif(line MATCHES "^  ([^ ]+)( +# GetParam\\(\\) = (.*))?$")
        set(case ${CMAKE_MATCH_1})
        set(shown_case "${case}")
        if(NOT "${CMAKE_MATCH_3}" STREQUAL "")
            string(REGEX REPLACE "/[0-9]+$" "/${CMAKE_MATCH_3}" shown_case "${case}")
        endif()
        nuvo_add(cases "${shown}.${shown_case}${type}" "${suite}.${case}")
        if(each)
            nuvo_add(suites "${shown}.${shown_case}${type}" "${suite}.${case}")
        endif()
    endif()
endforeach()
file(WRITE ${OUTPUT} "if(\"\$ENV{NUVO_EACH_CASE}\")\n${cases}set(${NAME}_TESTS${cases_names})\nelse()\n"
                     "${suites}set(${NAME}_TESTS${suites_names})\nendif()\n")
