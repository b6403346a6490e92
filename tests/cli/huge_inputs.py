#!/usr/bin/env python3
"""Runs the command-line tool on documents far larger and deeper than people write.

    tests/cli/huge_inputs.py build/release/tools/uxtree/uxtree

Each row is a document, what is asked of it, and the bounds: seconds, and MiB of address space that
the tool may use. A sanitizer reserves more than that, so this takes a build without one.
"""
import pathlib
import resource
import subprocess
import sys
import tempfile
import time


def deep(levels):
    return "<a>" * levels + "</a>" * levels


def wide(count):
    return "<r>" + "".join(f'<n{i % 100} DataID="{i}">{i}</n{i % 100}>' for i in range(count)) + "</r>"


def attributes(count):
    return "<r " + " ".join(f'a{i}="{i}"' for i in range(count)) + "/>"


def spectra(count, channels):
    text = " ".join(str(10_000 + i % 90_000) for i in range(channels))
    spectrum = f"<Spectrum><ChannelData>{text}</ChannelData></Spectrum>"
    return ("<RadInstrumentData><RadMeasurement><MeasurementClassCode>Foreground"
            f"</MeasurementClassCode>{spectrum * count}</RadMeasurement></RadInstrumentData>")


# name, document, arguments ("@" is the file), exit code, bytes of output at least, seconds, MiB
ROWS = [
    ("outline of a million levels", lambda: deep(1_000_000), ["outline", "@", "-o", "/dev/null"],
     0, 0, 20, 1500),
    ("a million levels are refused", lambda: deep(1_000_000), ["show", "@"], 3, 0, 10, 500),
    ("a million siblings", lambda: wide(1_000_000), ["show", "@", "-o", "/dev/null"],
     0, 0, 20, 1500),
    ("200,000 attributes of one element", lambda: attributes(200_000),
     ["show", "-a", "@", "-o", "/dev/null"], 0, 0, 10, 1000),
    ("200,000 attributes stripped", lambda: attributes(200_000),
     ["edit", "-o", "/dev/null", "@", "strip"], 0, 0, 10, 1000),
    ("100 MB of text in one element", lambda: "<r>" + "word " * 20_000_000 + "</r>",
     ["show", "@", "-o", "/dev/null"], 0, 0, 20, 1500),
    ("60 MB of spectra as columns", lambda: spectra(1250, 8192),
     ["n42", "export", "@", "-o", "/dev/null"], 0, 0, 20, 100),
    ("60 MB of spectra as objects", lambda: spectra(1250, 8192),
     ["n42", "export", "-f", "json", "@", "-o", "/dev/null"], 0, 0, 20, 60),
]


def main():
    tool, failed = sys.argv[1], 0
    for name, document, arguments, code, size, seconds, mebibytes in ROWS:
        with tempfile.TemporaryDirectory(prefix="uxtree-huge-") as folder:
            file = pathlib.Path(folder) / "t.xml"
            file.write_text(document())
            bound = mebibytes << 20
            started = time.monotonic()
            try:
                done = subprocess.run(
                    [tool, *(str(file) if a == "@" else a for a in arguments)],
                    capture_output=True, timeout=seconds, check=False,
                    preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (bound, bound)))
            except subprocess.TimeoutExpired:
                print(f"FAILED {name}: more than {seconds} s")
                failed += 1
                continue
            took = time.monotonic() - started
            wrong = done.returncode != code or len(done.stdout) < size
            print(f"{'FAILED' if wrong else 'ok'} {name}: {took:.1f} s")
            if wrong:
                failed += 1
                print(f"exit code {done.returncode}, {len(done.stdout)} bytes: "
                      f"{done.stderr.decode(errors='replace')[:300]}")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
