#!/usr/bin/env bash
# The Python tests with the libraries and the module under AddressSanitizer. Python itself, numpy and
# pandas leave memory behind when they end: a leak counts where a frame of ours had a part in it. The
# tests on a cluster are left to the release leg; they start processes, and try nothing here that the
# others do not.
set -euo pipefail
. "$(dirname "$0")/common.sh"
use_ccache

build python uxtree_python uxtree_python_files
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
status=0
env LD_PRELOAD="$(g++ -print-file-name=libasan.so) $(g++ -print-file-name=libubsan.so) $(g++ -print-file-name=libstdc++.so)" \
    ASAN_OPTIONS="detect_leaks=1:log_path=$folder/report:exitcode=0:abort_on_error=0" \
    UBSAN_OPTIONS="log_path=$folder/report:print_stacktrace=1" \
    PYTHONMALLOC=malloc PYTHONPATH=build/python/bindings/python PYTHONDONTWRITEBYTECODE=1 \
    UXTREE_SOURCE="$PWD" /usr/bin/python3 -m pytest -q -p no:cacheprovider \
    -k 'not cluster and not examples and not page' bindings/python/tests >"$folder/log" 2>&1 || status=$?
tail -n 3 "$folder/log"
[ "$status" = 0 ] || { cat "$folder/log"; die "the Python tests fail under AddressSanitizer"; }
grep -q ' passed' "$folder/log" || die "no Python test ran"
# Paragraphs of the reports: an error anywhere, a leak with a frame of ours.
for report in "$folder"/report*; do
    [ -e "$report" ] || continue
    awk -v RS= '/ERROR: AddressSanitizer|runtime error:/ || (/ leak of / && /uxtree|_core/) {
        print; found = 1 } END { exit found }' "$report" || die "a report of a sanitizer names us"
done
