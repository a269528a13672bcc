# Included in the project of a documented host; links the simulated operator in the file OPERATOR
# into its program.

function(add_operator)
    find_package(Qt5 5.15 REQUIRED COMPONENTS Test)
    get_property(program DIRECTORY PROPERTY BUILDSYSTEM_TARGETS)
    set(tests ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../..)
    add_library(operator OBJECT
        ${OPERATOR}
        ${tests}/support/Operator.cpp
        ${tests}/support/Operator.h
    )
    set_target_properties(operator PROPERTIES AUTOMOC ON)
    target_include_directories(operator PRIVATE ${tests})
    target_link_libraries(operator PRIVATE Qt5::Test Qt5::Widgets)
    target_link_libraries(${program} PRIVATE operator)
endfunction()

cmake_language(DEFER CALL add_operator)
