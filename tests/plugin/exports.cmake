# Fails unless the plug-in exports its two functions and nothing else.
# cmake -D NM=... -D PLUGIN=... -P exports.cmake

execute_process(COMMAND ${NM} --dynamic --defined-only --format=posix ${PLUGIN}
                OUTPUT_VARIABLE table COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" lines "${table}")
list(TRANSFORM lines REPLACE " .*" "")
list(SORT lines)
if(NOT lines STREQUAL "NewInterface;ReleaseInterface")
    message(FATAL_ERROR "${PLUGIN} exports ${lines}")
endif()
