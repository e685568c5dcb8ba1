# GoogleTest is installed for the host. For Windows it is built from its Debian source package, without
# optimisation, since it is not under test.
if(WIN32)
    set(INSTALL_GTEST OFF)
    add_subdirectory(/usr/src/googletest googletest EXCLUDE_FROM_ALL)
    foreach(package gtest gtest_main gmock)
        target_compile_options(${package} PRIVATE -O0)
    endforeach()
else()
    find_package(GTest REQUIRED)
    list(APPEND TEST_SUPPORT_SOURCES ${TEST_SUPPORT_HOST_SOURCES})
endif()
vantrel_module(test_support SOURCES ${TEST_SUPPORT_SOURCES}
               BELOW vantrel_forms vantrel_machine GTest::gmock GTest::gtest)
if(NOT WIN32)
    vantrel_module(archive_test_support SOURCES ${ARCHIVE_SUPPORT_SOURCES}
                   BELOW vantrel_test_support vantrel_zip)
endif()

# Compiling tests takes longer than running them, so their own code is neither optimised nor checked for
# undefined behaviour; the code under test is.
set(VANTREL_TEST_OPTIONS -O0)
if(VANTREL_SANITIZE MATCHES undefined)
    list(APPEND VANTREL_TEST_OPTIONS -fno-sanitize=undefined)
endif()

# The test library's headers take longer to parse than most tests take to compile, so they are precompiled.
add_library(vantrel_test_headers OBJECT tests/support/precompiled.cpp)
target_compile_options(vantrel_test_headers PRIVATE ${VANTREL_TEST_OPTIONS})
target_link_libraries(vantrel_test_headers PRIVATE vantrel_options GTest::gmock GTest::gtest)
target_precompile_headers(vantrel_test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)

# The modules among the libraries ARGN, and all modules below them.
function(vantrel_modules_of result)
    set(modules)
    foreach(library IN LISTS ARGN)
        if(library MATCHES "^vantrel_")
            get_target_property(below ${library} INTERFACE_LINK_LIBRARIES)
            vantrel_modules_of(lower ${below})
            get_target_property(type ${library} TYPE)
            if(type STREQUAL "STATIC_LIBRARY")
                list(APPEND modules ${library})
            endif()
            list(APPEND modules ${lower})
        endif()
    endforeach()
    list(REMOVE_DUPLICATES modules)
    set(${result} ${modules} PARENT_SCOPE)
endfunction()

# Links the modules before the sources of the test. Of several copies of one function of a template the linker
# takes the first: std::string's in the modules are optimised and checked, those in the tests are neither.
function(vantrel_modules_first test)
    vantrel_modules_of(modules ${ARGN})
    list(TRANSFORM modules REPLACE "(.+)" "$<TARGET_FILE:\\1>")
    list(JOIN modules "," archives)
    target_link_options(${test} PRIVATE "-Wl,--whole-archive,${archives},--no-whole-archive")
endfunction()

# One executable for each module. ctest runs it natively (THROUGH a script that prepares the machine), or
# under Wine if it was cross-built (with a SCREEN if it shows windows). Long ones run in parallel SHARDS.
function(vantrel_tests name)
    cmake_parse_arguments(TESTS "SCREEN" "SHARDS" "SOURCES;LINK;THROUGH" ${ARGN})
    if(NOT TESTS_SOURCES)
        return()
    endif()
    add_executable(${name}_tests ${TESTS_SOURCES})
    target_compile_options(${name}_tests PRIVATE ${VANTREL_TEST_OPTIONS})
    target_link_libraries(${name}_tests PRIVATE ${TESTS_LINK} vantrel_test_support GTest::gtest_main)
    target_precompile_headers(${name}_tests REUSE_FROM vantrel_test_headers)
    if(WIN32)
        add_test(NAME ${name}_tests
                 COMMAND ${CMAKE_SOURCE_DIR}/scripts/wine-test $<$<BOOL:${TESTS_SCREEN}>:--screen>
                         $<TARGET_FILE:${name}_tests> COMMAND_EXPAND_LISTS)
    else()
        vantrel_modules_first(${name}_tests ${TESTS_LINK} vantrel_test_support)
        add_test(NAME ${name}_tests COMMAND ${TESTS_THROUGH} $<TARGET_FILE:${name}_tests>)
        set(tests ${name}_tests)
        if(TESTS_SHARDS)
            set_tests_properties(${name}_tests PROPERTIES ENVIRONMENT
                                 "GTEST_TOTAL_SHARDS=${TESTS_SHARDS};GTEST_SHARD_INDEX=0")
            math(EXPR last "${TESTS_SHARDS} - 1")
            foreach(shard RANGE 1 ${last})
                add_test(NAME ${name}_tests_${shard} COMMAND $<TARGET_FILE:${name}_tests>)
                set_tests_properties(${name}_tests_${shard} PROPERTIES ENVIRONMENT
                                     "GTEST_TOTAL_SHARDS=${TESTS_SHARDS};GTEST_SHARD_INDEX=${shard}")
                list(APPEND tests ${name}_tests_${shard})
            endforeach()
        endif()
        if(VANTREL_COVERAGE)
            foreach(test IN LISTS tests)
                set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT
                             LLVM_PROFILE_FILE=${CMAKE_BINARY_DIR}/coverage/${test}.profraw)
            endforeach()
        endif()
    endif()
