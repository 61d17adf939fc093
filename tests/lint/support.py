"""Makes the checks importable and shortens their tests."""

import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
for folder in ("scripts", "scripts/lint"):
    if str(ROOT / folder) not in sys.path:
        sys.path.insert(0, str(ROOT / folder))


def places(findings):
    """(path, line) of each finding."""
    return [(finding.path, finding.line) for finding in findings]


def lines(findings):
    """The line of each finding."""
    return [finding.line for finding in findings]
