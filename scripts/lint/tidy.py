"""clang-tidy over every compiled file of src/, tests/ and bench/; unchanged files cost nothing.

A file that passed leaves a stamp in the user's cache folder, as compilations do in ccache's, so that
another clone need not look again. It is named after a hash of all that the verdict depends on: the
file's text and command, our headers that it includes, .clang-tidy and the tool's version.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import time

import includes
import sources

TOOL = "clang-tidy-16"
JOBS = 2
DATABASE = sources.ROOT / "build/release/compile_commands.json"
COMMANDS = sources.ROOT / "build/tidy"
STAMPS = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache",
                      "snapvane-tidy")
STAMP_LIFETIME_SECONDS = 60 * 24 * 3600
FOLDERS = ("src", "tests", "bench")
# What stands before the compiler; the variables that env sets for ccache are dropped with it.
LAUNCHERS = ("env", "ccache")
# What g++ understands and clang does not; and warnings, which are the compiler's business.
_FOREIGN_OPTIONS = re.compile(r"-W[^l].*|-fcoroutines|-fconcepts.*|-fpch-preprocess|-fanalyzer"
                              r"|-fno-semantic-interposition|-mno-direct-extern-access")


def clang_arguments(arguments):
    """A g++ command without the launcher, the precompiled header and g++'s own options."""
    out, waiting = [], list(arguments)
    while waiting and ("=" in waiting[0] or pathlib.PurePath(waiting[0]).name in LAUNCHERS):
        waiting.pop(0)
    while waiting:
        argument = waiting.pop(0)
        if argument == "-include" and waiting and "cmake_pch" in waiting[0]:
            waiting.pop(0)
        elif not _FOREIGN_OPTIONS.fullmatch(argument):
            out.append(argument)
    return out


def rewritten(entries, root):
    """The compile commands of our own source files, for clang; generated files are left out."""
    out = {}
    for entry in entries:
        file = pathlib.Path(entry["directory"], entry["file"])
        if not file.is_relative_to(root):
            continue
        path = str(file.relative_to(root))
        if path.split("/")[0] in FOLDERS and file.suffix == ".cpp":
            arguments = entry.get("arguments") or shlex.split(entry["command"])
            out[path] = {"directory": entry["directory"], "file": str(file),
                         "arguments": clang_arguments(arguments)}
    return out


def _digest(*parts):
    hashed = hashlib.sha256()
    for part in parts:
        hashed.update(part.encode() + b"\0")
    return hashed.hexdigest()


def fingerprint(path, entry, files, graph, common):
    """The hash of all that the verdict about one file depends on."""
    headers = sorted(includes.reachable(path, graph))
    texts = [part for name in headers for part in (name, files[name])]
    # The clone's own place means nothing.
    command = json.dumps(entry).replace(str(sources.ROOT), "")
    return _digest(common, path, files[path], command, *texts)


def _settings(path, common):
    """What decides about all files, and the folder's own settings where it has some."""
    own = f"{path.split('/')[0]}/.clang-tidy"
    return _digest(common, sources.read(own)) if (sources.ROOT / own).exists() else common


def _run(path):
    command = [TOOL, "--quiet", "-p", str(COMMANDS), str(sources.ROOT / path)]
    return subprocess.run(command, cwd=sources.ROOT, check=False, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def _prepare():
    """The commands by path, each file's stamp, and a database that clang-tidy can read."""
    commands = rewritten(json.loads(DATABASE.read_text()), sources.ROOT)
    COMMANDS.mkdir(parents=True, exist_ok=True)
    STAMPS.mkdir(parents=True, exist_ok=True)
    (COMMANDS / "compile_commands.json").write_text(json.dumps(list(commands.values()), indent=1))
    version = subprocess.run([TOOL, "--version"], check=True, capture_output=True, text=True)
    common = _digest(version.stdout, sources.read(".clang-tidy") or "")
    files = sources.cpp_files(*FOLDERS)
    graph = includes.graph_of(files)
    return {path: STAMPS / f"{fingerprint(path, entry, files, graph, _settings(path, common))}.ok"
            for path, entry in commands.items() if path in files}


def _drop_old():
    for stamp in STAMPS.glob("*.ok"):
        if time.time() - stamp.stat().st_mtime > STAMP_LIFETIME_SECONDS:
            stamp.unlink(missing_ok=True)


def main():
    if not DATABASE.exists():
        print(f"{DATABASE.relative_to(sources.ROOT)} is missing: configure the release preset first")
        return 1
    stamps = _prepare()
    missing = sorted(path for path in sources.cpp_files("src")
                     if path.endswith(".cpp") and path not in stamps)
    for path in missing:
        print(f"{path}:1: is compiled by no target, so nothing checks it")
    _drop_old()
    failed = bool(missing)
    waiting = [path for path, stamp in sorted(stamps.items()) if not stamp.exists()]
    with concurrent.futures.ThreadPoolExecutor(JOBS) as pool:
        for path, result in zip(waiting, pool.map(_run, waiting)):
            if result.returncode == 0:
                stamps[path].touch()
            else:
                failed = True
                print(f"clang-tidy {path}\n{result.stdout}", flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
