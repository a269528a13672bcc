# For tests that build a host outside this project against an installation of it. They are run with
# cmake -D BUILD_DIR=... -D SOURCE_DIR=... -D GENERATOR=... -D COMPILER=... -D QT=...
#       -D TOOLCHAIN=... -D LAUNCHER=... -D FLAGS=... -D PLUGIN=... -D FLAVOUR=... -D VERSION=... -P ...

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# install_outside(FOLDER): installs into FOLDER/install.
function(install_outside folder)
    run(${CMAKE_COMMAND} --install ${BUILD_DIR} --component plugin --prefix ${folder}/install)
endfunction()

# configure_outside(FOLDER SOURCES [OPTION...])
# Configures the project in SOURCES in FOLDER/build with the package in FOLDER/install. Sets "result" and
# "errors".
function(configure_outside folder sources)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S ${sources} -B ${folder}/build -G ${GENERATOR}
                "-DCMAKE_PREFIX_PATH=${folder}/install;${QT}" "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}"
                -DCMAKE_CXX_COMPILER=${COMPILER} "-DCMAKE_CXX_FLAGS_INIT=${FLAGS}"
                -DCMAKE_BUILD_TYPE=Release ${ARGN}
        RESULT_VARIABLE result ERROR_VARIABLE errors)
    set(result ${result} PARENT_SCOPE)
    set(errors "${errors}" PARENT_SCOPE)
endfunction()

# build_outside(FOLDER SOURCES [OPTION...])
# Also builds the project.
function(build_outside folder sources)
    configure_outside(${folder} ${sources} ${ARGN})
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${errors}")
    endif()
    run(${CMAKE_COMMAND} --build ${folder}/build)
endfunction()
