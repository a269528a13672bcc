# zendel_compile_translation(TS QM): adds a rule that compiles the translation source TS to QM.

# These tools run on the build machine, so they may come from a different Qt than the target's.
find_program(ZENDEL_LRELEASE NAMES lrelease lrelease-qt5 HINTS /usr/lib/qt5/bin REQUIRED
             DOC "Compiles translation sources")
find_program(ZENDEL_LUPDATE NAMES lupdate lupdate-qt5 HINTS /usr/lib/qt5/bin REQUIRED
             DOC "Updates translation sources from the code")
mark_as_advanced(ZENDEL_LRELEASE ZENDEL_LUPDATE)

function(zendel_compile_translation ts qm)
    get_filename_component(folder ${qm} DIRECTORY)
    add_custom_command(
        OUTPUT ${qm}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
        COMMAND ${ZENDEL_LRELEASE} -silent ${ts} -qm ${qm}
        WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
        DEPENDS ${ts}
        VERBATIM
    )
endfunction()
