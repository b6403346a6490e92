#!/usr/bin/env python3
"""Checks that a host library has every symbol of the contract.

Usage: tools/dev/check_host_symbols.py EMBEDDED_HOST OTHER_HOST EMBEDDED_HEADER...

The contract is what the embedded host exports, without what the compiler may leave out (weak
symbols) and what the EMBEDDED_HEADERs declare.
"""

import pathlib
import re
import subprocess
import sys


def symbols(library):
    command = ["nm", "-D", "--defined-only", "--demangle", library]
    output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    rows = (line.split(" ", 2) for line in output.splitlines())
    return {symbol: kind for _, kind, symbol in rows}


def main():
    embedded, other, *headers = sys.argv[1:]
    own = set()
    for header in headers:
        own.update(re.findall(r"\b(UX\w+)(?:\(| \{)", pathlib.Path(header).read_text()))
    contract = [
        symbol
        for symbol, kind in symbols(embedded).items()
        if kind == "T" and re.split(r"\(|::", symbol)[0] not in own
    ]
    present = symbols(other)
    missing = sorted(symbol for symbol in contract if symbol not in present)
    print(f"host symbols: {len(contract) - len(missing)} of {len(contract)}")
    print("\n".join(missing))
    return 1 if missing or not contract else 0


if __name__ == "__main__":
    sys.exit(main())
