# Fails unless the DLL is for x86-64, exports exactly two functions, imports only from Qt, the
# compiler's runtime and the system, and has ASLR and NX enabled.
# cmake -D OBJDUMP=... -D PLUGIN=... -P dll.cmake

execute_process(COMMAND ${OBJDUMP} -p ${PLUGIN} OUTPUT_VARIABLE dump COMMAND_ERROR_IS_FATAL ANY)

if(NOT dump MATCHES "file format pei-x86-64\n")
    message(SEND_ERROR "${PLUGIN} is not for x86-64")
endif()

string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table\n(\t\\[[^\n]*\n)*" exports "${dump}")
string(REGEX REPLACE "[^\n]*\\]|Table" "" exports "${exports}")
string(REGEX MATCHALL "[^ \n]+" exports "${exports}")
list(SORT exports)
if(NOT exports STREQUAL "NewInterface;ReleaseInterface")
    message(SEND_ERROR "${PLUGIN} exports ${exports}")
endif()

string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${dump}")
list(TRANSFORM imports REPLACE "DLL Name: " "")
set(allowed Qt5Core.dll Qt5Gui.dll Qt5Widgets.dll KERNEL32.dll USER32.dll msvcrt.dll
    libgcc_s_seh-1.dll libstdc\\+\\+-6.dll libwinpthread-1.dll)
list(JOIN allowed "|" allowed)
set(foreign ${imports})
list(FILTER foreign EXCLUDE REGEX "^(${allowed})$")
if(foreign OR NOT imports)
    message(SEND_ERROR "${PLUGIN} imports ${foreign}")
endif()

string(REGEX MATCH "DllCharacteristics[ \t]+([0-9a-f]+)" match "${dump}")
set(high_entropy 0x20)
set(dynamic_base 0x40)
set(nx_compatible 0x100)
foreach(flag high_entropy dynamic_base nx_compatible)
    math(EXPR set "0x${CMAKE_MATCH_1} & ${${flag}}")
    if(NOT set)
        message(SEND_ERROR "${PLUGIN} lacks ${flag}")
    endif()
endforeach()

# Only WindowManager_win32.cpp calls USER32.dll, and only these four functions.
string(REGEX MATCH "DLL Name: USER32.dll\n[^\n]*\n(\t[^\n]*\n)*" user32 "${dump}")
string(REGEX MATCHALL "[A-Za-z]+\n" user32 "${user32}")
list(TRANSFORM user32 STRIP)
list(FILTER user32 EXCLUDE REGEX "^(dll|To)$")
list(SORT user32)
if(NOT user32 STREQUAL "BringWindowToTop;EnableWindow;GetWindowRect;SetForegroundWindow")
    message(SEND_ERROR "${PLUGIN} imports ${user32} from USER32.dll")
endif()
