#!/usr/bin/env python3
"""Installs the build into a temporary folder and checks what arrived there.

Usage: check_installed_tree.py --cmake CMAKE --build BUILD --config CONFIG
                               --bindir BIN --datadir SHARE

BIN and SHARE are relative to the installation prefix. The build must be complete.
"""

import argparse
import os
import pathlib
import struct
import subprocess
import sys
import tempfile

APP_ID = "app.snapvane.Snapvane"
PREFIX = "/usr"
PNG_SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
PNG_START = b"\x89PNG\r\n\x1a\n\x00\x00\x00\rIHDR"
SHARED_FILES = (
    f"applications/{APP_ID}.desktop",
    f"dbus-1/services/{APP_ID}.service",
    f"metainfo/{APP_ID}.metainfo.xml",
    f"icons/hicolor/scalable/apps/{APP_ID}.svg",
    f"icons/hicolor/symbolic/apps/{APP_ID}-symbolic.svg",
)


def parse_arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser()
    for name in ("cmake", "build", "config", "bindir", "datadir"):
        parser.add_argument(f"--{name}", required=True)
    return parser.parse_args()


def install(arguments: argparse.Namespace, root: str) -> subprocess.CompletedProcess:
    """Installs below root, as a package build would."""
    command = [arguments.cmake, "--install", arguments.build, "--prefix", PREFIX]
    if arguments.config:
        command += ["--config", arguments.config]
    return subprocess.run(
        command,
        env=os.environ | {"DESTDIR": root},
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
    )


def png_size(path: pathlib.Path) -> tuple[int, int] | None:
    """Width and height in pixels from the header; None if this is no PNG."""
    with path.open("rb") as file:
        header = file.read(len(PNG_START) + 8)
    if len(header) < len(PNG_START) + 8 or not header.startswith(PNG_START):
        return None
    return struct.unpack(">II", header[len(PNG_START) :])


def problems_in_program(program: pathlib.Path) -> list[str]:
    if not program.is_file():
        return [f"{program} is missing"]
    return [] if os.access(program, os.X_OK) else [f"{program} cannot be run"]


def problems_in_shared_files(shared: pathlib.Path) -> list[str]:
    problems = []
    for name in SHARED_FILES:
        path = shared / name
        if not path.is_file() or path.stat().st_size == 0:
            problems.append(f"{path} is missing or empty")
    return problems


def problems_in_rendered_icons(shared: pathlib.Path) -> list[str]:
    problems = []
    for size in PNG_SIZES:
        path = shared / f"icons/hicolor/{size}x{size}/apps/{APP_ID}.png"
        if not path.is_file():
            problems.append(f"{path} is missing")
        elif png_size(path) != (size, size):
            problems.append(f"{path} measures {png_size(path)}")
    return problems


def main() -> int:
    arguments = parse_arguments()
    with tempfile.TemporaryDirectory(prefix="snapvane-install-") as root:
        done = install(arguments, root)
        if done.returncode != 0:
            print(done.stdout)
            return 1
        prefix = pathlib.Path(root + PREFIX)
        problems = problems_in_program(prefix / arguments.bindir / "snapvane")
        problems += problems_in_shared_files(prefix / arguments.datadir)
        problems += problems_in_rendered_icons(prefix / arguments.datadir)
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
