# SPDX-License-Identifier: MIT
# Read by CTest after the test programs have told their cases: one that needs two fixtures cannot say so there.
foreach(name IN LISTS test_example_services_TESTS)
    if(name MATCHES "^PostgresExample")
        set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED "examples;postgres")
    endif()
endforeach()
