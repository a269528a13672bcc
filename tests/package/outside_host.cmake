# Fails unless a host outside this project builds against its installation and loads the plug-in.
# outside.cmake describes the definitions.

include(${CMAKE_CURRENT_LIST_DIR}/outside.cmake)
set(folder ${BUILD_DIR}/tests/outside_host)
file(REMOVE_RECURSE ${folder})
install_outside(${folder})
build_outside(${folder} ${SOURCE_DIR}/tests/package/outside_host)

file(GLOB_RECURSE plugin ${folder}/install/${PLUGIN})
file(GLOB program ${folder}/build/outside_host ${folder}/build/outside_host.exe)
run(${LAUNCHER} ${program} ${plugin})
