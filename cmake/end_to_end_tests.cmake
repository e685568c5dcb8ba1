# The tests of the finished program under Wine: build/<preset>/app/Vantrel.exe on real drives.
foreach(source IN LISTS END_TO_END_HELPERS END_TO_END_WINDOWLESS)
    cmake_path(GET source STEM helper)
    add_executable(${helper} ${source})
    target_link_libraries(${helper} PRIVATE vantrel_options)
    target_link_options(${helper} PRIVATE -municode)
    set_target_properties(${helper} PROPERTIES
                          RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/end_to_end)
endforeach()
# Without a console, which would be a window and take the keyboard focus.
foreach(source IN LISTS END_TO_END_WINDOWLESS)
    cmake_path(GET source STEM helper)
    set_target_properties(${helper} PROPERTIES WIN32_EXECUTABLE ON)
endforeach()

# The tests' mail program, a library that a test registers in its Wine prefix.
foreach(source IN LISTS END_TO_END_LIBRARIES)
    cmake_path(GET source STEM library)
    add_library(${library} SHARED ${source})
    target_link_libraries(${library} PRIVATE vantrel_options)
    # Exports undecorated names, which the callers look up; 32-bit compilers decorate them.
    target_link_options(${library} PRIVATE -Wl,--kill-at)
    set_target_properties(${library} PROPERTIES PREFIX ""
                          RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/end_to_end)
endforeach()

find_program(VANTREL_PYTHON python3 REQUIRED NO_CMAKE_FIND_ROOT_PATH)
foreach(test IN LISTS END_TO_END_TESTS)
    cmake_path(GET test STEM name)
    add_test(NAME end_to_end_${name} COMMAND ${VANTREL_PYTHON} ${CMAKE_SOURCE_DIR}/${test})
    set_tests_properties(end_to_end_${name} PROPERTIES
                         ENVIRONMENT VANTREL_BUILD=${CMAKE_BINARY_DIR})
endforeach()

# The longest ones first.
set_tests_properties(end_to_end_spanning_test end_to_end_main_window_test views_tests
                     PROPERTIES COST 1000)

# A few rounds of a test that otherwise runs for hours (docs/testing.md, "Faults").
add_test(NAME soak COMMAND ${VANTREL_PYTHON} ${CMAKE_SOURCE_DIR}/tests/soak/soak.py --rounds 8)
set_tests_properties(soak PROPERTIES ENVIRONMENT VANTREL_BUILD=${CMAKE_BINARY_DIR})
