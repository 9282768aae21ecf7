# The tests that are no test program: the plan of the house, the format, a host outside this tree, and the guided tour.
# Included by tests/CMakeLists.txt. Labels: "check" for what reads sources, "consumer" for the installed library, "tour".

set(scripts ${PROJECT_SOURCE_DIR}/scripts)
add_test(NAME check_rooms COMMAND ${scripts}/check-rooms)
add_test(NAME check_rooms_test COMMAND ${scripts}/check-rooms-test)
add_test(NAME check_format COMMAND ${scripts}/check-format)
set_tests_properties(check_rooms check_rooms_test check_format PROPERTIES LABELS check)

if(NOMAR_BUILD_EDITOR)
    add_test(NAME consumer
        COMMAND ${PROJECT_SOURCE_DIR}/tests/consumer/run ${PROJECT_BINARY_DIR})
    set_tests_properties(consumer PROPERTIES LABELS "consumer;browser" TIMEOUT 300)

    # On a display of its own; the pictures of a failed tour show where it stood.
    add_test(NAME tour COMMAND nomartour --shots ${PROJECT_BINARY_DIR}/screenshots)
    set_tests_properties(tour PROPERTIES LABELS "tour;browser" TIMEOUT 600 DEPENDS consumer)
endif()
