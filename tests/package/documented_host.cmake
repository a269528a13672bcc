# Fails unless the program in docs/host-developer.md builds as described there, reports a missing
# plug-in, and with a plug-in and a simulated operator prints what the page shows and stores the language.
# outside.cmake describes the definitions.

include(${CMAKE_CURRENT_LIST_DIR}/outside.cmake)
set(folder ${BUILD_DIR}/tests/documented_host)
file(REMOVE_RECURSE ${folder})

file(READ ${SOURCE_DIR}/docs/host-developer.md page)

# take_block(LANGUAGE VARIABLE): returns the page's only fenced block in that language.
function(take_block language variable)
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

take_block(cpp program)
take_block(cmake project)
take_block(text expected)
file(WRITE ${folder}/source/main.cpp "${program}")
file(WRITE ${folder}/source/CMakeLists.txt "${project}")
install_outside(${folder})
file(GLOB_RECURSE language_file ${folder}/install/LanguageFile.*)
file(COPY ${language_file} DESTINATION ${folder}/source)
build_outside(${folder} ${folder}/source
    -DCMAKE_PROJECT_INCLUDE=${SOURCE_DIR}/tests/package/documented_host/operator.cmake)
file(GLOB program ${folder}/build/small_host ${folder}/build/small_host.exe)

# run_program(EXIT_CODE OUTPUT): uses files, because a pipe would stay open as long as the desktop
# that Wine may start with the program.
function(run_program exit_code output)
    execute_process(COMMAND ${LAUNCHER} ${program} TIMEOUT 120
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

run_program(1 "")
if(NOT errors MATCHES "Zendel")
    message(FATAL_ERROR "Without a plug-in, the program only prints: ${errors}")
endif()

file(GLOB_RECURSE plugin ${folder}/install/${PLUGIN})
file(GLOB_RECURSE catalogue ${folder}/install/Lang.ini)
get_filename_component(deployment ${catalogue} DIRECTORY)
file(COPY ${plugin} ${deployment} DESTINATION ${folder}/build)
run_program(0 "${expected}")
if(NOT errors MATCHES "Title: Settings\n.*Title: Einstellungen\n")
    message(FATAL_ERROR "The second dialog is not in the new language:\n${errors}")
endif()
