# Fails unless the program in README.md builds, reports a missing plug-in, and runs with a plug-in
# and a simulated operator. outside.cmake describes the definitions.

include(${CMAKE_CURRENT_LIST_DIR}/outside.cmake)
set(folder ${BUILD_DIR}/tests/readme_host)
file(REMOVE_RECURSE ${folder})

file(READ ${SOURCE_DIR}/README.md page)
string(REGEX MATCH "\n```cpp\n(.*)\n```\n\nMake all calls" block "${page}")
if(NOT block)
    message(FATAL_ERROR "README.md does not contain the program")
endif()
file(WRITE ${folder}/source/main.cpp "${CMAKE_MATCH_1}\n")
file(WRITE ${folder}/source/CMakeLists.txt [[
cmake_minimum_required(VERSION 3.21)
project(SmallHost LANGUAGES CXX)
find_package(Qt5 5.6 REQUIRED COMPONENTS Widgets)
find_package(Zendel 1 REQUIRED)
add_executable(small_host main.cpp)
target_link_libraries(small_host PRIVATE Qt5::Widgets Zendel::Interface)
]])
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --component plugin --prefix ${folder}/install)
build_outside(${folder} ${folder}/source
    -DCMAKE_PROJECT_INCLUDE=${SOURCE_DIR}/tests/package/documented_host/operator.cmake)
file(GLOB program ${folder}/build/small_host ${folder}/build/small_host.exe)

# run_program(EXIT_CODE PATTERN): the program must end with the code and print the pattern.
function(run_program exit_code pattern)
    execute_process(COMMAND ${LAUNCHER} ${program} TIMEOUT 120 RESULT_VARIABLE result
                    OUTPUT_FILE ${folder}/printed.txt ERROR_FILE ${folder}/errors.txt)
    file(READ ${folder}/errors.txt errors)
    if(NOT result STREQUAL exit_code OR NOT errors MATCHES "${pattern}")
        message(FATAL_ERROR
            "The program ended with ${result}, not ${exit_code}, and printed\n${errors}")
    endif()
endfunction()

run_program(1 Zendel)
file(GLOB_RECURSE plugin ${folder}/install/${PLUGIN})
file(GLOB_RECURSE catalogue ${folder}/install/Lang.ini)
get_filename_component(deployment ${catalogue} DIRECTORY)
file(COPY ${plugin} ${deployment} DESTINATION ${folder}/build)
run_program(0 "Language 3\r?\nChanged")
