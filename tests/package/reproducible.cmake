# Fails unless two builds of the plug-in in different folders, of sources with different dates, have
# the same bytes.
# cmake -D SOURCE_DIR=... -D FOLDER=... -D GENERATOR=... -D QT=... -D TOOLCHAIN=... -D PYTHON=...
#       -P reproducible.cmake

file(REMOVE_RECURSE ${FOLDER})
foreach(copy one another/deeper/folder)
    set(source ${FOLDER}/${copy})
    foreach(part CMakeLists.txt cmake lang packaging plugin res toolchain translations ui)
        file(COPY ${SOURCE_DIR}/${part} DESTINATION ${source})
    endforeach()
    file(TOUCH ${source}/res/qss/style.css)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S ${source} -B ${source}/build -G ${GENERATOR}
                -DCMAKE_PREFIX_PATH=${QT} -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}
                -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZENDEL_BUILD_LANGCHECK=OFF
                -DZENDEL_BUILD_EXAMPLES=OFF -DZENDEL_BUILD_TESTS=OFF
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${CMAKE_COMMAND} --build ${source}/build --target Zendel
                    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    # With the PDB file that the linker writes for MSVC
    file(GLOB files ${source}/build/bin/Zendel.so ${source}/build/bin/Zendel.dll
                    ${source}/build/bin/Zendel.pdb)
    list(APPEND builds "${files}")
    list(LENGTH files count)
    if(count EQUAL 0)
        message(FATAL_ERROR "No plug-in was built in ${source}/build/bin")
    endif()
endforeach()

math(EXPR last "${count} - 1")
foreach(i RANGE ${last})
    math(EXPR j "${i} + ${count}")
    list(GET builds ${i} one)
    list(GET builds ${j} other)
    execute_process(COMMAND ${PYTHON} ${SOURCE_DIR}/packaging/compare-packages.py ${one} ${other}
                    RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(SEND_ERROR "${one} and ${other} differ")
    endif()
endforeach()
