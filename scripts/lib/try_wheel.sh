#!/usr/bin/env bash
# Makes the wheel without a network, installs it into a fresh virtual environment and runs the pages
# of the documentation with it.
set -euo pipefail
. "$(dirname "$0")/common.sh"
use_ccache

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
quietly /usr/bin/python3 -m pip wheel --no-build-isolation --no-index -w "$folder" .
wheels=("$folder"/uxtree-*.whl)
[ ${#wheels[@]} = 1 ] || die "there is not one wheel: ${wheels[*]}"

/usr/bin/python3 -m venv --system-site-packages "$folder/env"
quietly "$folder/env/bin/pip" install --no-index "${wheels[0]}"
package=$("$folder/env/bin/python" -c 'import os, uxtree; print(os.path.dirname(uxtree.__file__))')
case $package in
"$folder"/env/*) ;;
*) die "uxtree comes from $package" ;;
esac

# Its libraries are those inside, wherever it is put.
for file in "$package"/_core*.so "$package"/lib/*.so*; do
    while read -r name _ path _; do
        case $name in
        libuxtree*|libexpat*)
            case $path in
            "$package"/*) ;;
            *) die "$file takes $name from $path" ;;
            esac ;;
        esac
    done < <(ldd "$file")
    # shellcheck disable=SC2016  # it is the linker's
    ! readelf -d "$file" | grep -E 'R(UN)?PATH' | grep -v '\[\$ORIGIN' ||
        die "$file looks for libraries at a place of this machine"
done
UXTREE_SOURCE=$PWD PYTHONDONTWRITEBYTECODE=1 quietly "$folder/env/bin/python" -m pytest -q \
    -p no:cacheprovider bindings/python/tests/test_pages.py || die "the pages fail with the wheel"
note "$(basename "${wheels[0]}"), $(stat -c %s "${wheels[0]}") bytes"
