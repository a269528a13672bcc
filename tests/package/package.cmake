# Fails unless the packages contain the expected files, the links in their pages work, their notices
# name each third-party DLL and have the hashes of the official ones, their SBOMs and SHA256SUMS
# match, and the demo runs without any other DLL from a folder with spaces in its name.
# cmake -D CPACK=... -D BUILD_DIR=... -D SOURCE_DIR=... -D VERSION=... -D FLAVOUR=...
#       -D LAUNCHER=... -D PATH_VARIABLE=... -D PYTHON=... -P package.cmake

cmake_minimum_required(VERSION 3.21)

set(folder ${BUILD_DIR}/tests/unpacked)
file(REMOVE_RECURSE ${folder})
file(MAKE_DIRECTORY ${folder})
execute_process(COMMAND ${CPACK} --config ${BUILD_DIR}/CPackConfig.cmake -B ${folder}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

file(GLOB languages RELATIVE ${SOURCE_DIR}/translations ${SOURCE_DIR}/translations/*.ts)
list(TRANSFORM languages REPLACE "[.]ts$" "")
list(TRANSFORM languages APPEND .ts OUTPUT_VARIABLE translations)
list(TRANSFORM translations PREPEND translations/)

set(files Lang/Lang.ini Zendel.dll langcheck.exe)
foreach(language IN LISTS languages)
    list(APPEND files Lang/${language}/Zendel.qm)
endforeach()

# unpack(SUFFIX FOLDER FILE...): the package must contain these files and no others.
function(unpack suffix target)
    set(package Zendel-${VERSION}-win64-${FLAVOUR}${suffix}.zip)
    file(ARCHIVE_EXTRACT INPUT ${folder}/${package} DESTINATION "${target}")
    file(GLOB_RECURSE found RELATIVE "${target}" "${target}/*")
    set(expected THIRD-PARTY-NOTICES ${ARGN})
    list(SORT found)
    list(SORT expected)
    if(NOT found STREQUAL expected)
        message(SEND_ERROR "${package} contains\n${found}\nnot\n${expected}")
    endif()

    file(STRINGS ${target}/THIRD-PARTY-NOTICES named REGEX "^  Files:")
    list(JOIN named " " named)
    separate_arguments(named)
    file(STRINGS ${target}/THIRD-PARTY-NOTICES hashes REGEX "^  SHA-256:")
    list(TRANSFORM hashes REPLACE "^  SHA-256:  ([0-9a-f]+)  (.+)$" "\\2 \\1")
    foreach(file IN LISTS found)
        get_filename_component(name ${file} NAME)
        if(name MATCHES "[.]dll$" AND NOT name STREQUAL Zendel.dll AND NOT name IN_LIST named)
            message(SEND_ERROR "${package}: THIRD-PARTY-NOTICES do not name ${name}")
        endif()
        if(FLAVOUR STREQUAL msvc AND name MATCHES "^(Qt5|qwindows)")
            file(SHA256 "${target}/${file}" hash)
            if(NOT "${name} ${hash}" IN_LIST hashes)
                message(SEND_ERROR
                    "${package}: THIRD-PARTY-NOTICES lack ${hash}, the hash of ${name}")
            endif()
        endif()
    endforeach()

    string(REPLACE .zip .spdx.json sbom ${package})
    foreach(file ${package} ${sbom})
        file(SHA256 ${folder}/${file} hash)
        file(STRINGS ${folder}/SHA256SUMS lines REGEX "  ${file}$")
        if(NOT lines STREQUAL "${hash}  ${file}")
            message(SEND_ERROR "SHA256SUMS has ${lines}, not ${hash}, for ${file}")
        endif()
    endforeach()
    file(SHA256 ${folder}/${package} hash)
    file(READ ${folder}/${sbom} sbom)
    if(NOT sbom MATCHES "\"packageFileName\": \"${package}\",[^}]*\"checksumValue\": \"${hash}\"")
        message(SEND_ERROR "The SBOM lacks ${package} with ${hash}")
    endif()
    # Each component in the notices is a package of the SBOM.
    file(STRINGS ${target}/THIRD-PARTY-NOTICES licences REGEX "^  Licence:")
    list(LENGTH licences count)
    string(REGEX MATCHALL
           "\"spdxElementId\": \"SPDXRef-archive\",[ \n]*\"relationshipType\": \"[A-Z_]+\""
           contained "${sbom}")
    list(LENGTH contained contained)
    if(count EQUAL 0 OR NOT count EQUAL contained)
        message(SEND_ERROR
            "The notices of ${package} have ${count} components, the SBOM ${contained}")
    endif()
endfunction()

unpack("" ${folder}/plugin
    ${files}
    CHANGELOG.md
    README.md
    docs/dialog.png
    docs/host-developer.md
    docs/imports.txt
    docs/langcheck.schema.json
    docs/languages.png
    docs/reliability.md
    docs/service-engineer.md
    docs/translator.md
    examples/host/LanguageFile.cpp
    examples/host/LanguageFile.h
    examples/win32/CMakeLists.txt
    examples/win32/main.cpp
    include/Zendel/IHostMachine.h
    include/Zendel/IZendelMgr.h
    lib/cmake/Zendel/ZendelConfig.cmake
    lib/cmake/Zendel/ZendelConfigVersion.cmake
    ${translations}
)

execute_process(
    COMMAND ${PYTHON} ${SOURCE_DIR}/tests/package/page_links.py --package ${folder}/plugin
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(SEND_ERROR "The package's pages link to files that it does not contain")
endif()

set(demo "${folder}/demo of the plug-in")
if(FLAVOUR STREQUAL msvc)
    set(runtime)
    set(symbols Zendel.pdb langcheck.pdb zendel-host.pdb)
else()
    set(runtime libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll
                qt/fetch-source.sh qt/qt-mingw.sh)
    set(symbols Zendel.dll.debug langcheck.exe.debug zendel-host.exe.debug)
endif()
unpack(-symbols ${folder}/symbols ${symbols})
unpack(-demo ${demo}
    ${files}
    Qt5Core.dll
    Qt5Gui.dll
    Qt5Widgets.dll
    README.txt
    ${runtime}
    platforms/qwindows.dll
    styles/qwindowsvistastyle.dll
    zendel-host.exe
)

file(GLOB sboms ${folder}/*.spdx.json)
execute_process(COMMAND ${PYTHON} ${SOURCE_DIR}/tests/package/sbom.py ${sboms}
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(SEND_ERROR "The SBOMs are not valid")
endif()

# run(NAME ARGUMENT...): runs a program of the demo without any other DLL and sets "output". Uses
# files, because a pipe would stay open as long as the desktop that Wine may start with the program.
function(run name)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=${PATH_VARIABLE}
                            ${LAUNCHER} ${demo}/${name}.exe ${ARGN}
                    WORKING_DIRECTORY ${demo}
                    OUTPUT_FILE ${folder}/${name}.txt ERROR_FILE ${folder}/${name}.errors.txt
                    RESULT_VARIABLE result)
    file(READ ${folder}/${name}.txt output)
    if(NOT result EQUAL 0)
        file(READ ${folder}/${name}.errors.txt errors)
        message(FATAL_ERROR "${name} ended with ${result}:\n${output}${errors}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

run(zendel-host --tour screenshots)
file(GLOB screenshots ${demo}/screenshots/*.png)
list(LENGTH screenshots count)
if(NOT count EQUAL 5)
    message(SEND_ERROR "The demo's tour created ${screenshots}")
endif()

run(langcheck)
if(NOT output MATCHES "0 errors, 0 warnings")
    message(SEND_ERROR "langcheck printed\n${output}")
endif()
