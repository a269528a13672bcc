# Toolchain file: 64-bit Windows programs, built on Linux with mingw-w64.
#
# Where Qt for Windows lies is said from outside, by CMAKE_PREFIX_PATH or
# Qt5_DIR, either as a variable (a preset, the command line) or in the
# environment.  scripts/qt-windows.sh prints the folder.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The compiler names without "posix" may stand for either thread model; Qt for
# Windows is built with this one, and std::thread and std::mutex need it.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Programs run during the build (moc, uic, rcc) and are Linux ones; headers,
# libraries and packages must never be those of this machine.  "ONLY" searches
# below the roots alone, so the folders of Qt have to be among them.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
list(APPEND CMAKE_FIND_ROOT_PATH ${CMAKE_PREFIX_PATH})
if(DEFINED ENV{CMAKE_PREFIX_PATH})
    string(REPLACE ":" ";" zendel_folders "$ENV{CMAKE_PREFIX_PATH}")
    list(APPEND CMAKE_FIND_ROOT_PATH ${zendel_folders})
endif()
foreach(zendel_folder IN ITEMS "${Qt5_DIR}" "$ENV{Qt5_DIR}")
    if(zendel_folder MATCHES "^(.+)/lib/cmake/Qt5/?$")
        list(APPEND CMAKE_FIND_ROOT_PATH "${CMAKE_MATCH_1}")
    endif()
endforeach()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# CTest starts the programs by this script, in a Wine of their own.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine.sh)
