# Fails unless a host outside this project builds against an install of it and loads the plug-in.
# cmake -D BUILD_DIR=... -D SOURCE_DIR=... -D GENERATOR=... -D QT=... -D TOOLCHAIN=... -D LAUNCHER=...
#       -D PLUGIN=... -P outside_host.cmake

set(folder ${BUILD_DIR}/tests/outside_host)
file(REMOVE_RECURSE ${folder})
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --component plugin --prefix ${folder}/install)
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/outside_host -B ${folder}/build -G ${GENERATOR}
            "-DCMAKE_PREFIX_PATH=${folder}/install;${QT}" "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}"
    COMMAND_ERROR_IS_FATAL ANY)
run(${CMAKE_COMMAND} --build ${folder}/build)

file(GLOB_RECURSE plugin ${folder}/install/${PLUGIN})
file(GLOB program ${folder}/build/outside_host ${folder}/build/outside_host.exe)
run(${LAUNCHER} ${program} ${plugin})
