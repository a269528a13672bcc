#!/usr/bin/env bash
# msvc-sysroot.sh: collects what Clang needs to compile and link for Microsoft's C++ ABI, without
# Microsoft's files, and prints the folder as the last line on stdout; everything else goes to
# stderr.
#
# The folder contains libc++ and the stack probe, from LLVM's source; the start-up code of programs
# and DLLs, from toolchain/msvc/runtime; and import libraries. The libraries have the same names as
# Microsoft's, so that Clang and CMake find them.
#
# The result is kept in ${ZENDEL_CACHE:-~/.cache/zendel} and may be deleted there at any time.
set -euo pipefail
export LC_ALL=C
exec 3>&1 >&2

here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
msvc=$(realpath "$here/msvc")
mingw=/usr/x86_64-w64-mingw32/lib
cache=$(realpath -m "${ZENDEL_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/zendel}")
export PATH=/usr/lib/llvm-19/bin:$PATH

key=$({ dpkg-query -W clang-19 libwine-dev mingw-w64-x86-64-dev
    cat "$here"/{msvc-sysroot,fetch-source}.sh "$msvc"/{__config_site,clang.cfg.in}
    find "$msvc"/{include,runtime} -type f | sort | xargs cat; } | sha256sum | cut -c 1-16)
result=$cache/msvc-sysroot-$key
if [[ -d $result ]]; then
    echo "$result" >&3
    exit 0
fi

mkdir -p "$cache"
work=$(mktemp -d "$cache/build-msvc-sysroot.XXXXXX")
log=$cache/msvc-sysroot.log
finish() {
    rm -rf "$work"
    if [[ ! -d $result ]]; then
        tail -n 20 "$log" >&4
        echo "${0##*/}: the sysroot was not built; the whole log is $log" >&4
    fi
}
trap finish EXIT
exec 4>&1 > "$log" 2>&1
cd "$work"

llvm_version=$(dpkg-query -W -f '${source:Version}' clang-19)
echo "fetching llvm-toolchain-19 $llvm_version" >&4
"$here/fetch-source.sh" "llvm-toolchain-19=$llvm_version" --tar-only
mkdir llvm
tar -xf llvm-toolchain-19_*.orig.tar.* -C llvm --strip-components=1 --wildcards \
    '*/libcxx/include' '*/libcxx/src' '*/libcxx/vendor' '*/compiler-rt/lib/builtins' \
    '*/libcxx/LICENSE.TXT'
rm llvm-toolchain-19_*
folder=$work/sysroot llvm=$work/llvm

# replace LINE TEXT FILE: prints the file with this line changed; fails if it is not there.
replace() {
    grep -qxF -- "$1" "$3"
    awk -v line="$1" -v text="$2" '$0 == line { $0 = text } { print }' "$3"
}

mkdir -p "$folder/include/wine" "$folder/lib" "$folder/objects"
cp -r "$llvm/libcxx/include" "$folder/include/c++"
cp "$llvm/libcxx/vendor/llvm/default_assertion_handler.in" \
    "$folder/include/c++/__assertion_handler"
cp "$msvc/__config_site" "$folder/include/c++/"
cp -r "$msvc/include" "$folder/include/windows"
# Microsoft's std::exception also stores a text and whether to free it, and a host may copy one.
declaration='  virtual const char* what() const _NOEXCEPT;'
members='private: const char* __text = nullptr; bool __owned = false;'
replace "$declaration" "$declaration $members" "$llvm/libcxx/include/__exception/exception.h" \
    > "$folder/include/c++/__exception/exception.h"
# Microsoft's std::initializer_list has a pointer to the end instead of a size, and Qt's functions
# take one.
sed 's/size_t __size_;/const _Ep* __end_;/; s/__size_(__s)/__end_(__b + __s)/
     s/__size_(0)/__end_(nullptr)/; s/return __size_;/return __end_ - __begin_;/
     s/__begin_ + __size_;/__end_;/' \
    "$llvm/libcxx/include/initializer_list" > "$folder/include/c++/initializer_list"
(($(grep -c __end_ "$folder/include/c++/initializer_list") == 5))
# Microsoft's library writes all 8 bytes of it.
replace 'typedef int mbstate_t;' \
    'typedef struct { unsigned wide; unsigned short byte, state; } mbstate_t;' \
    /usr/include/wine/wine/msvcrt/wchar.h > "$folder/include/wine/wchar.h"
headers=$(clang -print-resource-dir)/include
sed "s|@CLANG_HEADERS@|$headers|; /^@/d" "$msvc/clang.cfg.in" > "$folder/clang.cfg"
sed "s|@CLANG_HEADERS@|$headers|; s|@CXX_OPTION@|-fcxx-exceptions|
     s|@CXX_HEADERS@|-isystem <CFGDIR>/include/c++|" "$msvc/clang.cfg.in" > "$folder/clang++.cfg"

# compile SOURCE OPTION...: compiles reproducibly, whatever the folders are. It changes to the
# source's folder, because Clang derives the names of anonymous namespaces from the source's path.
compile() (
    local source=$1 compiler=(clang --config="$folder/clang.cfg")
    shift
    [[ $source != *.cpp ]] || compiler=(clang++ --config="$folder/clang++.cfg")
    cd "$(dirname "$source")"
    "${compiler[@]}" -O2 -ffile-prefix-map="$llvm=llvm" -ffile-prefix-map="$folder=sysroot" "$@" \
        -c "$(basename "$source")" -o "$folder/objects/$(basename "$source").o"
)

