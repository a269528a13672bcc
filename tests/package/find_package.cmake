# Fails unless find_package(Zendel) refuses this compiler for the packages for other compilers, with
# a message that names the right one. outside.cmake describes the definitions.

include(${CMAKE_CURRENT_LIST_DIR}/outside.cmake)
set(folder ${BUILD_DIR}/tests/find_package)
file(REMOVE_RECURSE ${folder})
install_outside(${folder})
file(WRITE ${folder}/source/CMakeLists.txt [[
cmake_minimum_required(VERSION 3.21)
project(Host LANGUAGES CXX)
find_package(Zendel 1 REQUIRED)
]])

set(right_linux "Linux: use an installation that is built on Linux instead[.]")
set(right_mingw "MinGW-w64: use Zendel-${VERSION}-win64-mingw[.]zip instead[.]")
set(right_msvc "MSVC: use Zendel-${VERSION}-win64-msvc[.]zip instead[.]")
set(PROJECT_VERSION ${VERSION})
foreach(flavour IN ITEMS linux mingw msvc)
    # Overwrites the installed file, which is the only one that differs between the packages.
    configure_file(${SOURCE_DIR}/packaging/ZendelConfig.cmake
                   ${folder}/install/lib/cmake/Zendel/ZendelConfig.cmake @ONLY)
    configure_outside(${folder} ${folder}/source)
    string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
    if(flavour STREQUAL FLAVOUR)
        if(NOT result EQUAL 0)
            message(SEND_ERROR "The right package: ${errors}")
        endif()
    elseif(result EQUAL 0 OR NOT errors MATCHES "this project is built for ${right_${FLAVOUR}}")
        message(SEND_ERROR "The package for ${flavour}: ${result}: ${errors}")
    endif()
endforeach()
