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
install_outside(${folder})
build_with_operator(${folder} ${folder}/source operator.cpp)

run_without_plugin(Zendel)
deploy(${folder})
run_program(0 "")
if(NOT errors MATCHES "Language [0-9]+\r?\nChanged")
    message(FATAL_ERROR "With a plug-in, the program prints: ${errors}")
endif()
