# libdeflate and zlib, as the interface library vantrel_deflate.
#
# Normally libdeflate comes from Debian's source package for every compiler (scripts/build-libdeflate puts it
# into build/deps/<triplet>) and zlib from the packages zlib1g-dev and libz-mingw-w64-dev. With
# VANTREL_SYSTEM_LIBDEFLATE both are looked up like any other package; the tuned level, which needs
# libdeflate's sources, is then replaced by the library's own level (zip/deflate/deflate.h).
option(VANTREL_SYSTEM_LIBDEFLATE "Use an installed libdeflate, without the tuned level" OFF)
add_library(vantrel_deflate INTERFACE)
if(VANTREL_SYSTEM_LIBDEFLATE)
    find_path(LIBDEFLATE_INCLUDE_DIR libdeflate.h REQUIRED)
    find_library(LIBDEFLATE_LIBRARY deflate REQUIRED)
    target_include_directories(vantrel_deflate SYSTEM INTERFACE ${LIBDEFLATE_INCLUDE_DIR})
    target_link_libraries(vantrel_deflate INTERFACE ${LIBDEFLATE_LIBRARY})
    target_compile_definitions(vantrel_deflate INTERFACE VANTREL_SYSTEM_LIBDEFLATE)
else()
    if(NOT WIN32)
        set(VANTREL_TRIPLET native)
    endif()
    set(LIBDEFLATE_ROOT ${CMAKE_SOURCE_DIR}/build/deps/${VANTREL_TRIPLET})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${DEFLATE_LEVEL_SOURCES}
                 scripts/build-libdeflate)
    execute_process(COMMAND ${CMAKE_SOURCE_DIR}/scripts/build-libdeflate ${VANTREL_TRIPLET}
                    COMMAND_ERROR_IS_FATAL ANY)
    target_include_directories(vantrel_deflate SYSTEM INTERFACE ${LIBDEFLATE_ROOT}/include)
    target_link_libraries(vantrel_deflate INTERFACE ${LIBDEFLATE_ROOT}/lib/libdeflate.a)
    # The tuned level with sanitizers, for executables that link it before the library's copy.
    if(VANTREL_SANITIZE MATCHES address)
        add_library(deflate_level OBJECT ${DEFLATE_LEVEL_SOURCES})
        target_include_directories(deflate_level PRIVATE ${CMAKE_SOURCE_DIR})
        target_include_directories(deflate_level SYSTEM PRIVATE
                                   ${CMAKE_SOURCE_DIR}/build/deps/libdeflate/source
                                   ${CMAKE_SOURCE_DIR}/build/deps/libdeflate/source/lib)
        target_compile_options(deflate_level PRIVATE -w ${VANTREL_FUZZED})
    endif()
endif()
if(WIN32 AND NOT VANTREL_SYSTEM_LIBDEFLATE)
    target_link_libraries(vantrel_deflate INTERFACE /usr/${VANTREL_TRIPLET}/lib/libz.a)
else()
    find_package(ZLIB REQUIRED)
    target_link_libraries(vantrel_deflate INTERFACE ZLIB::ZLIB)
endif()
