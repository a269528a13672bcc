# Runs python_host.py in Python for Windows, next to which it puts a deployment.
# cmake -D SOURCE_DIR=... -D BUILD_DIR=... -D LAUNCHER=... -D PLUGIN=... -P python_host.cmake

execute_process(COMMAND ${SOURCE_DIR}/toolchain/qt-msvc.sh python
    OUTPUT_VARIABLE python OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(folder ${BUILD_DIR}/tests/python_host)
file(REMOVE_RECURSE ${folder})
file(COPY ${python}/ ${BUILD_DIR}/bin/Lang DESTINATION ${folder})
execute_process(
    COMMAND ${LAUNCHER} ${folder}/python.exe -u -X utf8
            ${CMAKE_CURRENT_LIST_DIR}/python_host.py ${PLUGIN}
    COMMAND_ERROR_IS_FATAL ANY)
