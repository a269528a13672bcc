# For tests that build a host outside this project against an installation of it. They are run with
# cmake -D BUILD_DIR=... -D SOURCE_DIR=... -D GENERATOR=... -D COMPILER=... -D QT=...
#       -D TOOLCHAIN=... -D LAUNCHER=... -D FLAGS=... -D PLUGIN=... -P ...

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# install_outside(FOLDER): installs into FOLDER/install.
function(install_outside folder)
    run(${CMAKE_COMMAND} --install ${BUILD_DIR} --component plugin --prefix ${folder}/install)
endfunction()

# build_outside(FOLDER SOURCES [OPTION...])
# Builds the project in SOURCES into FOLDER/build, with the package in FOLDER/install.
function(build_outside folder sources)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S ${sources} -B ${folder}/build -G ${GENERATOR}
                "-DCMAKE_PREFIX_PATH=${folder}/install;${QT}" "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}"
                -DCMAKE_CXX_COMPILER=${COMPILER} "-DCMAKE_CXX_FLAGS_INIT=${FLAGS}"
                -DCMAKE_BUILD_TYPE=Release ${ARGN}
        COMMAND_ERROR_IS_FATAL ANY)
    run(${CMAKE_COMMAND} --build ${folder}/build)
endfunction()
