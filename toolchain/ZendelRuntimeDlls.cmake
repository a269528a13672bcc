# Sets ZENDEL_RUNTIME_DLLS to the paths of the compiler's DLLs that programs need on Windows.

set(ZENDEL_RUNTIME_DLLS)
if(MINGW)
    foreach(dll libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
                        OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE
                        COMMAND_ERROR_IS_FATAL ANY)
        get_filename_component(file ${file} REALPATH)
        list(APPEND ZENDEL_RUNTIME_DLLS ${file})
    endforeach()
endif()