# Lists the parts of libc++ for which Windows needs no other library. The rest, complex numbers of
# long double and the experimental part, isn't used.
libcxx() {
    local unused='/exception\.cpp|compiler_rt_shims|legacy_|int128|print|random_shuffle'
    (cd "$llvm/libcxx/src" && ls ./*.cpp filesystem/*.cpp support/win32/*.cpp) |
        grep -vE "$unused|strstream|tz|debug"
}
echo "compiling libc++" >&4
# Like Qt, for Windows 7. Wine's headers lack the last two.
options=(-std=c++23 -w -DNDEBUG -DNOMINMAX -D_LIBCPP_BUILDING_LIBRARY
    -D_WIN32_WINNT=0x0601 -D_WIN32_WINNT_WIN8=0x0602 -D_WIN32_WINNT_WIN10=0x0a00
    -I "$llvm/libcxx/src" -I "$llvm/libcxx/src/include")
export -f compile
export folder llvm
libcxx | while read -r source; do printf '%s\0' "$llvm/libcxx/src/$source"; done |
    xargs -0 -P "$(nproc)" -I{} bash -c 'compile "$@"' - {} "${options[@]}"
compile "$msvc/runtime/exception.cpp" "${options[@]}"
llvm-ar qcs "$folder/lib/libc++.lib" "$folder"/objects/*.o
rm "$folder"/objects/*

for source in "$msvc"/runtime/*.c; do
    compile "$source" -Wall -Wextra -Werror -ffreestanding
done
compile "$llvm/compiler-rt/lib/builtins/x86_64/chkstk.S"
# The TLS directory, and the initialization of what is thread-local
(cd "$folder/objects" && x86_64-w64-mingw32-ar x "$mingw/libmingw32.a" \
    lib64_libmingw32_a-tlssup.o lib64_libmingw32_a-tlsthrd.o)
# lld warns about the names of GNU debug sections.
llvm-strip --strip-debug "$folder"/objects/lib64_*.o
llvm-ar qcs "$folder/lib/uuid.lib" "$folder/objects/uuid.c.o"
rm "$folder/objects/uuid.c.o"
llvm-ar qcs "$folder/lib/msvcrt.lib" "$folder"/objects/*.o
rm -r "$folder/objects"

# import_library DLL: makes an import library for the functions on stdin.
import_library() {
    { printf 'LIBRARY %s\nEXPORTS\n' "$1" && cat; } > "$folder/lib/$1.def"
    llvm-dlltool -m i386:x86-64 -d "$folder/lib/$1.def" -l "$folder/lib/$1.lib"
    rm "$folder/lib/$1.def"
}
# One for each API set of the Universal C run-time library, from mingw-w64's single library. That
# also has functions that only mingw-w64 has, and the "private" API set, which duplicates
# vcruntime140.dll.
llvm-nm -A "$mingw/libucrt.a" 2> /dev/null |
    sed -nE 's/.*lib(api-ms-win-crt-[a-z]+-l1-1-0)s[0-9]+\.o:.* __imp_(.+)$/\1.dll \2/p' |
    grep -v private | sort -u > "$folder/ucrt"
cut -d ' ' -f 1 "$folder/ucrt" | uniq | while read -r dll; do
    sed -n "s/^$dll //p" "$folder/ucrt" | import_library "$dll"
done
(cd "$folder/lib" && llvm-ar qcsL ucrt.lib api-ms-win-crt-*.lib && rm api-ms-win-crt-*.lib)
rm "$folder/ucrt"
llvm-readobj --coff-exports /usr/lib/x86_64-linux-gnu/wine/x86_64-windows/vcruntime140.dll |
    sed -n 's/^ *Name: //p' | import_library vcruntime140.dll
mv "$folder/lib/vcruntime140.dll.lib" "$folder/lib/vcruntime.lib"
# Windows' own DLLs
others='crtdll|dxguid|gmon|largeint|m|mingw.*|moldname|msvc.*|pthread|ucrt.*|uuid'
others+='|vcruntime.*|winpthread'
for library in "$mingw"/lib*.a; do
    name=$(basename "$library" .a)
    [[ $name =~ ^lib($others)$ ]] || ln -s "$library" "$folder/lib/${name#lib}.lib"
done
llvm-ar qcs "$folder/lib/dxguid.lib" # Its identifiers are in uuid.lib.
# mingw-w64's shell32 also defines identifiers that are in uuid.lib.
rm "$folder/lib/shell32.lib"
cp "$mingw/libshell32.a" "$folder/lib/shell32.lib"
llvm-ar d "$folder/lib/shell32.lib" lib64_libshell32_a-shell32.o
# CMake always links it. Microsoft's has aliases of C functions, without an underscore.
llvm-ar qcs "$folder/lib/oldnames.lib"

mkdir "$folder/doc"
cp "$llvm/libcxx/LICENSE.TXT" "$folder/doc/LLVM-LICENSE.TXT"
echo "llvm-toolchain-19 $llvm_version" > "$folder/doc/llvm-source"
mv -T "$folder" "$result" 2> /dev/null || [[ -d $result ]]
echo "$result" >&3
