#!/usr/bin/env python3
"""Checks that the build takes the good addresses of the upload service and stops at the bad ones.

Usage: check_base_urls.py CMAKE MODULE TABLE
"""

import pathlib
import subprocess
import sys


def is_taken(cmake: str, module: str, address: str) -> bool:
    result = subprocess.run([cmake, f"-DSNAPVANE_FERRYBOX_URL={address}", "-P", module],
                            capture_output=True, text=True, check=False)
    refused = "SNAPVANE_FERRYBOX_URL is" in result.stderr
    if (result.returncode != 0) != refused:
        sys.exit(f"{address!r}: {result.stderr}")
    return not refused


def main() -> int:
    cmake, module, table = sys.argv[1:]
    faults = 0
    rows = [line.partition(" ") for line in pathlib.Path(table).read_text("utf-8").splitlines()]
    for kind, _, address in rows:
        if is_taken(cmake, module, address) != (kind == "good"):
            print(f"{address!r} is {kind}, and the build thinks otherwise")
            faults += 1
    return 1 if faults or not rows else 0


if __name__ == "__main__":
    sys.exit(main())
