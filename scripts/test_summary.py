"""Sum up the stages of ./test: python3 scripts/test_summary.py WHAT STAGES.TSV

Each line of the file is: name, seconds, exit status, JUnit report, reason for not having run.
Whatever did not run counts as failed. The last line printed is "N passed, N failed".
"""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree
from typing import NamedTuple

LEFT_OUT = {
    "unit": "the system tests, the sanitizer build and the lint checks",
    "system": "the unit tests, the sanitizer build and the lint checks",
    "sanitize": "the release build's tests and the lint checks",
    "lint": "all tests",
}
SEPARATE = "the thread sanitizer (ctest --preset tsan), coverage and the measurements in bench/"


class Outcome(NamedTuple):
    """What one stage came to; `notes` name what failed or did not run, and why."""

    passed: int
    failed: int
    notes: list


def _case_note(case):
    """None for a test that ran and passed, else what became of it."""
    name = case.get("name", "?")
    skipped = case.find("skipped")
    status = case.get("status", "run")
    if skipped is not None or status in ("notrun", "disabled"):
        reason = (skipped.get("message") if skipped is not None else "") or status
        return f"NOT RUN {name}: {reason}"
    if status != "run" or case.find("failure") is not None or case.find("error") is not None:
        return f"FAILED  {name}"
    return None


def read_report(path, status):
    """The outcome that a JUnit file holds; a missing, broken or empty one is a failure."""
    try:
        cases = list(ElementTree.parse(path).getroot().iter("testcase"))
    except (OSError, ElementTree.ParseError) as error:
        return Outcome(0, 1, [f"FAILED  no report was left (exit status {status}): {error}"])
    notes = [note for case in cases if (note := _case_note(case))]
    passed, failed = len(cases) - len(notes), len(notes)
    if not cases:
        return Outcome(0, 1, ["FAILED  there are no tests"])
    if status != 0 and not failed:
        return Outcome(passed, 1, [f"FAILED  exit status {status}, though every test passed"])
    return Outcome(passed, failed, notes)


def outcome_of(status, report, reason):
    """The outcome of one stage; a build passes no test, and fails as one."""
    if reason:
        return Outcome(0, 1, [f"NOT RUN all of it: {reason}"])
    if not report:
        return Outcome(0, 1, ["FAILED  see above"]) if status else Outcome(0, 0, [])
    return read_report(report, status)


def summarise(what, lines):
    """The summary's lines, and whether all is well."""
    out, passed, failed = ["", "== Summary"], 0, 0
    for line in lines:
        name, seconds, status, report, reason = line.split("\t")
        outcome = outcome_of(int(status), report, reason)
        passed += outcome.passed
        failed += outcome.failed
        counts = f"{outcome.passed} passed, {outcome.failed} failed" if report or outcome.failed else "ok"
        out.append(f"{name:<20} {int(seconds):>5} s  {counts}")
        out += ["    " + note for note in outcome.notes]
    if what in LEFT_OUT:
        out.append(f"Not run, since only '{what}' was asked for: {LEFT_OUT[what]}.")
    out.append(f"Not part of this command: {SEPARATE}.")
    if passed == 0 and failed == 0:
        failed = 1
    out.append(f"{passed} passed, {failed} failed")
    return out, failed == 0


def main():
    what, stages = sys.argv[1:3]
    lines, good = summarise(what, pathlib.Path(stages).read_text(encoding="utf-8").splitlines())
    print("\n".join(lines))
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
