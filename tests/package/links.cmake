# Fails unless every file that README.md and docs/*.md link to or name exists.
# cmake -D SOURCE_DIR=... -P links.cmake

cmake_policy(VERSION 3.21)

# Named as they lie in a build, in a package or on a machine.
set(elsewhere "^(Lang|build|include|platforms)/")

file(GLOB_RECURSE all RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*)
list(FILTER all EXCLUDE REGEX ${elsewhere})
list(TRANSFORM all REPLACE "^.*/" "")

# require(DOCUMENT FILE TEXT)
function(require document file text)
    if(NOT EXISTS ${file})
        message(SEND_ERROR "${document} names ${text}, which does not exist")
    endif()
endfunction()

# A heading's anchor, as the usual viewers make it.
function(anchor_of heading result)
    string(TOLOWER "${heading}" anchor)
    string(REGEX REPLACE "[^a-z0-9 _-]" "" anchor "${anchor}")
    string(REPLACE " " "-" anchor "${anchor}")
    set(${result} "${anchor}" PARENT_SCOPE)
endfunction()

# read_lists(FILE): what a page holds, its fenced blocks apart, in the caller's lists links, codes
# and anchors.
function(read_lists file)
    file(READ ${file} text)
    # These would split or join lists.
    string(REGEX REPLACE "[;\\]" " " text "${text}")
    string(REPLACE "[" "(" text "${text}")
    string(REPLACE "](" "\t" text "${text}")
    string(REPLACE "]" ")" text "${text}")
    # Every second part lies between two fences.
    string(REGEX REPLACE "\n```[a-z]*" ";" parts "${text}")
    set(text "")
    set(inside FALSE)
    foreach(part IN LISTS parts)
        if(NOT inside)
            string(APPEND text "${part}\n")
            set(inside TRUE)
        else()
            set(inside FALSE)
        endif()
    endforeach()

    string(REGEX MATCHALL "\t[^)\n]+" links "${text}")
    list(TRANSFORM links REPLACE "\t" "")
    set(links "${links}" PARENT_SCOPE)

    string(REGEX MATCHALL "`[^`\n]+`" codes "${text}")
    set(codes "${codes}" PARENT_SCOPE)

    string(REGEX MATCHALL "\n#+ [^\n]+" headings "${text}")
    set(anchors "")
    foreach(heading IN LISTS headings)
        string(REGEX REPLACE "^\n#+ " "" heading "${heading}")
        anchor_of("${heading}" anchor)
        list(APPEND anchors ${anchor})
    endforeach()
    set(anchors "${anchors}" PARENT_SCOPE)
endfunction()

file(GLOB documents RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/README.md ${SOURCE_DIR}/docs/*.md)
set(checked 0)
foreach(document IN LISTS documents)
    read_lists(${SOURCE_DIR}/${document})
    get_filename_component(folder ${SOURCE_DIR}/${document} DIRECTORY)

    foreach(link IN LISTS links)
        math(EXPR checked "${checked} + 1")
        if(link MATCHES "^[a-z]+:")
            continue()
        elseif(link MATCHES "^#(.*)")
            if(NOT CMAKE_MATCH_1 IN_LIST anchors)
                message(SEND_ERROR "${document} links to ${link}, which is no heading of it")
            endif()
        else()
            string(REGEX REPLACE "#.*" "" file ${link})
            require(${document} ${folder}/${file} ${link})
        endif()
    endforeach()

    # In code, a path is what has a slash in it or ends like a source file.
    foreach(code IN LISTS codes)
        string(REGEX MATCHALL "[A-Za-z0-9_.~/<>*-]+" words "${code}")
        foreach(word IN LISTS words)
            if(word MATCHES "[<>*~]" OR word MATCHES "${elsewhere}")
                continue()
            elseif(word MATCHES "/")
                math(EXPR checked "${checked} + 1")
                require(${document} ${SOURCE_DIR}/${word} ${word})
            elseif(word MATCHES "\\.(cmake|cpp|h|ini|md|sh)$")
                math(EXPR checked "${checked} + 1")
                if(NOT word IN_LIST all)
                    message(SEND_ERROR "${document} names ${word}, which does not exist")
                endif()
            endif()
        endforeach()
    endforeach()
endforeach()
if(checked EQUAL 0)
    message(SEND_ERROR "There are no documents in ${SOURCE_DIR}")
endif()
