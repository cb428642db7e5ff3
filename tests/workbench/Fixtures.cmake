# SPDX-License-Identifier: MIT
# Read by CTest after the test programs have told their cases: a suite that needs another server than the others.
foreach(name IN LISTS test_workbench_server_TESTS)
    if(name MATCHES "^MariadbWindow")
        set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED mariadb)
    endif()
endforeach()
