# Finds an official Qt 5.15 for MSVC, from toolchain/qt-msvc.sh or an installed kit: the folder in
# CMAKE_PREFIX_PATH with bin, include and lib. A kit's own CMake packages would start Windows
# programs; here, moc, rcc and uic are this machine's.

set(Qt5_VERSION 5.15.2)
foreach(module IN ITEMS Core Gui Widgets Test)
    set(Qt5${module}_VERSION ${Qt5_VERSION})
    set(Qt5${module}_FOUND TRUE)
endforeach()
set(Qt5Core_VERSION_MAJOR 5)
set(Qt5Core_VERSION_MINOR 15)
if(TARGET Qt5::Core)
    return()
endif()

find_path(include QtCore/qglobal.h REQUIRED NO_CACHE
          NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH PATHS ${CMAKE_PREFIX_PATH} PATH_SUFFIXES include)
get_filename_component(qt ${include} DIRECTORY)

# Programs and macros from Debian's Qt
set(tools /usr/lib/qt5/bin)
foreach(tool IN ITEMS moc rcc uic)
    add_executable(Qt5::${tool} IMPORTED)
    set_target_properties(Qt5::${tool} PROPERTIES IMPORTED_LOCATION ${tools}/${tool})
endforeach()
set(Qt5Core_MOC_EXECUTABLE Qt5::moc)
set(Qt5Core_RCC_EXECUTABLE Qt5::rcc)
set(Qt5Widgets_UIC_EXECUTABLE Qt5::uic)
file(GLOB macros /usr/lib/*/cmake/Qt5Core/Qt5CoreMacros.cmake
                 /usr/lib/*/cmake/Qt5Widgets/Qt5WidgetsMacros.cmake)
foreach(file IN LISTS macros)
    include(${file})
endforeach()

function(add_module module)
    string(TOUPPER ${module} upper)
    list(TRANSFORM ARGN PREPEND Qt5::)
    add_library(Qt5::${module} SHARED IMPORTED)
    set_target_properties(Qt5::${module} PROPERTIES
        IMPORTED_CONFIGURATIONS RELEASE
        IMPORTED_LOCATION_RELEASE ${qt}/bin/Qt5${module}.dll
        IMPORTED_IMPLIB_RELEASE ${qt}/lib/Qt5${module}.lib
        INTERFACE_COMPILE_DEFINITIONS "QT_${upper}_LIB;QT_NO_DEBUG"
        INTERFACE_INCLUDE_DIRECTORIES "${qt}/include;${qt}/include/Qt${module}"
        INTERFACE_LINK_LIBRARIES "${ARGN}"
        INTERFACE_QT_MAJOR_VERSION 5
    )
endfunction()
add_module(Core)
add_module(Gui Core)
add_module(Widgets Gui Core)
add_module(Test Core)
# Windowed programs also begin with main().
set_target_properties(Qt5::Core PROPERTIES INTERFACE_LINK_OPTIONS
    "$<$<BOOL:$<TARGET_PROPERTY:WIN32_EXECUTABLE>>:LINKER:-entry:mainCRTStartup>")

function(add_plugin name file)
    add_library(Qt5::${name} MODULE IMPORTED)
    set_target_properties(Qt5::${name} PROPERTIES
        IMPORTED_CONFIGURATIONS RELEASE IMPORTED_LOCATION_RELEASE ${qt}/plugins/${file})
endfunction()
add_plugin(QWindowsIntegrationPlugin platforms/qwindows.dll)
add_plugin(QWindowsVistaStylePlugin styles/qwindowsvistastyle.dll)
