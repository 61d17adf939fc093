"""The #include lines of a file and what they name."""

import posixpath
import re
from typing import NamedTuple

import cpp_text


class Include(NamedTuple):
    line: int
    name: str
    quoted: bool


_INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"\n]+)"|<([^>\n]+)>)', re.MULTILINE)


def includes(text):
    """The includes of a file that are not commented out."""
    visible = cpp_text.without_comments_and_literals(text)
    found = []
    for match in _INCLUDE.finditer(text):
        if "include" in visible[match.start():match.end()]:
            line = cpp_text.line_of(text, match.end())
            found.append(Include(line, match.group(1) or match.group(2), match.group(1) is not None))
    return found


def resolve(including, name, known):
    """The project file that an include names, or None: below src/, below tests/, or next to it."""
    beside = posixpath.normpath(posixpath.join(posixpath.dirname(including), name))
    for candidate in ("src/" + name, "tests/" + name, beside):
        if candidate in known:
            return candidate
    return None


def reachable(path, graph):
    """All files that `path` includes, directly or not."""
    seen, waiting = set(), [path]
    while waiting:
        for target in graph.get(waiting.pop(), {}):
            if target not in seen:
                seen.add(target)
                waiting.append(target)
    return seen


def graph_of(files):
    """path -> {included path: line} among `files` (path to text)."""
    return {
        path: {
            target: include.line
            for include in includes(text)
            if (target := resolve(path, include.name, files)) and target != path
        }
        for path, text in files.items()
    }
