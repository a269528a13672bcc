# zendel_compile_translation(TS QM): a rule that compiles a translation source into the file QM.

# The tools run on the building machine, so a Qt for another one need not bring them.
find_program(ZENDEL_LRELEASE NAMES lrelease lrelease-qt5 HINTS /usr/lib/qt5/bin REQUIRED
             DOC "Compiles translations")
find_program(ZENDEL_LUPDATE NAMES lupdate lupdate-qt5 HINTS /usr/lib/qt5/bin REQUIRED
             DOC "Brings the texts of the code into the sources of the translations")
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
