# Fails unless the virtual tables of the two interfaces are as hosts expect, in the C++ ABIs of MSVC
# and of MinGW. Clang can lay them out for both.
# cmake -D CLANG=... -D SOURCE_DIR=... -P vtables.cmake

# check(TARGET CLASS SLOT...)
function(check target class)
    execute_process(
        COMMAND ${CLANG} --target=${target} -std=c++17 -nostdinc -c -o /dev/null
                -I ${SOURCE_DIR} -I ${CMAKE_CURRENT_LIST_DIR}/include
                -Xclang -fdump-vtable-layouts ${CMAKE_CURRENT_LIST_DIR}/vtables.cpp
        OUTPUT_VARIABLE layouts COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCH "V[FT]+able indices for '${class}'[^\n]*\n([^\n]+\n)*" table "${layouts}")
    # CMake wouldn't split the list within square brackets.
    string(REGEX REPLACE "\\[([a-z ]+)\\]" "(\\1)" table "${table}")
    string(REGEX MATCHALL "\\| [^\n]+" slots "${table}")
    list(TRANSFORM slots REPLACE "^\\| " "")
    if(NOT slots STREQUAL "${ARGN}")
        message(SEND_ERROR "${target} lays out ${class} as ${slots}, not as ${ARGN}")
    endif()
endfunction()

set(operations "bool IZendelMgr::Init(IHostMachine *)" "bool IZendelMgr::ShowSettingsDlg(HWND)")
check(x86_64-pc-windows-msvc IZendelMgr
    "IZendelMgr::~IZendelMgr() (scalar deleting)" ${operations})
check(x86_64-w64-windows-gnu IZendelMgr
    "IZendelMgr::~IZendelMgr() (complete)" "IZendelMgr::~IZendelMgr() (deleting)" ${operations})
foreach(target x86_64-pc-windows-msvc x86_64-w64-windows-gnu)
    check(${target} IHostMachine
        "void IHostMachine::NotifySettingChanged()" "bool IHostMachine::SetLanguage(std::uint8_t)")
endforeach()
