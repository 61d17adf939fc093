import unittest

import support
import words


class Words(unittest.TestCase):
    def faults(self, path, text):
        return support.lines(words.check({path: text}))

    def test_foreign_references(self):
        for text in ("as Part" + " 3.2 has it", "(Part" + "s 1.1 and 2)", "the spec " + "says so",
                     "The specification " + "requires it", "the spec " + "asks"):
            self.assertEqual(self.faults("docs/a.md", "fine\n" + text), [2], text)

    def test_what_only_looks_like_them(self):
        for text in ("Counterpart" + " 3.2", "Part three", "the specification of PNG", "part" + " 1.1"):
            self.assertEqual(self.faults("docs/a.md", text), [], text)

    def test_paths_of_one_machine(self):
        for text in ("cd /wo" + "rk/main", 'QDir("/ro' + 'ot/x")', "see /tmp/bash_" + "jobs.0"):
            self.assertEqual(self.faults("run", text), [1], text)
        for text in ("$HOME/wo" + "rk/", "https://host.example/wo" + "rk/", "net" + "/ro" + "ot/x",
                     "/tmp/x"):
            self.assertEqual(self.faults("run", text), [], text)

    def test_loose_ends_in_code_only(self):
        for word in ("TO" + "DO", "FIX" + "ME", "X" + "XX"):
            self.assertEqual(self.faults("src/base/A.cpp", f"// {word}: later"), [1])
            self.assertEqual(self.faults("tests/a.cpp", f"// {word}"), [1])
            self.assertEqual(self.faults("docs/a.md", word), [])
        self.assertEqual(self.faults("src/base/A.cpp", "snapvane." + "X" * 6), [])

    def test_skips_in_tests(self):
        for word in ("GTEST_" + "SKIP()", "Q" + "SKIP(\"x\")"):
            self.assertEqual(self.faults("tests/a.cpp", word), [1])
            self.assertEqual(self.faults("docs/a.md", word), [])


if __name__ == "__main__":
    unittest.main()