endfunction()

# The platform interface's conformance suite runs over both implementations and over the tests' files in memory.
# Everything above it is portable and is tested on the host, under sanitizers.
if(WIN32)
    list(APPEND PLATFORM_TESTS ${PLATFORM_WIN32_TESTS})
else()
    list(APPEND PLATFORM_TESTS ${PLATFORM_HOST_TESTS})
endif()
vantrel_tests(platform SOURCES ${PLATFORM_TESTS} LINK vantrel_machine
              THROUGH ${CMAKE_SOURCE_DIR}/scripts/with-full-disk)
if(NOT WIN32)
    vantrel_tests(memory_files SOURCES ${MEMORY_FILES_TESTS} LINK vantrel_machine)
endif()

# One suite for the controls as plain objects and for the real Windows controls.
if(WIN32)
    list(APPEND VIEWS_TESTS ${VIEWS_WIN32_TESTS})
else()
    list(APPEND VIEWS_TESTS ${VIEWS_HOST_TESTS})
endif()
vantrel_tests(views SOURCES ${VIEWS_TESTS} LINK vantrel_forms vantrel_machine SCREEN)

if(WIN32)
    vantrel_show_windows(views_tests)
    target_link_libraries(views_tests PRIVATE vantrel_app)
    add_dependencies(views_tests vantrel_clip)
    # A second program for the tests to start, in the same folder.
    add_executable(process_probe tests/platform/process_probe.cpp)
    target_link_libraries(process_probe PRIVATE vantrel_machine)
    add_dependencies(platform_tests process_probe)
else()
    vantrel_tests(common SOURCES ${COMMON_TESTS} LINK vantrel_common)
    vantrel_tests(forms SOURCES ${FORMS_TESTS} LINK vantrel_forms)
    if(NOT VANTREL_SANITIZE STREQUAL "thread")
        list(APPEND ZIP_THREAD_TESTS ${ZIP_TESTS})
    endif()
    vantrel_tests(zip SHARDS 4 SOURCES ${ZIP_THREAD_TESTS} LINK vantrel_archive_test_support)
    if(NOT VANTREL_SYSTEM_LIBDEFLATE)
        vantrel_tests(deflate SOURCES ${DEFLATE_TESTS} LINK vantrel_archive_test_support)
    endif()
    if(TARGET deflate_level)
        target_sources(deflate_tests PRIVATE $<TARGET_OBJECTS:deflate_level>)
    endif()
    vantrel_tests(backupset SOURCES ${BACKUPSET_TESTS} LINK vantrel_backupset)
    vantrel_tests(log SOURCES ${LOG_TESTS} LINK vantrel_log)
    vantrel_tests(system SOURCES ${SYSTEM_TESTS} LINK vantrel_system)
    vantrel_tests(protect SOURCES ${PROTECT_TESTS} LINK vantrel_protect)
    vantrel_tests(progress SOURCES ${PROGRESS_TESTS} LINK vantrel_progress)
    vantrel_tests(backup SOURCES ${BACKUP_TESTS} LINK vantrel_backup)
    vantrel_tests(restore SOURCES ${RESTORE_TESTS}
                  LINK vantrel_restore vantrel_archive_test_support)
    vantrel_tests(ui SOURCES ${UI_TESTS} LINK vantrel_ui vantrel_archive_test_support)
    vantrel_tests(app SOURCES ${APP_TESTS} LINK vantrel_app)
    vantrel_tests(faults SOURCES ${FAULTS_TESTS} LINK vantrel_app vantrel_archive_test_support)
    # The longest ones first; they wait for the disk.
    set_tests_properties(faults_tests PROPERTIES COST 1000)
endif()
if(WIN32)
    include(cmake/end_to_end_tests.cmake)
endif()
