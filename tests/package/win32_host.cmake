# Fails unless the host in examples/win32/ builds with what is in the package, reports a missing plug-in,
# and with a plug-in and a simulated operator changes the language and ends, also if its window is closed
# while the dialog is open. outside.cmake describes the definitions.

include(${CMAKE_CURRENT_LIST_DIR}/outside.cmake)
set(folder ${BUILD_DIR}/tests/win32_host)
file(REMOVE_RECURSE ${folder})
install_outside(${folder})
build_with_operator(${folder} ${folder}/install/examples/win32 operator_win32.cpp)

run_program(1 "")
if(NOT errors MATCHES "Cannot load .*Zendel[.]dll: error 126\n")
    message(FATAL_ERROR "Without a plug-in, the program only prints: ${errors}")
endif()

deploy(${folder})
run_program(0 "Init: 1\nShowSettingsDlg: 0\n" "close the window while the dialog is open")
set(expected "")
file(READ ${SOURCE_DIR}/docs/host-developer.md page)
if(page MATCHES "\n```text\n([^`]*)```")
    set(expected "${CMAKE_MATCH_1}")
endif()
run_program(0 "${expected}")
if(NOT errors MATCHES "Title: Settings, main window disabled\n.*Title: Einstellungen, main window disabled\n")
    message(FATAL_ERROR "The dialogs are not as expected:\n${errors}")
endif()
