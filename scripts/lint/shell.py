"""Every shell script passes shellcheck."""

import subprocess
import sys

import sources


def shell_scripts(names, root):
    """Those of the named files whose first line calls a shell."""
    found = []
    for name in names:
        with open(root / name, "rb") as file:
            first = file.readline()
        if first.startswith(b"#!") and first.rstrip().endswith((b"/bash", b" bash", b"/sh", b" sh")):
            found.append(name)
    return found


def main():
    scripts = shell_scripts(sources.project_files(), sources.ROOT)
    if not scripts:
        return 0
    command = ["shellcheck", "--external-sources", "--format=gcc", *scripts]
    done = subprocess.run(command, cwd=sources.ROOT, check=False, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    print(done.stdout, end="")
    return 1 if done.returncode else 0


if __name__ == "__main__":
    sys.exit(main())
