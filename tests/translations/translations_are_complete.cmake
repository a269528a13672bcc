# Fails if a translation source lacks a text of the code, or contains an unfinished or obsolete one:
# lupdate marks them in a copy.
set(folder ${BUILD_DIR}/translations_are_complete)
file(REMOVE_RECURSE ${folder})
file(GLOB sources ${SOURCE_DIR}/translations/*.ts)
file(COPY ${sources} DESTINATION ${folder})
file(GLOB copies ${folder}/*.ts)
list(LENGTH copies count)
if(count LESS 22)
    message(FATAL_ERROR "Found only ${count} translations")
endif()

string(REPLACE "," ";" folders "${FOLDERS}")
execute_process(
    COMMAND ${LUPDATE} -locations none ${folders} -ts ${copies}
    WORKING_DIRECTORY ${SOURCE_DIR}
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR output MATCHES "[Ww]arning|Cannot")
    message(FATAL_ERROR "lupdate: ${output}")
endif()

set(failures)
foreach(copy IN LISTS copies)
    get_filename_component(name ${copy} NAME)
    file(READ ${copy} text)
    string(REPLACE ";" "," text "${text}") # Otherwise it would be a list.
    string(REPLACE "<message" ";<message" messages "${text}")
    list(REMOVE_AT messages 0)
    if(NOT messages)
        string(APPEND failures "${name} has no texts\n")
    endif()
    foreach(message IN LISTS messages)
        if(message MATCHES "<translation type=|<translation/>|<translation>[ \n]*</translation>")
            string(APPEND failures "${name}: ${message}\n")
        endif()
    endforeach()
endforeach()
if(failures)
    message(FATAL_ERROR "Build the target update-translations, then translate:\n${failures}")
endif()
