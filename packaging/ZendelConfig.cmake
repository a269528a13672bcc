# find_package(Zendel) provides Zendel::Interface, the headers for a host. The host loads the
# plug-in itself at run time. Compilers of the other family and 32-bit ones are refused, because
# hosts built with them could not load the plug-in.

if(MSVC OR CMAKE_CXX_SIMULATE_ID STREQUAL MSVC) # CMake doesn't set MSVC for clang++.
    set(zendel_flavour msvc)
elseif(WIN32)
    set(zendel_flavour mingw)
else()
    set(zendel_flavour linux)
endif()
if(CMAKE_CXX_COMPILER_ID AND NOT zendel_flavour STREQUAL "@flavour@")
    set(zendel_name_linux "for Linux")
    set(zendel_name_mingw "with MinGW-w64")
    set(zendel_name_msvc "with MSVC")
    set(zendel_package "Zendel-@PROJECT_VERSION@-win64-${zendel_flavour}.zip")
    if(zendel_flavour STREQUAL linux)
        set(zendel_package "an installation that is built on Linux")
    endif()
    set(Zendel_FOUND FALSE)
    string(CONCAT Zendel_NOT_FOUND_MESSAGE
        "This Zendel is for hosts built ${zendel_name_@flavour@}, but this project is built "
        "${zendel_name_${zendel_flavour}}: use ${zendel_package} instead.")
    return()
endif()
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(Zendel_FOUND FALSE)
    string(CONCAT Zendel_NOT_FOUND_MESSAGE
        "Zendel is for 64-bit hosts, but this project is built for 32 bits: use a 64-bit compiler. "
        "For Visual Studio's generators, the option is \"-A x64\".")
    return()
endif()

if(NOT TARGET Zendel::Interface)
    add_library(Zendel::Interface INTERFACE IMPORTED)
    get_filename_component(prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
    set_target_properties(Zendel::Interface PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${prefix}/include"
        INTERFACE_COMPILE_FEATURES cxx_std_11)
endif()
