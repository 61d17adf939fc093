#!/usr/bin/env python3
"""Runs a command and passes only if it succeeds without printing anything.

Usage: run_silently.py COMMAND [ARGUMENT...]
"""

import subprocess
import sys


def main() -> int:
    done = subprocess.run(sys.argv[1:], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    sys.stdout.write(done.stdout)
    return 1 if done.returncode != 0 or done.stdout.strip() else 0


if __name__ == "__main__":
    sys.exit(main())
