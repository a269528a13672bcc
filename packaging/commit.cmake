# Writes the header that defines COMMIT, the commit of the working tree, as text to append to the
# version; "-dirty" means that files have been changed since. It is empty without a repository.
# cmake -D SOURCE_DIR=... -D HEADER=... -P commit.cmake

cmake_minimum_required(VERSION 3.21)

set(commit "")
# Sources in a folder below somebody else's repository aren't part of it.
if(EXISTS ${SOURCE_DIR}/.git)
    set(ENV{GIT_OPTIONAL_LOCKS} 0)
    execute_process(COMMAND git -C ${SOURCE_DIR} describe --always --dirty --abbrev=40 --exclude=*
                    OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(commit)
    string(PREPEND commit ", commit ")
endif()
# Doesn't touch the file if its contents stay the same
file(CONFIGURE OUTPUT ${HEADER} CONTENT "#define COMMIT \"@commit@\"\n" @ONLY)
