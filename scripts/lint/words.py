"""Words and paths that have no place in the tree: foreign references, this machine, loose ends."""

import re
import sys

import sources

# The patterns are put together from pieces so that they do not find themselves.
_EVERYWHERE = [
    (re.compile("(?:^|[^A-Za-z])" + "Part" + r"s? [0-9]\.[0-9]"),
     "refers to a document that readers do not have"),
    (re.compile("the (?:spec|specification) " + "(?:says|requires|asks)", re.IGNORECASE),
     "say how the program behaves and why, not who asked for it"),
    (re.compile(r"(?<![\w.$}~])/(?:wo" + "rk/|ro" + "ot/|tmp/bash_" + "jobs)"),
     "an absolute path of one machine"),
]
_LOOSE_ENDS = (re.compile(r"\b(?:TO" + "DO|FIX" + "ME|X" + r"XX)\b"),
               "a loose end; finish it or leave it out")
_SKIPS = (re.compile(r"\b(?:GTEST_" + "SKIP|Q" + r"SKIP)\b"), "a test must not skip itself")


def _rules(path):
    folder = path.split("/")[0]
    rules = list(_EVERYWHERE)
    if folder in ("src", "tests"):
        rules.append(_LOOSE_ENDS)
    if folder == "tests":
        rules.append(_SKIPS)
    return rules


def check(files):
    """Findings for a mapping of path to text."""
    return [
        sources.Finding(path, number, f"'{match.group().strip()}': {why}")
        for path, text in files.items()
        for number, line in enumerate(text.split("\n"), 1)
        for pattern, why in _rules(path)
        if (match := pattern.search(line))
    ]


def main():
    texts = {path: sources.read(path) for path in sources.project_files()}
    return sources.report(check({path: text for path, text in texts.items() if text is not None}))


if __name__ == "__main__":
    sys.exit(main())
