# The steps of scripts/test, one function each. Source it, do not run it.
#
# A new step is a function step_NAME and its name in one of the two lists. It says with `say` what
# it does, ends the script with `die` when something is wrong, and calls `could_not_try` when it
# lacks what it takes. The seconds behind a name are those of two cores without a compiler cache.
#
short_steps=(
    dev      # 590 s
    clang    # 270 s
    release  # 185 s
    wheel    # 75 s
)
long_steps=(
    removals     # 70 s
    libcxx       # 240 s
    lto          # 175 s
    tsan         # 60 s
    python_sanitized  # 110 s
    static       # 1080 s
    packages     # 255 s
    consumers    # 125 s
    abi          # 65 s
    docs         # 2 s
    huge         # 15 s, and a build if alone
    layout       # 10 s, likewise
    conformance  # 6 s, likewise, and once 10 MB from npm
    mutants      # 220 s
)

not_tried=()
could_not_try() {
    [ "${CI:-}" != true ] || die "could not be tried: $*"
    not_tried+=("$*")
    note "could not be tried: $*"
}

# Shows what failed and ctest's closing lines; the whole log stays beside the build.
run_tests() {
    local preset=$1 log=build/$1/ctest.log status=0 skipped
    ctest --preset "$preset" -j "$(nproc)" >"$log" 2>&1 </dev/null || status=$?
    grep -vE '^ +Start +[0-9]+: |^ *[0-9]+/[0-9]+ Test +#[0-9]+: .* Passed +[0-9.]+ sec$|^Test project ' \
        "$log" | cat -s || true
    [ "$status" = 0 ] || die "tests failed with preset $preset (whole log: $log)"
    grep -q '^100% tests passed' "$log" || die "no tests ran with preset $preset (whole log: $log)"
    skipped=$(sed -n 's/^[[:space:]]*[0-9]* - \(.*\) (\(Skipped\|Disabled\|Not Run\))$/\1/p' "$log")
    [ -z "$skipped" ] || could_not_try "$preset: $(tr '\n' ' ' <<<"$skipped")"
}

# test_preset PRESET [TARGET...]: builds and tests; without targets, what the build preset names.
test_preset() {
    local preset=$1
    shift
    say "Building: $preset"
    build "$preset" "$@"
    say "Testing: $preset"
    run_tests "$preset"
}

# gcc with sanitizers: everything.
step_dev() { test_preset dev all all_verify_interface_header_sets; }

# clang with sanitizers: the libraries and their tests.
step_clang() { test_preset clang all all_verify_interface_header_sets; }

# What is released, optimised: the libraries, the tool and the tests labelled for it.
step_release() { test_preset release; }

# clang with LLVM's standard library: the libraries, the tool, and the tests that need no library made
# for another one.
step_libcxx() {
    install_packages libc++-14-dev libc++abi-14-dev googletest
    test_preset libcxx
}

# What is released, as distributions build it: gcc at -O3 with link-time optimisation and
# _FORTIFY_SOURCE.
step_lto() { test_preset lto; }

# Two threads with documents of their own, under ThreadSanitizer.
step_tsan() { test_preset tsan; }

# clang-tidy and the formatter over the libraries and the tool, shellcheck over the scripts.
step_static() {
    say "Checking the format"
    install_packages clang-tidy-14 clang-format-14 shellcheck
    git ls-files '*.h' '*.cpp' | grep -vxF include/uxtree/uxtree_c.h |  # made by a tool
        xargs clang-format-14 --dry-run --Werror || die "format differs"
    say "Checking scripts"
    # Files that are sourced share variables and have no line that names the shell.
    shellcheck -x -s bash -e SC1090,SC1091,SC2034,SC2065,SC2154,SC2164 scripts/bench \
        scripts/coverage scripts/demo scripts/diff_sizes scripts/docs scripts/fuzz scripts/package scripts/test scripts/lib/*.sh \
        .ci/run || die "shellcheck found something"
    say "Checking with clang-tidy"
    build tidy
}

# What is made of the public headers misses what is taken away.
step_removals() {
    say "Taking annotations, sweep rows and made lines away"
    ./scripts/lib/try_removals.sh
}

# The Debian packages, as scripts/package makes and proves them.
step_packages() { ./scripts/package; }

# The site of the documentation, without dead links.
step_docs() { ./scripts/docs; }

# Static libraries, and the sources as a part of another project.
step_consumers() { ./scripts/lib/try_consumers.sh; }

# The wheel, made without a network and tried in a fresh environment.
step_wheel() {
    say "The wheel of the Python package"
    ./scripts/lib/try_wheel.sh || die "the wheel"
}

# The Python package under AddressSanitizer.
step_python_sanitized() {
    say "The Python package under AddressSanitizer"
    ./scripts/lib/try_python_sanitized.sh || die "the Python package under AddressSanitizer"
}

# The binary interface, against the released one.
step_abi() { ./scripts/lib/try_abi.sh; }

# Documents far larger and deeper than people write, within bounds of time and memory.
step_huge() {
    say "Building: release"
    build release
    say "Testing: huge inputs"
    tests/cli/huge_inputs.py build/release/tools/uxtree/uxtree
    say "Testing: huge documents loaded for editing"
    build release layout_huge
    build/release/tests/host/layout_huge || die "a huge document is not kept"
}

# Files of Debian packages keep what an edit is not about.
step_layout() { ./scripts/diff_sizes || die "a file is not kept"; }

# The documents of the W3C/OASIS conformance suite.
step_conformance() {
    local status=0
    say "Conformance suite"
    ./scripts/conformance || status=$?
    [ "$status" != 3 ] || die "the conformance suite could not be fetched"
    [ "$status" = 0 ] || die "conformance"
}

# Faults seeded into the strict reader, each of which its tests must catch.
step_mutants() {
    say "Faults in the strict reader"
    tools/dev/mutate_reader.py || die "a fault in the reader goes unnoticed"
}
