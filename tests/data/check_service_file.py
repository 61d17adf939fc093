#!/usr/bin/env python3
"""Checks the generated D-Bus session service file.

Usage: check_service_file.py SERVICE_FILE INSTALLED_BIN_FOLDER

The session bus ignores a broken service file without a word, so that the menu entry would simply
do nothing; hence every key is compared.
"""

import configparser
import pathlib
import sys

APP_ID = "app.snapvane.Snapvane"
SECTION = "D-BUS Service"


def problems_in(service_file: pathlib.Path, bin_folder: str) -> list[str]:
    """Everything that is wrong with the file, as sentences; empty when it is sound."""
    parser = configparser.ConfigParser(interpolation=None)
    parser.optionxform = str  # Keys are case sensitive.
    parser.read_string(service_file.read_text(encoding="utf-8"))

    problems = []
    if service_file.name != f"{APP_ID}.service":
        problems.append(f"the file is called {service_file.name}, not after the bus name")
    if parser.sections() != [SECTION]:
        return problems + [f"sections are {parser.sections()}, expected only [{SECTION}]"]

    expected = {"Name": APP_ID, "Exec": f"{bin_folder}/snapvane"}
    found = dict(parser[SECTION])
    if found != expected:
        problems.append(f"keys are {found}, expected {expected}")
    if not found.get("Exec", "").startswith("/"):
        problems.append("Exec is not an absolute path")
    return problems


def main() -> int:
    service_file, bin_folder = sys.argv[1:]
    problems = problems_in(pathlib.Path(service_file), bin_folder)
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
