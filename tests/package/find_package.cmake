# Fails unless find_package(Zendel) refuses this compiler for the packages for other compilers, with
# a message that names the right one, and 32-bit compilers. outside.cmake describes the definitions.

include(${CMAKE_CURRENT_LIST_DIR}/outside.cmake)
set(folder ${BUILD_DIR}/tests/find_package)
file(REMOVE_RECURSE ${folder})
install_outside(${folder})
file(WRITE ${folder}/source/CMakeLists.txt [[
cmake_minimum_required(VERSION 3.21)
project(Host LANGUAGES CXX)
find_package(Zendel 1 REQUIRED)
]])

set(right_linux "for Linux: use an installation that is built on Linux instead[.]")
set(right_mingw "with MinGW-w64: use Zendel-${VERSION}-win64-mingw[.]zip instead[.]")
set(right_msvc "with MSVC: use Zendel-${VERSION}-win64-msvc[.]zip instead[.]")
set(PROJECT_VERSION ${VERSION})

# configure(NAME [OPTION...])
# Configures the project with the package for this flavour. Sets "result" and "errors".
macro(configure name)
    set(flavour ${name})
    # Overwrites the installed file, which is the only one that differs between the packages.
    configure_file(${SOURCE_DIR}/packaging/ZendelConfig.cmake
                   ${folder}/install/lib/cmake/Zendel/ZendelConfig.cmake @ONLY)
    configure_outside(${folder} ${folder}/source ${ARGN})
    string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
endmacro()

foreach(flavour IN ITEMS linux mingw msvc)
    configure(${flavour})
    if(flavour STREQUAL FLAVOUR)
        if(NOT result EQUAL 0)
            message(SEND_ERROR "The right package: ${errors}")
        endif()
    elseif(result EQUAL 0 OR NOT errors MATCHES "this project is built ${right_${FLAVOUR}}")
        message(SEND_ERROR "The package for ${flavour}: ${result}: ${errors}")
    endif()
endforeach()

file(WRITE ${folder}/32-bit.cmake "set(CMAKE_SIZEOF_VOID_P 4)\n")
configure(${FLAVOUR} -DCMAKE_PROJECT_INCLUDE=${folder}/32-bit.cmake)
if(result EQUAL 0 OR NOT errors MATCHES "for 32 bits: use a 64-bit compiler[.]")
    message(SEND_ERROR "A 32-bit compiler: ${result}: ${errors}")
endif()
