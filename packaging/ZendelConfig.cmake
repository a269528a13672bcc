# find_package(Zendel) provides Zendel::Interface, the headers for a host. The host loads the plug-in
# itself at run time.

if(NOT TARGET Zendel::Interface)
    add_library(Zendel::Interface INTERFACE IMPORTED)
    get_filename_component(prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
    set_target_properties(Zendel::Interface PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${prefix}/include"
        INTERFACE_COMPILE_FEATURES cxx_std_17)
endif()
