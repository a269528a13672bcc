# Installs and packs the component "plugin" for developing a host or deploying the plug-in, and on
# Windows also "demo", which runs without an installed Qt, and "symbols" for debuggers.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# On Windows everything is at the top of the package, ready to be copied to a host.
if(WIN32)
    set(plugin_folder .)
    set(tool_folder .)
    set(data_folder .)
else()
    set(plugin_folder ${CMAKE_INSTALL_LIBDIR}/zendel)
    set(tool_folder ${CMAKE_INSTALL_BINDIR})
    set(data_folder ${CMAKE_INSTALL_DATADIR}/zendel)
endif()
set(config_folder lib/cmake/Zendel)
if(MINGW)
    set(flavour mingw)
elseif(WIN32)
    set(flavour msvc)
else()
    set(flavour linux)
endif()

install(TARGETS Zendel LIBRARY DESTINATION ${plugin_folder} COMPONENT plugin)
if(ZENDEL_BUILD_LANGCHECK)
    install(TARGETS langcheck RUNTIME DESTINATION ${tool_folder} COMPONENT plugin)
    if(TARGET langcheck_man_page)
        get_target_property(man_page langcheck_man_page MAN_PAGE)
        install(FILES ${man_page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT plugin)
    endif()
endif()
install(FILES plugin/IHostMachine.h plugin/IZendelMgr.h
        DESTINATION include/Zendel COMPONENT plugin)
install(FILES CHANGELOG.md packaging/README.md DESTINATION ${data_folder} COMPONENT plugin)
# Without the page about the sources, which the package doesn't have
install(DIRECTORY docs/ DESTINATION ${data_folder}/docs COMPONENT plugin
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.json" PATTERN imports.txt
        PATTERN developer.md EXCLUDE)
# What a host may copy
install(FILES examples/host/LanguageFile.cpp examples/host/LanguageFile.h
        DESTINATION ${data_folder}/examples/host COMPONENT plugin)
install(FILES examples/win32/CMakeLists.txt examples/win32/main.cpp
        DESTINATION ${data_folder}/examples/win32 COMPONENT plugin)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/ZendelConfigVersion.cmake
    COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
configure_file(packaging/ZendelConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/ZendelConfig.cmake @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ZendelConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/ZendelConfigVersion.cmake
        DESTINATION ${config_folder} COMPONENT plugin)

# install_sample_deployment(COMPONENT FOLDER)
function(install_sample_deployment component folder)
    install(FILES translations/Lang.ini DESTINATION ${folder}/Lang COMPONENT ${component})
    install(DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Lang/ DESTINATION ${folder}/Lang
            COMPONENT ${component} FILES_MATCHING PATTERN "*.qm")
endfunction()

install_sample_deployment(plugin ${data_folder})
install(DIRECTORY translations/ DESTINATION ${data_folder}/translations COMPONENT plugin
        FILES_MATCHING PATTERN "*.ts")

set(CPACK_COMPONENTS_ALL plugin)
if(WIN32 AND ZENDEL_BUILD_EXAMPLES AND ZENDEL_BUILD_LANGCHECK)
    list(APPEND CPACK_COMPONENTS_ALL demo symbols)
    install(TARGETS zendel-host langcheck RUNTIME DESTINATION . COMPONENT demo)
    install(TARGETS Zendel LIBRARY DESTINATION . COMPONENT demo)
    install_sample_deployment(demo .)

    install(FILES $<TARGET_FILE:Qt5::Core> $<TARGET_FILE:Qt5::Gui> $<TARGET_FILE:Qt5::Widgets>
                  ${ZENDEL_RUNTIME_DLLS} DESTINATION . COMPONENT demo)
    install(FILES $<TARGET_FILE:Qt5::QWindowsIntegrationPlugin>
            DESTINATION platforms COMPONENT demo)
    install(FILES $<TARGET_FILE:Qt5::QWindowsVistaStylePlugin> DESTINATION styles COMPONENT demo)

    # With MinGW, the debug symbols are in the built files, from which CPack strips them.
    foreach(target Zendel langcheck zendel-host)
        set(symbols $<TARGET_PDB_FILE:${target}>)
        if(MINGW)
            set(symbols ${CMAKE_CURRENT_BINARY_DIR}/symbols/$<TARGET_FILE_NAME:${target}>.debug)
            add_custom_target(${target}-symbols ALL
                COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/symbols
                COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=1 # Otherwise it writes the time
                        ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${target}> ${symbols}
                VERBATIM)
        endif()
        install(FILES ${symbols} DESTINATION . COMPONENT symbols)
    endforeach()
    install(FILES examples/host/README.txt DESTINATION . COMPONENT demo)
endif()

set(CPACK_GENERATOR ZIP)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ${MINGW})
# Otherwise strip writes the time into DLLs and programs.
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_BINARY_DIR}/strip-date.cmake)
file(WRITE ${CPACK_PROJECT_CONFIG_FILE} "set(ENV{SOURCE_DATE_EPOCH} 1)\n")
if(WIN32)
    set(platform win64-${flavour})
