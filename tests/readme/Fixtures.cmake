# Read by CTest after the test programs have told their cases: one that needs two fixtures cannot say so there.
if(test_example_services_TESTS)
    set_tests_properties(PostgresExample.HasTheServerAddUp PROPERTIES FIXTURES_REQUIRED "examples;postgres")
endif()
