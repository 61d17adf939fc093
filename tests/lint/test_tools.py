"""The checks that hand over to other programs, and the summary of ./test."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest
from unittest import mock

import support
import format as format_check
import shell
import sources
import test_summary
import tidy


class Folder(unittest.TestCase):
    """A folder that stands in for the tree."""

    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.root)

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        return file


class Sources(Folder):
    def test_lists_what_git_would_commit(self):
        subprocess.run(["git", "init", "-q", str(self.root)], check=True)
        self.write(".gitignore", "/build/\n")
        for path in ("src/base/A.h", "src/a.txt", "tests/B.cpp", "build/C.cpp"):
            self.write(path, "x")
        self.assertEqual(list(sources.cpp_files(root=self.root)), ["src/base/A.h", "tests/B.cpp"])
        self.assertEqual(list(sources.cpp_files("tests", root=self.root)), ["tests/B.cpp"])

    def test_binary_files_have_no_text(self):
        self.write("a", "x\0y")
        self.assertIsNone(sources.read("a", self.root))


class Format(Folder):
    def outcome(self, text):
        self.write("src/a.cpp", text)
        subprocess.run(["git", "init", "-q", str(self.root)], check=True)
        shutil.copy(support.ROOT / ".clang-format", self.root)
        with mock.patch.object(sources, "ROOT", self.root), mock.patch("builtins.print"):
            return format_check.main()

    def test_good_and_bad(self):
        self.assertEqual(self.outcome("int a;\n"), 0)
        self.assertEqual(self.outcome("int   a;\n"), 1)


class Shell(Folder):
    def test_good_and_bad(self):
        subprocess.run(["git", "init", "-q", str(self.root)], check=True)
        with mock.patch.object(sources, "ROOT", self.root), mock.patch("builtins.print"):
            self.write("a", "#!/usr/bin/env bash\necho \"$1\"\n")
            self.assertEqual(shell.main(), 0)
            self.write("a", "#!/usr/bin/env bash\necho $1\n")
            self.assertEqual(shell.main(), 1)

    def test_scripts_are_known_by_their_first_line(self):
        self.write("a", "#!/usr/bin/env bash\n")
        self.write("b", "#!/bin/sh\n")
        self.write("c", "#!/usr/bin/env python3\n")
        self.write("d", "bash\n")
        self.assertEqual(shell.shell_scripts(["a", "b", "c", "d"], self.root), ["a", "b"])


class Tidy(Folder):
    def setUp(self):
        super().setUp()
        self.write(".clang-tidy", "Checks: '-*,modernize-use-nullptr'\nWarningsAsErrors: '*'\n")
        self.patch(sources, "ROOT", self.root)
        self.patch(tidy, "COMMANDS", self.root / "build/tidy")
        self.patch(tidy, "STAMPS", self.root / "stamps")
        self.patch(tidy, "DATABASE", self.root / "build/release/compile_commands.json")
        subprocess.run(["git", "init", "-q", str(self.root)], check=True)

    def patch(self, target, name, value):
        patcher = mock.patch.object(target, name, value)
        patcher.start()
        self.addCleanup(patcher.stop)

    def test_g_plus_plus_options_are_dropped(self):
        self.assertEqual(
            tidy.clang_arguments(["env", "CCACHE_X=1", "ccache", "g++", "-Winvalid-pch", "-Werror", "-include", "/b/cmake_pch.hxx",
                                  "-include", "other.h", "-fcoroutines", "-O2", "-c", "a.cpp"]),
            ["g++", "-include", "other.h", "-O2", "-c", "a.cpp"])

    def test_generated_files_are_left_out(self):
        entries = [{"directory": "/p/build", "file": "/p/src/base/A.cpp", "command": "g++ -c A.cpp"},
                   {"directory": "/p/build", "file": "/p/build/moc_A.cpp", "command": "g++"}]
        self.assertEqual(list(tidy.rewritten(entries, pathlib.Path("/p"))), ["src/base/A.cpp"])

    def test_fingerprint_depends_on_all_that_matters(self):
        files = {"src/base/A.cpp": '#include "base/A.h"\n', "src/base/A.h": '#include "base/B.h"\n',
                 "src/base/B.h": "int b;", "src/base/C.h": "int c;"}

        def fingerprint(changes=(), command="g++", common="14"):
            changed = {**files, **dict(changes)}
            graph = tidy.includes.graph_of(changed)
            return tidy.fingerprint("src/base/A.cpp", {"arguments": command}, changed, graph, common)

        same = fingerprint()
        self.assertEqual(same, fingerprint({"src/base/C.h": "int d;"}))
        for other in (fingerprint({"src/base/B.h": "int d;"}), fingerprint(command="g++ -DX"),
                      fingerprint({"src/base/A.cpp": '#include "base/A.h"\n\n'}),
                      fingerprint(common="15")):
            self.assertNotEqual(same, other)

    def test_fingerprint_is_the_same_in_another_clone(self):
        def fingerprint(root):
            with mock.patch.object(sources, "ROOT", pathlib.Path(root)):
                return tidy.fingerprint("src/base/A.cpp", {"arguments": f"g++ -I{root}/src"},
                                        {"src/base/A.cpp": ""}, {"src/base/A.cpp": []}, "16")

        self.assertEqual(fingerprint("/one"), fingerprint("/two/three"))

    def test_bad_file_fails_each_time_and_good_one_runs_once(self):
        source = self.write("src/base/A.cpp", "int* a = 0;\n")
        self.write("build/release/compile_commands.json",
                   '[{"directory": "%s", "file": "%s", "command": "g++ -c %s"}]'
                   % (self.root, source, source))
        with mock.patch("builtins.print") as printed:
            self.assertEqual([tidy.main(), tidy.main()], [1, 1])
            self.assertIn("nullptr", str(printed.call_args_list))
            source.write_text("int* a = nullptr;\n", encoding="utf-8")
            self.assertEqual(tidy.main(), 0)
            with mock.patch.object(tidy, "_run", side_effect=AssertionError("not cached")):
                self.assertEqual(tidy.main(), 0)

    def test_source_that_no_target_compiles(self):
        self.write("src/base/A.cpp", "int a;\n")
        self.write("build/release/compile_commands.json", "[]")
        with mock.patch("builtins.print"):
            self.assertEqual(tidy.main(), 1)


class Summary(Folder):
    REPORT = '<testsuite>%s</testsuite>'
    GOOD = '<testcase name="good" status="run"/>'

    def outcome(self, cases, status=0):
        return test_summary.read_report(self.write("r.xml", self.REPORT % cases), status)

    def test_counts(self):
        bad = '<testcase name="bad" status="fail"><failure message=""/></testcase>'
        self.assertEqual(self.outcome(self.GOOD * 3)[:2], (3, 0))
        self.assertEqual(self.outcome(self.GOOD + bad, 8)[:2], (1, 1))

    def test_what_did_not_run_failed_and_is_named(self):
        for case in ('<testcase name="lazy" status="notrun"><skipped message="why"/></testcase>',
                     '<testcase name="lazy" status="disabled"/>',
                     '<testcase name="lazy" status="run"><skipped message="why"/></testcase>'):
            outcome = self.outcome(self.GOOD + case)
            self.assertEqual(outcome[:2], (1, 1))
            self.assertIn("NOT RUN lazy", outcome.notes[0])

    def test_odd_reports_fail(self):
        self.assertEqual(test_summary.read_report(self.root / "gone.xml", 0)[:2], (0, 1))
        self.assertEqual(test_summary.read_report(self.write("x", "<broken"), 0)[:2], (0, 1))
        self.assertEqual(self.outcome("")[:2], (0, 1))
        self.assertEqual(self.outcome(self.GOOD, 1)[:2], (1, 1))

    def test_last_line_sums_up(self):
        report = self.write("r.xml", self.REPORT % (self.GOOD * 2))
        lines, good = test_summary.summarise("all", [
            "build release\t3\t0\t\t", f"tests release\t1\t0\t{report}\t"])
        self.assertTrue(good)
        self.assertEqual(lines[-1], "2 passed, 0 failed")
        lines, good = test_summary.summarise("all", [
            "build release\t3\t1\t\t", "tests release\t0\t1\t\tthe build failed"])
        self.assertFalse(good)
        self.assertEqual(lines[-1], "0 passed, 2 failed")
        self.assertTrue(any("NOT RUN all of it: the build failed" in line for line in lines))

    def test_nothing_at_all_is_no_success(self):
        self.assertFalse(test_summary.summarise("all", [])[1])


if __name__ == "__main__":
    unittest.main()