else()
    set(platform ${CMAKE_SYSTEM_NAME})
endif()
set(CPACK_ARCHIVE_PLUGIN_FILE_NAME Zendel-${PROJECT_VERSION}-${platform})
set(CPACK_ARCHIVE_DEMO_FILE_NAME Zendel-${PROJECT_VERSION}-${platform}-demo)
set(CPACK_ARCHIVE_SELFTEST_FILE_NAME Zendel-${PROJECT_VERSION}-${platform}-selftest)
set(CPACK_ARCHIVE_SYMBOLS_FILE_NAME Zendel-${PROJECT_VERSION}-${platform}-symbols)

# The third-party code in each package is listed in the package, in THIRD-PARTY-NOTICES, and in an
# SBOM next to it. The texts come from Debian's packages, toolchain/qt-mingw.sh and
# toolchain/qt-msvc.sh.
set(qt "")
if(WIN32)
    get_target_property(qt Qt5::Core IMPORTED_LOCATION_RELEASE)
    get_filename_component(qt ${qt}/../.. ABSOLUTE)
endif()
set(third_party "")
if(EXISTS /usr/bin/dpkg-query AND EXISTS /usr/bin/python3
        AND (NOT WIN32 OR EXISTS ${qt}/share/doc/source))
    set(third_party "/usr/bin/python3 \"${PROJECT_SOURCE_DIR}/packaging/third_party.py\"")
    set(third_party_config ${CMAKE_CURRENT_BINARY_DIR}/third-party.json)
    list(TRANSFORM ZENDEL_RUNTIME_DLLS REPLACE "(.+)" "\"\\1\"" OUTPUT_VARIABLE runtime)
    list(JOIN runtime ", " runtime)
    file(WRITE ${third_party_config} "{
        \"version\": \"${PROJECT_VERSION}\", \"source\": \"${PROJECT_SOURCE_DIR}\",
        \"flavour\": \"${flavour}\", \"qt\": \"${qt}\", \"sysroot\": \"${ZENDEL_MSVC_SYSROOT}\",
        \"runtime\": [${runtime}]}\n")
    set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/finish-packages.cmake)
    file(WRITE ${CPACK_POST_BUILD_SCRIPTS} "execute_process(
        COMMAND ${third_party} finish \"${third_party_config}\" \"\${CPACK_PACKAGE_DIRECTORY}\"
                \${CPACK_PACKAGE_FILES}
        COMMAND_ERROR_IS_FATAL ANY)\n")
else()
    message(STATUS "Packages will lack THIRD-PARTY-NOTICES, which need Python, dpkg-query and, for "
                   "Windows, the Qt from toolchain/qt-mingw.sh or toolchain/qt-msvc.sh")
endif()

# install_qt_recipe(COMPONENT [EXCLUDE_FROM_ALL]): installs the scripts that built Qt for MinGW, as
# Qt's licence requires.
function(install_qt_recipe component)
    if(third_party AND MINGW)
        install(PROGRAMS ${PROJECT_SOURCE_DIR}/toolchain/fetch-source.sh
                         ${PROJECT_SOURCE_DIR}/toolchain/qt-mingw.sh
                DESTINATION qt COMPONENT ${component} ${ARGN})
    endif()
endfunction()

# install_notices(COMPONENT FOLDER [EXCLUDE_FROM_ALL]): must be called after all other files of the
# component have been installed.
function(install_notices component folder)
    if(third_party)
        string(TOUPPER ${component} upper)
        install(CODE "execute_process(
            COMMAND ${third_party} notices \"${third_party_config}\"
                    ${CPACK_ARCHIVE_${upper}_FILE_NAME}.zip
                    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}\"
            COMMAND_ERROR_IS_FATAL ANY)" COMPONENT ${component} ${ARGN})
    endif()
endfunction()
install_notices(plugin ${data_folder})
if(demo IN_LIST CPACK_COMPONENTS_ALL)
    install_qt_recipe(demo)
    install_notices(demo .)
    install_notices(symbols .)
endif()
include(CPack)
