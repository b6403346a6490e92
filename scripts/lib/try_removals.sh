#!/usr/bin/env bash
# Takes one annotation, one row of the sweep and one line of a committed file away, each in a copy of
# the sources, and builds: the build or a test must miss it. The test `removals` does the same with
# all of them, against the generators alone.
set -euo pipefail
. "$(dirname "$0")/common.sh"

copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
git ls-files -z | tar --null -T - -c | tar -x -C "$copy"
use_ccache
configure() {
    quietly cmake -S "$copy" -B "$copy/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
        -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DUXTREE_BUILD_TOOL=OFF
}
builds() { cmake --build "$copy/build" -j "$(nproc)" --target "$@" -- --quiet >"$copy/log" 2>&1; }
passes() { (cd "$copy/build" && ctest -R "^($1)\$" --no-tests=error) >"$copy/log" 2>&1; }

# without FILE PATTERN REPLACEMENT COMMAND...: the command must fail with the change and hold without.
without() {
    local file=$copy/$1 pattern=$2 replacement=$3
    shift 3
    cp "$file" "$copy/kept"
    sed -i "0,/$pattern/s//$replacement/" "$file"
    ! cmp -s "$file" "$copy/kept" || die "nothing to take away in $file: $pattern"
    if "$@"; then die "nobody misses $pattern in ${file#"$copy"/}"; fi
    cp "$copy/kept" "$file"
    "$@" || { cat "$copy/log" >&2; die "${file#"$copy"/} is whole again, and still: $*"; }
    note "missed: $pattern in ${file#"$copy"/}"
}

configure
builds frame_calls || { cat "$copy/log" >&2; die "the copy does not build"; }
# The sweep says that it may be null, so its rows do not compile.
without include/uxtree/data/values.h 'UX_OPT const char\* idAttribute' \
    'UX_IN const char* idAttribute' builds frame_calls
# Without any annotation, nothing is made of the headers.
without include/uxtree/data/values.h 'UX_OPT const char\* idAttribute' 'const char* idAttribute' \
    builds uxtree_kit
without tests/frame/calls/data_calls.cpp 'sweep.add(UX_ENTRY(uxtree_clear_all_value)[^;]*;' '' \
    passes entry_points
without docs/entry_points.txt '^script.uxtree_clear_all_value.*$' '' passes 'entry_points|reference'
without include/uxtree/uxtree_c.h '^void uxtree_clear_all_value.*$' '' passes c_header
