#!/usr/bin/env bash
# Compares the binary interface of the libraries with the one that was released under the same name:
# abi/VERSION/libuxtree_*.abi.xz, made by abidw. Without such a folder the dumps are made and looked at:
# each must hold all that its library exports. They then stand in build/abi/dumps, to be committed
# with the release, compressed by xz.
set -euo pipefail
. "$(dirname "$0")/common.sh"

install_packages "${build_packages[@]}" abigail-tools xz-utils
use_ccache
build=$PWD/build/abi
quietly cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g" \
    -DUXTREE_BUILD_TESTS=OFF -DUXTREE_BUILD_TOOL=OFF -DUXTREE_BUILD_SCRIPT=OFF
quietly cmake --build "$build" -j "$(nproc)" --target uxtree_host uxtree_Utils uxtree_kit
mkdir -p "$build/dumps"

for name in host Utils kit; do
    library=$build/src/libuxtree_$name.so
    dump=$build/dumps/libuxtree_$name.abi
    abi=$(objdump -p "$library" | sed -n 's/.*SONAME.*\.so\.//p')
    abidw --headers-dir include --drop-private-types --no-corpus-path --no-comp-dir-path \
        --out-file "$dump" "$library"
    exported=$(nm -D --defined-only "$library" | awk '$2 ~ /[TW]/ { print $3 }' | sort)
    dumped=$(sed -n "s/.*<elf-symbol name='\([^']*\)'.*type='func-type'.*/\1/p;
        s/.*<elf-symbol name='[^']*'.* alias='\([^']*\)'.*/\1/p" "$dump" | tr ',' '\n' | sort -u)
    lacking=$(comm -23 <(printf '%s\n' "$exported") <(printf '%s\n' "$dumped"))
    [ -z "$lacking" ] || die "the dump of $name lacks $(head -3 <<<"$lacking" | tr '\n' ' ')"
    released=$build/released_$name.abi
    if [ -e "abi/$abi/libuxtree_$name.abi.xz" ]; then
        xz -d -c "abi/$abi/libuxtree_$name.abi.xz" >"$released"
        abidiff --no-added-syms "$released" "$dump" || die "libuxtree_$name.so.$abi broke its interface"
        note "$name: as released with $abi"
    else
        note "$name: $(wc -l <<<"$exported") functions, no dump of $abi is committed yet"
    fi
done
