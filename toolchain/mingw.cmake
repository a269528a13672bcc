# Toolchain file for building 64-bit Windows programs on Linux with MinGW-w64. Set CMAKE_PREFIX_PATH
# to the folder that toolchain/qt-mingw.sh prints, or Qt5_DIR, as a variable or in the environment.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# Qt for MinGW uses the POSIX thread model, which std::thread and std::mutex also need. Without the
# suffix, the compiler could be for either model.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Programs such as moc run during the build, so they are this machine's. Headers, libraries and
# packages never are: ONLY restricts the search to the roots, which must therefore include Qt.
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

# CTest runs programs with this script.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine.sh)
