"""Run the checks and their own tests: python3 scripts/lint [--junit FILE] [check ...]

Prints one line for each check with what it found, and can leave the results as JUnit XML.
"""

import argparse
import contextlib
import io
import os
import pathlib
import subprocess
import sys
import time
import traceback
import unittest
import xml.etree.ElementTree as ElementTree
from typing import NamedTuple

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
CHECKS = ["include_direction", "include_cycles", "function_length", "co_await_operand",
          "coroutine_lambda", "words", "format", "shell", "tidy"]


class Result(NamedTuple):
    name: str
    failed: bool
    seconds: float
    output: str


def _run_check(name):
    """Each check runs as a program of its own, as it would by hand."""
    start = time.monotonic()
    done = subprocess.run([sys.executable, str(HERE / f"{name}.py")], cwd=ROOT, check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return Result("lint." + name, done.returncode != 0, time.monotonic() - start, done.stdout)


class _Collector(unittest.TestResult):
    """Keeps every test's outcome; a skipped test counts as failed."""

    def __init__(self):
        super().__init__()
        self.results = []

    def startTest(self, test):
        super().startTest(test)
        self.began, self.trouble = time.monotonic(), []

    def stopTest(self, test):
        super().stopTest(test)
        self.results.append(Result("selftest." + test.id(), bool(self.trouble),
                                   time.monotonic() - self.began, "\n".join(self.trouble)))

    def _note(self, error):
        self.trouble.append("".join(traceback.format_exception(*error)))

    def addError(self, test, err):
        if hasattr(test, "_testMethodName"):
            self._note(err)
        else:  # a module or class that could not be set up has no test of its own
            self.results.append(Result(str(test), True, 0, str(err[1])))

    def addFailure(self, test, err):
        self._note(err)

    def addSubTest(self, test, subtest, err):
        if err:
            self._note(err)

    def addSkip(self, test, reason):
        self.trouble.append("skipped: " + reason)

    def addExpectedFailure(self, test, err):
        self.trouble.append("marked as an expected failure")

    def addUnexpectedSuccess(self, test):
        self.trouble.append("unexpected success")


def _run_selftests():
    suite = unittest.defaultTestLoader.discover(str(ROOT / "tests/lint"))
    collector = _Collector()
    with contextlib.redirect_stdout(io.StringIO()):
        suite.run(collector)
    if not collector.results:
        return [Result("selftest", True, 0, "no tests found below tests/lint")]
    return collector.results


def _write_junit(path, results):
    suite = ElementTree.Element("testsuite", name="lint", tests=str(len(results)))
    for result in results:
        case = ElementTree.SubElement(suite, "testcase", name=result.name, classname="lint",
                                      time=f"{result.seconds:.3f}",
                                      status="fail" if result.failed else "run")
        if result.failed:
            ElementTree.SubElement(case, "failure", message="failed").text = result.output
    path.parent.mkdir(parents=True, exist_ok=True)
    ElementTree.ElementTree(suite).write(path, encoding="utf-8", xml_declaration=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--junit", type=pathlib.Path)
    parser.add_argument("checks", nargs="*", help="default: all, and the checks' own tests")
    arguments = parser.parse_args()
    unknown = set(arguments.checks) - set(CHECKS)
    if unknown:
        parser.error("no such check: " + ", ".join(sorted(unknown)))
    results = [] if arguments.checks else _run_selftests()
    for result in results:
        if result.failed:
            print(f"FAILED {result.name}\n{result.output}")
    for name in arguments.checks or CHECKS:
        result = _run_check(name)
        results.append(result)
        print(f"{'FAILED' if result.failed else 'passed'} {name} ({result.seconds:.1f} s)")
        print(result.output, end="", flush=True)
    if arguments.junit:
        _write_junit(arguments.junit, results)
    return 1 if any(result.failed for result in results) else 0


if __name__ == "__main__":
    sys.path.insert(0, str(HERE))
    os.environ["PYTHONDONTWRITEBYTECODE"] = "1"
    sys.exit(main())
