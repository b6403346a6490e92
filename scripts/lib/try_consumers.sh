#!/usr/bin/env bash
# Builds and runs programs of other projects: against static libraries, found by CMake and by
# pkg-config, and with these sources as a part of the other project. What `consumer_...` in the tests
# does with the shared libraries, this does with what needs a build of its own.
set -euo pipefail
. "$(dirname "$0")/common.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
use_ccache
fast=(-G Ninja -DCMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS_DEBUG=-O0")
consumer=$PWD/tests/frame/consumer

make() { quietly cmake -S "$1" -B "$2" "${fast[@]}" "${@:3}" && quietly cmake --build "$2" -j "$(nproc)"; }

# expect PROGRAM ARGUMENT... OUTPUT: what the program says.
expect() {
    local output
    output=$("${@:1:$#-1}") || die "$1 fails"
    [ "$output" = "${*: -1}" ] || die "$1 says \"$output\", not \"${*: -1}\""
}

# stands_alone PROGRAM: it needs none of the shared libraries.
stands_alone() {
    local needed
    needed=$(objdump -p "$1" | grep NEEDED) || true
    case $needed in
    '') die "cannot tell what $1 needs" ;;
    *libuxtree*) die "$1 needs shared libraries of ours: $needed" ;;
    esac
}

# The files that a build made, without objects and what CMake itself tries out.
made_files() {
    find "$1" -name CMakeFiles -prune -o -name _deps -prune -o -type f -print0 | xargs -0 file |
        grep -E ': +ELF|current ar archive' | cut -d: -f1 | xargs -n1 basename | sort
}

say "Static libraries"
make . "$work/static" -DBUILD_SHARED_LIBS=OFF -DUXTREE_BUILD_TOOL=OFF
quietly cmake --install "$work/static" --prefix "$work/installed"
mv "$work/installed" "$work/moved"
[ -z "$(find "$work/moved" -name '*.so*')" ] || die "shared libraries were installed"

make "$consumer" "$work/by_cmake" -DCMAKE_PREFIX_PATH="$work/moved"
expect "$work/by_cmake/consumer" '<a>7</a>'
stands_alone "$work/by_cmake/consumer"
note "found by CMake"

folder=$(dirname "$(find "$work/moved" -name uxtree_c.pc)")
export PKG_CONFIG_PATH=$folder
read -r -a flags <<<"$(pkg-config --static --cflags --libs uxtree_Utils)"
g++ -std=c++17 "$consumer/main.cpp" "${flags[@]}" -o "$work/by_pkg_config"
expect "$work/by_pkg_config" '<a>7</a>'
stands_alone "$work/by_pkg_config"
read -r -a flags <<<"$(pkg-config --static --cflags --libs uxtree_c)"
gcc -std=c99 examples/first_steps.c "${flags[@]}" -o "$work/in_c"
"$work/in_c" examples/dialog.xml "$work/result.xml" "$work/theme.xml" >"$work/said"
grep -qx 'Find/LocalPoints = 12' "$work/said" || die "the program in C says: $(cat "$work/said")"
stands_alone "$work/in_c"
note "found by pkg-config --static, in C++ and C"

say "A part of another project"
for way in add_subdirectory FetchContent; do
    make "$consumer" "$work/$way" -DUXTREE_FROM=$way -DUXTREE_DIR="$PWD"
    expect "$work/$way/consumer" '<a>7</a>'
    parts=$work/$way/uxtree_Utils
    [ $way = add_subdirectory ] || parts=$work/$way/_deps/uxtree_utils-build
    version=$(sed -n 's/^project(uxtree_Utils VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
    made=$(made_files "$parts")
    wanted=$(printf "libuxtree_%s.so.$version\n" Utils host kit)
    [ "$made" = "$wanted" ] || die "$way builds $made"
    cmake --install "$work/$way" --prefix "$work/nothing" >/dev/null
    [ ! -e "$work/nothing" ] || die "$way installs $(find "$work/nothing" -type f | head -3)"
    note "$way"
done
