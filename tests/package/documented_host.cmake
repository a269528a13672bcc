# Fails unless the program in docs/host-developer.md builds as described there, reports a missing
# plug-in, and with a plug-in and a simulated operator prints what the page shows and stores the
# language.
# outside.cmake describes the definitions.

include(${CMAKE_CURRENT_LIST_DIR}/outside.cmake)
set(folder ${BUILD_DIR}/tests/documented_host)
file(REMOVE_RECURSE ${folder})

take_block(cpp program)
take_block(cmake project)
take_block(text expected)
file(WRITE ${folder}/source/main.cpp "${program}")
file(WRITE ${folder}/source/CMakeLists.txt "${project}")
install_outside(${folder})
file(GLOB_RECURSE language_file ${folder}/install/LanguageFile.*)
file(COPY ${language_file} DESTINATION ${folder}/source)
build_with_operator(${folder} ${folder}/source operator.cpp)
run_without_plugin(Zendel)

deploy(${folder})
run_program(0 "${expected}")
if(NOT errors MATCHES "Title: Settings\n.*Title: Einstellungen\n")
    message(FATAL_ERROR "The second dialog is not in the new language:\n${errors}")
endif()
