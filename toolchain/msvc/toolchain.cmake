# Toolchain file for building 64-bit Windows programs with Microsoft's C++ ABI on Linux, with Clang.
# Set CMAKE_PREFIX_PATH to the folder that toolchain/qt-msvc.sh prints, or to that of an installed
# kit of Qt 5.15 for MSVC.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_PREFIX_PATH ZENDEL_MSVC_SYSROOT)
set(CMAKE_TRY_COMPILE_CONFIGURATION Release) # There is no run-time library for debugging.

if(NOT ZENDEL_MSVC_SYSROOT)
    execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/../msvc-sysroot.sh
                    OUTPUT_VARIABLE ZENDEL_MSVC_SYSROOT OUTPUT_STRIP_TRAILING_WHITESPACE
                    COMMAND_ERROR_IS_FATAL ANY)
endif()
set(CMAKE_C_COMPILER clang-19 --config=${ZENDEL_MSVC_SYSROOT}/clang.cfg)
# Compile Qt's inline functions here, as other compilers do, instead of importing them: the plug-in
# then needs fewer functions of its host's Qt.
set(CMAKE_CXX_COMPILER clang++-19
    "--config=${ZENDEL_MSVC_SYSROOT}/clang++.cfg -Xclang -fno-dllexport-inlines")
set(CMAKE_AR llvm-ar-19)
set(CMAKE_LINKER lld-link-19)
set(CMAKE_NM llvm-nm-19)
set(CMAKE_OBJDUMP llvm-objdump-19)
set(CMAKE_MT llvm-mt-19)
set(CMAKE_RC_COMPILER llvm-rc-19)
set(CMAKE_RC_FLAGS_INIT "-I /usr/include/wine/wine/windows")

# Programs such as moc run during the build, so they are this machine's. Headers, libraries and
# packages never are.
set(Qt5_DIR ${CMAKE_CURRENT_LIST_DIR}/qt)
set(CMAKE_FIND_ROOT_PATH ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# CTest runs programs with this script.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../scripts/wine.sh)
