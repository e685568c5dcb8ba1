# Cross-building for Windows with mingw-w64; the posix-threads compilers, because std::thread and
# std::condition_variable exist only there.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${VANTREL_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VANTREL_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${VANTREL_TRIPLET}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${VANTREL_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
