# Makes langcheck's man page from what it prints with --help. The date is that of the commit, so
# that builds are reproducible.
# cmake -D HELP2MAN=... -D PROGRAM=... -D VERSION=... -D SOURCE_DIR=... -D OUTPUT=...
#       -P man_page.cmake

cmake_minimum_required(VERSION 3.21)

string(TIMESTAMP date %Y-%m-%d UTC)
if(EXISTS ${SOURCE_DIR}/.git)
    execute_process(COMMAND git -C ${SOURCE_DIR} log -1 --format=%cs
                    OUTPUT_VARIABLE commit_date OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(commit_date)
        set(date ${commit_date})
    endif()
endif()
set(ENV{LC_ALL} C.UTF-8)
execute_process(
    COMMAND ${HELP2MAN} --no-info --name "check deployments of the settings plug-in Zendel"
            --version-string=${VERSION} --source "Zendel ${VERSION}" --manual Zendel ${PROGRAM}
    OUTPUT_VARIABLE page COMMAND_ERROR_IS_FATAL ANY)
# help2man writes the name of a month, which isn't a date for all readers of man pages.
string(REGEX REPLACE "(\n[.]TH LANGCHECK \"1\" )\"[^\"]*\"" "\\1\"${date}\"" page "${page}")
file(WRITE ${OUTPUT} "${page}")
