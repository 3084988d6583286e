# CMake toolchain of the Windows port: Debian's MinGW-w64 (posix threads) and the libraries that packaging/windows/toolchain
# has built into the cache folder.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(_qv1k_cache "$ENV{QV1K_WINDOWS_CACHE}")
if(_qv1k_cache STREQUAL "")
  set(_qv1k_cache "$ENV{HOME}/.cache/qv1k-windows")
endif()
set(CMAKE_FIND_ROOT_PATH "${_qv1k_cache}/prefix" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# Qt's generators (moc, uic, rcc) are those of this machine.
set(QT_HOST_PATH /usr CACHE PATH "Qt of this machine")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "CMake packages of this machine's Qt")

# Tests run through the emulator.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/wine")

# As a part of the programs: nothing else of the package needs zlib as a library of its own.
set(ZLIB_USE_STATIC_LIBS ON)
