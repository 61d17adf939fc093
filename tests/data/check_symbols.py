#!/usr/bin/env python3
"""Checks that the symbol set is complete and drawn in one style.

Usage: check_symbols.py SYMBOL_FOLDER

The program uses a symbol's alpha channel as a template, and Qt renders only the Tiny subset of
SVG; anything outside the few elements and attributes below would be lost or look foreign.
"""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree

NAMES = {
    "arrow.up.doc",
    "arrow.up.right",
    "camera.viewfinder",
    "doc.on.clipboard",
    "folder",
    "gearshape",
    "globe",
    "hand.raised",
    "info.circle",
    "plus.viewfinder",
    "power",
    "square.and.arrow.down",
    "square.stack.3d.up",
    "viewfinder",
    "xmark.circle",
}

SVG = "{http://www.w3.org/2000/svg}"
ROOT_STYLE = {
    "width": "24",
    "height": "24",
    "viewBox": "0 0 24 24",
    "fill": "none",
    "stroke": "#000",
    "stroke-width": "1.5",
    "stroke-linecap": "round",
    "stroke-linejoin": "round",
}
GEOMETRY = {
    "path": {"d"},
    "circle": {"cx", "cy", "r"},
    "ellipse": {"cx", "cy", "rx", "ry"},
    "rect": {"x", "y", "width", "height", "rx", "ry"},
}
# The one exception from the line style: a dot is a filled circle without an outline.
DOT_STYLE = {"fill": "#000", "stroke": "none"}


def problems_in_root(root: ElementTree.Element) -> list[str]:
    if root.tag != f"{SVG}svg":
        return [f"the root is {root.tag}"]
    expected = ROOT_STYLE | {"version": "1.2", "baseProfile": "tiny"}
    if root.attrib != expected:
        return [f"root attributes are {root.attrib}, expected {expected}"]
    return [] if len(root) > 0 else ["nothing is drawn"]


def problems_in_shape(shape: ElementTree.Element) -> list[str]:
    kind = shape.tag.removeprefix(SVG)
    if kind not in GEOMETRY:
        return [f"element <{kind}> is not a plain shape"]

    problems = []
    if len(shape) > 0 or (shape.text or "").strip():
        problems.append(f"<{kind}> has content")
    missing = GEOMETRY[kind] - shape.attrib.keys()
    if missing:
        problems.append(f"<{kind}> lacks {sorted(missing)}")
    style = {key: value for key, value in shape.attrib.items() if key not in GEOMETRY[kind]}
    if style and not (kind == "circle" and style == DOT_STYLE):
        problems.append(f"<{kind}> has a style of its own: {style}")
    return problems


def problems_in_file(path: pathlib.Path) -> list[str]:
    try:
        root = ElementTree.parse(path).getroot()
    except ElementTree.ParseError as error:
        return [f"{path.name}: {error}"]
    problems = problems_in_root(root)
    for shape in root:
        problems += problems_in_shape(shape)
    return [f"{path.name}: {problem}" for problem in problems]


def main() -> int:
    folder = pathlib.Path(sys.argv[1])
    expected = {f"{name}.svg" for name in NAMES}
    found = {path.name for path in folder.iterdir()}

    problems = [f"{name} is missing" for name in sorted(expected - found)]
    problems += [f"{name} does not belong here" for name in sorted(found - expected)]
    for name in sorted(expected & found):
        problems += problems_in_file(folder / name)
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
