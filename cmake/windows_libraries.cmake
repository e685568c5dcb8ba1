# libdeflate for Windows comes from Debian's source package (scripts/build-libdeflate puts it into
# build/deps/<triplet>); zlib from the package libz-mingw-w64-dev.
set(LIBDEFLATE_ROOT ${CMAKE_SOURCE_DIR}/build/deps/${VANTREL_TRIPLET})
add_library(vantrel_deflate INTERFACE)
target_include_directories(vantrel_deflate SYSTEM INTERFACE ${LIBDEFLATE_ROOT}/include)
target_link_libraries(vantrel_deflate INTERFACE ${LIBDEFLATE_ROOT}/lib/libdeflate.a
                      /usr/${VANTREL_TRIPLET}/lib/libz.a)
