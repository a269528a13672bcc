# Fails unless the header with the commit follows the repository, and is written only if that
# changed.
# cmake -D SCRIPT=... -D FOLDER=... -P commit_header.cmake

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER}/sources)
foreach(variable GIT_DIR GIT_WORK_TREE GIT_INDEX_FILE)
    unset(ENV{${variable}})
endforeach()

function(git folder)
    execute_process(
        COMMAND git -C ${folder} -c user.name=test -c user.email=test@localhost
                -c commit.gpgsign=false ${ARGN}
        OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(output "${output}" PARENT_SCOPE)
endfunction()

# expect(CASE COMMIT)
function(expect case commit)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -D SOURCE_DIR=${FOLDER}/sources
                -D HEADER=${FOLDER}/commit.h -P ${SCRIPT}
        COMMAND_ERROR_IS_FATAL ANY)
    file(READ ${FOLDER}/commit.h text)
    if(NOT text STREQUAL "#define COMMIT \"${commit}\"\n")
        message(SEND_ERROR "${case}: the header contains ${text}")
    endif()
endfunction()

expect("no repository" "")
# As if the sources had been unpacked in a folder below a repository
git(${FOLDER} init -q)
git(${FOLDER} commit -q --allow-empty -m outer)
expect("repository above the sources" "")

git(${FOLDER}/sources init -q)
expect("repository without a commit" "")
foreach(text first second)
    file(WRITE ${FOLDER}/sources/file "${text}")
    git(${FOLDER}/sources add file)
    git(${FOLDER}/sources commit -q -m ${text})
    git(${FOLDER}/sources tag -f newest)
    git(${FOLDER}/sources rev-parse HEAD)
    expect("${text} commit" ", commit ${output}")
endforeach()

execute_process(COMMAND touch -d @1 ${FOLDER}/commit.h COMMAND_ERROR_IS_FATAL ANY)
expect("nothing changed" ", commit ${output}")
file(TIMESTAMP ${FOLDER}/commit.h time "%s" UTC)
if(NOT time EQUAL 1)
    message(SEND_ERROR "The header was written although nothing had changed")
endif()

file(WRITE ${FOLDER}/sources/file changed)
expect("changed file" ", commit ${output}-dirty")
