# No translation source lacks a text of the code, has an unfinished one, or holds one that the code
# no longer uses: what lupdate would mark so in a copy is a failure.
set(folder ${BUILD_DIR}/translations_are_complete)
file(REMOVE_RECURSE ${folder})
file(GLOB sources ${SOURCE_DIR}/examples/Lang/*.ts)
file(COPY ${sources} DESTINATION ${folder})
file(GLOB copies ${folder}/*.ts)
list(LENGTH copies count)
if(count LESS 22)
    message(FATAL_ERROR "Only ${count} translations were found")
endif()

execute_process(
    COMMAND ${LUPDATE} -locations none ${SOURCE_DIR}/lang ${SOURCE_DIR}/plugin ${SOURCE_DIR}/ui
            -ts ${copies}
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR output MATCHES "[Ww]arning|Cannot")
    message(FATAL_ERROR "lupdate: ${output}")
endif()

set(failures)
foreach(copy IN LISTS copies)
    get_filename_component(name ${copy} NAME)
    file(READ ${copy} text)
    string(REGEX MATCHALL "<message>" messages "${text}")
    list(LENGTH messages count)
    if(count EQUAL 0)
        string(APPEND failures "${name} has no texts\n")
    endif()
    string(REGEX MATCHALL "<source>[^<]*</source>[ \n]*<translation type=[^>]*>" marked "${text}")
    string(REGEX MATCHALL "<source>[^<]*</source>[ \n]*<translation(/>|></translation>)" empty
           "${text}")
    foreach(message IN LISTS marked empty)
        string(APPEND failures "${name}: ${message}\n")
    endforeach()
endforeach()
if(failures)
    message(FATAL_ERROR "Not complete; build the target update-translations and see to:\n${failures}")
endif()
