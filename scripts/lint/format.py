"""Every C++ file is as clang-format writes it. `scripts/format` mends what this finds."""

import subprocess
import sys

import sources


def main():
    files = list(sources.cpp_files())
    if not files:
        return 0
    command = ["clang-format", "--dry-run", "-Werror", "--style=file", *files]
    done = subprocess.run(command, cwd=sources.ROOT, check=False, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if done.returncode == 0:
        return 0
    print("\n".join(line for line in done.stdout.splitlines() if "error:" in line))
    return 1


if __name__ == "__main__":
    sys.exit(main())
