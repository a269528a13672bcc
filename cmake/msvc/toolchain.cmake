# Toolchain file: 64-bit Windows programs with Microsoft's C++ ABI, built on Linux with Clang.
#
# CMAKE_PREFIX_PATH contains the folder that "scripts/qt-windows.sh msvc" prints.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_PREFIX_PATH)
set(CMAKE_TRY_COMPILE_CONFIGURATION Release) # There is no run-time library for debugging.

foreach(folder IN LISTS CMAKE_PREFIX_PATH)
    if(EXISTS ${folder}/sysroot/clang.cfg)
        set(CMAKE_C_COMPILER clang-19 --config=${folder}/sysroot/clang.cfg)
        # Compile Qt's inline functions here, as other compilers do, instead of importing them: the
        # plug-in then needs fewer functions of its host's Qt.
        set(CMAKE_CXX_COMPILER clang++-19
            "--config=${folder}/sysroot/clang++.cfg -Xclang -fno-dllexport-inlines")
    endif()
endforeach()
if(NOT CMAKE_CXX_COMPILER)
    message(FATAL_ERROR "No folder in CMAKE_PREFIX_PATH has sysroot/clang.cfg: "
                        "${CMAKE_PREFIX_PATH}")
endif()
set(CMAKE_AR llvm-ar-19)
set(CMAKE_LINKER lld-link-19)
set(CMAKE_NM llvm-nm-19)
set(CMAKE_OBJDUMP llvm-objdump-19)
set(CMAKE_MT llvm-mt-19)
set(CMAKE_RC_COMPILER llvm-rc-19)
set(CMAKE_RC_FLAGS_INIT "-I /usr/include/wine/wine/windows")

# Programs run during the build (moc, uic, rcc) and are Linux ones; headers, libraries and packages
# must never be those of this machine.
set(CMAKE_FIND_ROOT_PATH ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# CTest starts the programs by this script, in a Wine of their own.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../scripts/wine.sh)
