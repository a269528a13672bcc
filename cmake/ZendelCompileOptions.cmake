# The compile options of all targets. Hosts do not inherit them.

add_library(zendel_compile_options INTERFACE)

# Make conversions between bytes and strings explicit. No option rejects functions that older
# versions of Qt, down to 5.6, lack; the test "imports" does.
target_compile_definitions(zendel_compile_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS
    QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x050f00
)

if(MSVC)
    target_compile_options(zendel_compile_options INTERFACE
        /W4 /permissive- /utf-8 $<$<BOOL:${ZENDEL_WERROR}>:/WX>)
else()
    target_compile_options(zendel_compile_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow $<$<BOOL:${ZENDEL_WERROR}>:-Werror>
        # Because of Qt Test's QSKIP("...")
        $<$<CXX_COMPILER_ID:Clang>:-Wno-c++20-extensions>)
endif()

# For reproducible builds, whatever the source folder is. gcov needs the real folder.
if(NOT MSVC AND NOT ZENDEL_COVERAGE)
    add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
    foreach(folder IN LISTS CMAKE_PREFIX_PATH)
        add_compile_options(-ffile-prefix-map=${folder}=qt)
    endforeach()
endif()

if(ZENDEL_SANITIZE)
    # For all targets, including generated sources
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
elseif(MINGW)
    # ASLR and non-executable data, as in any modern Windows program
    add_link_options(LINKER:--dynamicbase,--high-entropy-va,--nxcompat)
    add_link_options(LINKER:--no-insert-timestamp)
elseif(WIN32)
    # With Microsoft's ABI, the linker enables ASLR by default. With MSVC, stack checks are on, too.
    if(NOT MSVC)
        add_compile_options(-fstack-protector-strong)
        # Debuggers look for the symbols next to the DLL, not in a folder of this machine.
        add_link_options(LINKER:-pdbaltpath:%_PDB%)
        # In the PDB file, paths begin with "zendel", not ".", and there are no command lines.
        file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_BINARY_DIR})
        add_compile_options(-fdebug-compilation-dir=${folder} -gno-codeview-command-line)
        add_link_options(LINKER:-pdbsourcepath:zendel)
        # Hashes instead of times, in object files and in the DLL
        add_compile_options(-mno-incremental-linker-compatible)
        add_link_options(LINKER:-Brepro)
        set(CMAKE_CXX_COMPILER_LAUNCHER ${PROJECT_SOURCE_DIR}/toolchain/msvc/relative-source.sh)
    endif()
else()
    add_link_options(LINKER:-z,defs)
endif()

if(ZENDEL_COVERAGE)
    # Leave out the branches that the compiler adds for exceptions and for thread-safe statics.
    add_compile_options(--coverage -fno-exceptions -fno-threadsafe-statics)
    add_link_options(--coverage)
    list(TRANSFORM ZENDEL_PLUGIN_FOLDERS REPLACE "(.+)" "filter = ${PROJECT_SOURCE_DIR}/\\1/"
         OUTPUT_VARIABLE filters)
    list(JOIN filters "\n" filters)
    configure_file(tests/gcovr.cfg.in gcovr.cfg @ONLY)
endif()
