# The version and the commit in the built files.

if(WIN32)
    enable_language(RC)
endif()

# zendel_add_version_resource(TARGET DESCRIPTION): on Windows, adds the resource that Properties >
# Details shows.
function(zendel_add_version_resource target description)
    if(NOT WIN32)
        return()
    endif()
    get_target_property(type ${target} TYPE)
    get_target_property(name ${target} OUTPUT_NAME)
    if(NOT name)
        set(name ${target})
    endif()
    if(type STREQUAL EXECUTABLE)
        set(type VFT_APP)
        set(file ${name}.exe)
    else()
        set(type VFT_DLL)
        set(file ${name}.dll)
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/packaging/version.rc.in ${target}.rc @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
endfunction()

# commit.h defines COMMIT. It is checked in each build, but only written if HEAD has moved or the
# working tree has become dirty or clean.
set(commit_header ${CMAKE_CURRENT_BINARY_DIR}/commit/commit.h)
add_custom_target(zendel_find_commit
    COMMAND ${CMAKE_COMMAND} -D SOURCE_DIR=${PROJECT_SOURCE_DIR} -D HEADER=${commit_header}
            -P ${PROJECT_SOURCE_DIR}/packaging/commit.cmake
    BYPRODUCTS ${commit_header}
    COMMENT ""
    VERBATIM
)
add_library(zendel_commit INTERFACE)
add_dependencies(zendel_commit zendel_find_commit)
target_include_directories(zendel_commit INTERFACE ${CMAKE_CURRENT_BINARY_DIR}/commit)
