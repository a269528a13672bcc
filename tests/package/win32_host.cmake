# Fails unless the host in examples/win32/ builds with what is in the package, has the loop that
# docs/host-developer.md shows, reports a missing plug-in, and with a plug-in and a simulated
# operator changes the language and ends, also if its window is closed while the dialog is open.
# outside.cmake describes the definitions.

include(${CMAKE_CURRENT_LIST_DIR}/outside.cmake)
set(folder ${BUILD_DIR}/tests/win32_host)
file(REMOVE_RECURSE ${folder})
install_outside(${folder})

take_block(c++ loop)
file(READ ${folder}/install/examples/win32/main.cpp source)
string(FIND "${source}" "${loop}" found)
if(found EQUAL -1)
    message(FATAL_ERROR "The loop on the page differs from that of the program:\n${loop}")
endif()
build_with_operator(${folder} ${folder}/install/examples/win32 operator_win32.cpp)

run_without_plugin("Can't load .*Zendel[.]dll: error 126\n")

deploy(${folder})
run_program(0 "Init: 1\nShowSettingsDlg: 0\n" "close the window while the dialog is open")
take_block(text expected)
run_program(0 "${expected}")
set(window "main window disabled\n")
if(NOT errors MATCHES "Title: Settings, ${window}.*Title: Einstellungen, ${window}")
    message(FATAL_ERROR "The dialogs are not as expected:\n${errors}")
endif()
