# libdeflate comes from Debian's source package, for every compiler (scripts/build-libdeflate puts it into
# build/deps/<triplet>); zlib from the packages zlib1g-dev and libz-mingw-w64-dev.
if(NOT WIN32)
    set(VANTREL_TRIPLET native)
endif()
set(LIBDEFLATE_ROOT ${CMAKE_SOURCE_DIR}/build/deps/${VANTREL_TRIPLET})
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${DEFLATE_LEVEL_SOURCES})
execute_process(COMMAND ${CMAKE_SOURCE_DIR}/scripts/build-libdeflate ${VANTREL_TRIPLET}
                COMMAND_ERROR_IS_FATAL ANY)
add_library(vantrel_deflate INTERFACE)
target_include_directories(vantrel_deflate SYSTEM INTERFACE ${LIBDEFLATE_ROOT}/include)
target_link_libraries(vantrel_deflate INTERFACE ${LIBDEFLATE_ROOT}/lib/libdeflate.a)
# For executables that put it in front of the library's copy.
if(VANTREL_SANITIZE MATCHES address)
    add_library(deflate_level OBJECT ${DEFLATE_LEVEL_SOURCES})
    target_include_directories(deflate_level PRIVATE ${CMAKE_SOURCE_DIR})
    target_include_directories(deflate_level SYSTEM PRIVATE
                               ${CMAKE_SOURCE_DIR}/build/deps/libdeflate/source
                               ${CMAKE_SOURCE_DIR}/build/deps/libdeflate/source/lib)
    target_compile_options(deflate_level PRIVATE -w ${VANTREL_FUZZED})
endif()
if(WIN32)
    target_link_libraries(vantrel_deflate INTERFACE /usr/${VANTREL_TRIPLET}/lib/libz.a)
else()
    find_package(ZLIB REQUIRED)
    target_link_libraries(vantrel_deflate INTERFACE ZLIB::ZLIB)
endif()
