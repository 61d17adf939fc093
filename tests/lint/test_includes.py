import unittest

import support
import include_cycles
import include_direction
import includes


class Direction(unittest.TestCase):
    def faults(self, files, known=None):
        everything = dict(files)
        for path in known or []:
            everything.setdefault(path, "")
        return support.places(include_direction.check(files, everything))

    def test_down_and_sideways_within_a_folder(self):
        self.assertEqual(self.faults(
            {"src/capture/A.cpp": '#include "capture/A.h"\n#include "base/B.h"\n#include <vector>\n'},
            ["src/capture/A.h", "src/base/B.h"]), [])

    def test_up(self):
        self.assertEqual(self.faults(
            {"src/base/A.cpp": '#include <QString>\n#include "app/B.h"\n'}, ["src/app/B.h"]),
            [("src/base/A.cpp", 2)])

    def test_every_layer_above_is_refused_and_every_one_below_allowed(self):
        rows = include_direction.LAYERS
        for upper_depth, upper_row in enumerate(rows):
            for lower_row in rows[upper_depth + 1:]:
                for upper in upper_row:
                    for lower in lower_row:
                        up = {f"src/{lower}/A.h": f'#include "{upper}/B.h"\n'}
                        down = {f"src/{upper}/B.h": f'#include "{lower}/A.h"\n'}
                        self.assertEqual(len(self.faults(up, [f"src/{upper}/B.h"])), 1)
                        self.assertEqual(self.faults(down, [f"src/{lower}/A.h"]), [])

    def test_across_a_row(self):
        for row in include_direction.LAYERS:
            for one in row:
                for other in row - {one}:
                    files = {f"src/{one}/A.h": f'#include "{other}/B.h"\n'}
                    self.assertEqual(len(self.faults(files, [f"src/{other}/B.h"])), 1)

    def test_shortcuts_know_only_platform_and_base(self):
        for target, count in (("base", 0), ("platform", 0), ("hud", 1), ("capture", 1), ("app", 1)):
            files = {"src/KeyboardShortcuts/A.h": f'#include "{target}/B.h"\n'}
            self.assertEqual(len(self.faults(files, [f"src/{target}/B.h"])), count, target)

    def test_uploading_stands_above_what_is_done_with_captures(self):
        for source, target, count in (("upload", "actions", 0), ("actions", "upload", 1),
                                      ("app", "upload", 0), ("selection", "upload", 0)):
            files = {f"src/{source}/A.h": f'#include "{target}/B.h"\n'}
            self.assertEqual(len(self.faults(files, [f"src/{target}/B.h"])), count, source)

    def test_backends_are_known_to_the_loader_alone(self):
        known = ["src/platform/x11/X.h", "src/platform/wayland/W.h", "src/platform/Screens.h"]
        x11 = '#include "platform/x11/X.h"\n'
        self.assertEqual(self.faults({"src/platform/PlatformLoader.cpp": x11}, known), [])
        self.assertEqual(self.faults({"src/platform/x11/A.cpp": x11 + '#include "platform/Screens.h"\n'},
                                     known), [])
        for path in ("src/app/main.cpp", "src/platform/Screens.cpp", "src/platform/wayland/W.cpp",
                     "src/platform/null/N.cpp"):
            self.assertEqual(self.faults({path: x11}, known), [(path, 1)])

    def test_unresolved(self):
        self.assertEqual(self.faults({"src/base/A.cpp": '#include "base/Gone.h"\n'}),
                         [("src/base/A.cpp", 1)])
        self.assertEqual(self.faults({"src/base/A.cpp": '#include "B.h"\n'}, ["src/base/B.h"]),
                         [("src/base/A.cpp", 1)])
        self.assertEqual(self.faults({"src/app/A.cpp": '#include "../base/B.h"\n'}, ["src/base/B.h"]),
                         [("src/app/A.cpp", 1)])

    def test_detour_and_angle_brackets(self):
        for text in ('#include "app/../base/B.h"\n', "#include <base/B.h>\n"):
            self.assertEqual(len(self.faults({"src/app/A.cpp": text}, ["src/base/B.h"])), 1)

    def test_generated_files(self):
        self.assertEqual(self.faults(
            {"src/base/A.cpp": '#include "A.moc"\n#include "moc_A.cpp"\n#include "base/V.h"\n'},
            ["src/base/V.h.in"]), [])
        self.assertEqual(len(self.faults({"src/base/A.cpp": '#include "B.moc"\n'})), 1)

    def test_no_layer(self):
        self.assertEqual(self.faults({"src/misc/A.cpp": ""}), [("src/misc/A.cpp", 1)])
        self.assertEqual(self.faults({"src/A.cpp": ""}), [("src/A.cpp", 1)])

    def test_commented_out(self):
        self.assertEqual(self.faults(
            {"src/base/A.cpp": '// #include "app/B.h"\n/*\n#include "app/B.h"\n*/\n'},
            ["src/app/B.h"]), [])


class Cycles(unittest.TestCase):
    def test_none(self):
        self.assertEqual(include_cycles.check({
            "src/base/A.h": '#include "base/B.h"\n#include "base/C.h"\n',
            "src/base/B.h": '#include "base/C.h"\n', "src/base/C.h": ""}), [])

    def test_two_files(self):
        [found] = include_cycles.check({
            "src/base/A.h": '\n#include "base/B.h"\n', "src/base/B.h": '#include "base/A.h"\n'})
        self.assertEqual((found.path, found.line), ("src/base/A.h", 2))
        self.assertIn("src/base/A.h -> src/base/B.h -> src/base/A.h", found.text)

    def test_long_way_round_is_reported_once(self):
        names = "ABCDE"
        files = {f"src/base/{name}.h": f'#include "base/{names[(at + 1) % 5]}.h"\n'
                 for at, name in enumerate(names)}
        files["src/app/F.h"] = '#include "base/A.h"\n'
        self.assertEqual(support.places(include_cycles.check(files)), [("src/base/A.h", 1)])

    def test_in_tests(self):
        found = include_cycles.check({"tests/support/A.h": '#include "B.h"\n',
                                      "tests/support/B.h": '#include "support/A.h"\n'})
        self.assertEqual(len(found), 1)


class Graph(unittest.TestCase):
    def test_reachable(self):
        graph = includes.graph_of({"src/base/A.cpp": '#include "base/B.h"\n',
                                   "src/base/B.h": '#include "base/C.h"\n',
                                   "src/base/C.h": "", "src/base/D.h": ""})
        self.assertEqual(includes.reachable("src/base/A.cpp", graph), {"src/base/B.h", "src/base/C.h"})


if __name__ == "__main__":
    unittest.main()
