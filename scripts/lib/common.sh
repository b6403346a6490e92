# Shared by the scripts: messages, Debian packages, quiet builds. Source it, do not run it.

cd "$(dirname "${BASH_SOURCE[0]}")/../.."

say() { printf '\n== %s\n' "$*"; }
note() { printf '%s\n' "$*"; }
die() { printf 'error: %s\n' "$*" >&2; exit 1; }

# What building and testing takes; document_packages hold the real documents that both read.
build_packages=(g++ cmake ninja-build python3 libexpat1-dev libcli11-dev libfmt-dev nlohmann-json3-dev
    angelscript-dev libedit-dev)
# netbase: chromedriver asks for localhost, a name that the barest systems lack.
test_packages=(clang libclang-rt-14-dev pkg-config libgtest-dev libgmock-dev librapidcheck-dev
    libxml2-dev locales mandoc zsh python3-pexpect chromium chromium-driver python3-selenium netbase
    valgrind)
python_packages=(python3-dev python3-numpy python3-pytest python3-pip python3-venv
    python3-setuptools python3-wheel python3-pandas python3-dask python3-distributed pybind11-dev)
package_packages=(debhelper dh-python dpkg-dev file lintian pkg-config pybind11-dev python3-dev python3-numpy)
document_packages=(shared-mime-info iso-codes unicode-cldr-core)

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Runs a command quietly; its output appears only when it fails.
quietly() {
    local log
    log=$(mktemp)
    if "$@" >"$log" 2>&1 </dev/null; then
        rm -f "$log"
        return 0
    fi
    cat "$log" >&2
    rm -f "$log"
    return 1
}

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif [ -t 0 ]; then
        sudo "$@"
    else
        sudo -n "$@"
    fi
}

apt_install() {
    quietly as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q \
        --no-install-recommends "$@"
}

# Installs those of the given Debian packages that are missing. Nothing is asked of the network
# when all are there.
install_packages() {
    if ! command -v dpkg-query >/dev/null; then
        note "not a Debian system: assuming that these are installed: $*"
        return
    fi
    local missing=() package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    say "Installing ${missing[*]}"
    [ "$(id -u)" = 0 ] || command -v sudo >/dev/null ||
        die "neither root nor sudo; run as root: apt-get install ${missing[*]}"
    if [ -t 0 ] && [ "$(id -u)" != 0 ]; then
        sudo -v || die "sudo was refused; run as root: apt-get install ${missing[*]}"
    fi
    quietly as_root apt-get update -q || note "apt-get update failed; trying the lists at hand"
    apt_install "${missing[@]}" || die "could not install ${missing[*]}"
}

# A compiler cache is used when there is one; nothing needs it.
use_ccache() {
    command -v ccache >/dev/null || return 0
    export CMAKE_C_COMPILER_LAUNCHER=${CMAKE_C_COMPILER_LAUNCHER:-ccache}
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER:-ccache}
}

# build PRESET [TARGET...]: configures and builds; progress shows on a terminal only.
build() {
    local preset=$1
    shift
    local quiet=()
    [ -t 1 ] || quiet=(-- --quiet)
    quietly cmake --preset "$preset"
    cmake --build --preset "$preset" -j "$(nproc)" ${1:+--target "$@"} ${quiet[0]+"${quiet[@]}"}
}

# Builds the libraries and the tool with optimisation, without tests and what they need.
build_tool_only() {
    quietly cmake -S . -B build/demo -G Ninja -DCMAKE_BUILD_TYPE=Release -DUXTREE_BUILD_TESTS=OFF
    local quiet=()
    [ -t 1 ] || quiet=(-- --quiet)
    cmake --build build/demo -j "$(nproc)" ${quiet[0]+"${quiet[@]}"}
}
