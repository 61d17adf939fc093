"""The files that the checks look at, and how a finding is written."""

import pathlib
import subprocess
from typing import NamedTuple

ROOT = pathlib.Path(__file__).resolve().parents[2]
CPP_SUFFIXES = {".h", ".cpp"}


class Finding(NamedTuple):
    """One broken rule at one place; `path` is relative to the top folder."""

    path: str
    line: int
    text: str

    def __str__(self):
        return f"{self.path}:{self.line}: {self.text}"


def project_files(root=None):
    """Relative paths of all files that are, or could be, committed."""
    root = root or ROOT
    command = ["git", "-c", "safe.directory=*", "-C", str(root), "ls-files", "-z",
               "--cached", "--others", "--exclude-standard"]
    listed = subprocess.run(command, check=True, capture_output=True).stdout.decode()
    return sorted(name for name in set(listed.split("\0")) if name and (root / name).is_file())


def read(path, root=None):
    """The text of a file, or None for one that is not text."""
    data = ((root or ROOT) / path).read_bytes()
    if b"\0" in data:
        return None
    return data.decode("utf-8", errors="replace")


def cpp_files(*folders, root=None):
    """Relative path to text of the C++ files in some top-level folders (all when none is named)."""
    return {
        path: read(path, root) or ""
        for path in project_files(root)
        if pathlib.PurePosixPath(path).suffix in CPP_SUFFIXES
        and (not folders or path.split("/")[0] in folders)
    }


def report(findings):
    """Print the findings; the exit status of a check."""
    for finding in findings:
        print(finding)
    return 1 if findings else 0
