# For tests that build a host outside this project against an installation of it. They are run with
# cmake -D BUILD_DIR=... -D SOURCE_DIR=... -D GENERATOR=... -D COMPILER=... -D QT=...
#       -D TOOLCHAIN=... -D LAUNCHER=... -D FLAGS=... -D PLUGIN=... -D FLAVOUR=...
#       -D VERSION=... -P ...

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# install_outside(FOLDER): installs into FOLDER/install.
function(install_outside folder)
    run(${CMAKE_COMMAND} --install ${BUILD_DIR} --component plugin --prefix ${folder}/install)
endfunction()

# configure_outside(FOLDER SOURCES [OPTION...])
# Configures the project in SOURCES in FOLDER/build with the package in FOLDER/install. Sets
# "result" and "errors".
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

# build_with_operator(FOLDER SOURCES OPERATOR)
# Builds with a simulated operator from documented_host/. Sets "program" to the path of the program.
function(build_with_operator folder sources operator)
    set(operators ${SOURCE_DIR}/tests/package/documented_host)
    build_outside(${folder} ${sources}
        -DCMAKE_PROJECT_INCLUDE=${operators}/operator.cmake -DOPERATOR=${operators}/${operator})
    file(GLOB program ${folder}/build/*_host ${folder}/build/*_host.exe)
    set(program ${program} PARENT_SCOPE)
endfunction()

# deploy(FOLDER): copies the plug-in and its languages from FOLDER/install to FOLDER/build.
function(deploy folder)
    file(GLOB_RECURSE plugin ${folder}/install/${PLUGIN})
    file(GLOB_RECURSE catalogue ${folder}/install/Lang.ini)
    get_filename_component(languages ${catalogue} DIRECTORY)
    file(COPY ${plugin} ${languages} DESTINATION ${folder}/build)
endfunction()

# run_program(EXIT_CODE OUTPUT [ARGUMENT...])
# Runs the program, which must end with this code and print this, and sets "errors" to what it
# writes to stderr. Uses files, because a pipe would stay open as long as the desktop that Wine may
# start with the program.
function(run_program exit_code output)
    execute_process(COMMAND ${LAUNCHER} ${program} ${ARGN} TIMEOUT 120
                    RESULT_VARIABLE result
                    OUTPUT_FILE ${folder}/printed.txt ERROR_FILE ${folder}/errors.txt)
    file(READ ${folder}/printed.txt printed)
    file(READ ${folder}/errors.txt errors)
    string(REPLACE "\r" "" printed "${printed}")
    if(NOT result STREQUAL exit_code OR NOT printed STREQUAL output)
        message(FATAL_ERROR "The program ended with ${result}, not ${exit_code}, and printed\n"
            "${printed}\nnot\n${output}\nerrors:\n${errors}")
    endif()
    set(errors "${errors}" PARENT_SCOPE)
endfunction()

# run_without_plugin(PATTERN): the program must end with 1 and write this to stderr.
function(run_without_plugin pattern)
    run_program(1 "")
    if(NOT errors MATCHES "${pattern}")
        message(FATAL_ERROR "Without a plug-in, the program only prints: ${errors}")
    endif()
endfunction()

# take_block(LANGUAGE VARIABLE)
# Returns the only fenced block in that language of docs/host-developer.md.
function(take_block language variable)
    file(READ ${SOURCE_DIR}/docs/host-developer.md page)
    string(FIND "${page}" "\n```${language}\n" begin)
    string(FIND "${page}" "\n```${language}\n" last REVERSE)
    if(begin EQUAL -1 OR NOT begin EQUAL last)
        message(FATAL_ERROR "The page must contain exactly one block of ${language}")
    endif()
    string(SUBSTRING "${page}" ${begin} -1 block)
    string(REPLACE "\n```${language}\n" "" block "${block}")
    string(FIND "${block}" "```\n" end)
    string(SUBSTRING "${block}" 0 ${end} block)
    set(${variable} "${block}" PARENT_SCOPE)
endfunction()
