# Fails unless a host outside this project builds against its installation and loads the plug-in,
# and its compiler is refused by the packages for other compilers, which name the right one.
# outside.cmake describes the definitions.

include(${CMAKE_CURRENT_LIST_DIR}/outside.cmake)
set(folder ${BUILD_DIR}/tests/outside_host)
file(REMOVE_RECURSE ${folder})
install_outside(${folder})
build_outside(${folder} ${SOURCE_DIR}/tests/package/outside_host)

file(GLOB_RECURSE plugin ${folder}/install/${PLUGIN})
file(GLOB program ${folder}/build/outside_host ${folder}/build/outside_host.exe)
run(${LAUNCHER} ${program} ${plugin})

set(right_linux "Linux: use an installation that is built on Linux instead[.]")
set(right_mingw "MinGW-w64: use Zendel-${VERSION}-win64-mingw[.]zip instead[.]")
set(right_msvc "MSVC: use Zendel-${VERSION}-win64-msvc[.]zip instead[.]")
set(PROJECT_VERSION ${VERSION})
set(wrong linux mingw msvc)
list(REMOVE_ITEM wrong ${FLAVOUR})
foreach(flavour IN LISTS wrong)
    # Overwrites the installed file, which is the only one that differs between the packages.
    configure_file(${SOURCE_DIR}/packaging/ZendelConfig.cmake
                   ${folder}/install/lib/cmake/Zendel/ZendelConfig.cmake @ONLY)
    configure_outside(${folder} ${SOURCE_DIR}/tests/package/outside_host)
    string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
    if(result EQUAL 0 OR NOT errors MATCHES "this project is built for ${right_${FLAVOUR}}")
        message(SEND_ERROR "The package for ${flavour}: ${result}: ${errors}")
    endif()
endforeach()
