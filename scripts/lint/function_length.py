"""No function is longer than 70 lines, counted from its signature to its closing brace."""

import re
import sys

import cpp_text
import sources

LIMIT = 70

_ACCESS = re.compile(r"\b(?:public|protected|private|signals|Q_SIGNALS)(?:\s+(?:slots|Q_SLOTS))?\s*:(?!:)")
_QT_MACRO = re.compile(r"\bQ_[A-Z_]+\b(?:\s*\([^()]*(?:\([^()]*\)[^()]*)*\))?")
_TRAILING_DECLARATION = re.compile(r"[;{}]")


def _blank(pattern, text):
    return re.sub(pattern, lambda found: re.sub(r"[^\n]", " ", found.group()), text)


def _simplified(head):
    """The head of a brace without what would confuse: access labels, operators, angle brackets."""
    labels = list(_ACCESS.finditer(head))
    if labels:
        head = re.sub(r"[^\n]", " ", head[:labels[-1].end()]) + head[labels[-1].end():]
    head = _QT_MACRO.sub(lambda found: re.sub(r"[^\n]", " ", found.group()), head)
    head = re.sub(r"\boperator\s*(?:\(\s*\)|\[\s*\]|[^\s\w(]+)",
                  lambda found: "operator".ljust(len(found.group())), head)
    head = _blank(r"->|\[\[.*?\]\]|<=>|<=|>=|<<", head)
    while True:
        stripped = _blank(r"<[^<>;{}]*>", head)
        if stripped == head:
            return head
        head = stripped


def _outside_parentheses(head):
    out, depth = [], 0
    for character in head:
        depth -= character == ")"
        out.append(character if depth <= 0 or character == "\n" else " ")
        depth += character == "("
    return "".join(out)


def _classify(head):
    """What the brace after `head` opens: 'scope', 'function' or 'initialiser'."""
    plain = _outside_parentheses(_simplified(head))
    without_alignment = re.sub(r"\b(?:alignas|decltype|__attribute__|noexcept|explicit|requires)"
                               r"\s*\(\s*\)", " ", plain)
    if re.search(r"\bnamespace\b", plain) or re.search(r'\bextern\s+"\s*"\s*$', plain):
        return "scope"
    if re.search(r"\b(?:class|struct|union|enum)\b", plain) and "(" not in without_alignment:
        return "scope"
    assigned = re.search(r"(?<![=!<>+\-*/%&|^])=(?!=)", plain)
    if assigned:
        return "function" if re.search(r"\[", plain[assigned.end():]) else "initialiser"
    if "(" not in without_alignment:
        return "initialiser"
    in_initialiser_list = re.search(r"\)[^:()]*(?<!:):(?!:)", plain)
    if in_initialiser_list and re.search(r"[\w>]\s*$", head):
        return "initialiser"
    return "function"


def _signature_offset(head):
    first = re.search(r"\S", _simplified(head))
    return first.start() if first else 0


def _name(head):
    before = _outside_parentheses(_simplified(head)).split("(")[0]
    names = re.findall(r"~?\w+(?:\s*::\s*~?\w+)*", before)
    return names[-1] if names else "a function"


def functions(text):
    """(name, first line, last line) of every function body outside of another function."""
    code = cpp_text.structure(text)
    found, at, head_start = [], 0, 0
    while (brace := _TRAILING_DECLARATION.search(code, at)):
        at = brace.end()
        if brace.group() != "{":
            head_start = at
            continue
        head = code[head_start:brace.start()]
        kind = _classify(head)
        if kind == "scope":
            head_start = at
            continue
        closing = cpp_text.matching(code, brace.start())
        if closing is None:
            break
        at = closing + 1
        if kind == "function":
            first = cpp_text.line_of(code, head_start + _signature_offset(head))
            found.append((_name(head), first, cpp_text.line_of(code, closing)))
            head_start = at
    return found


def check(files):
    """Findings for a mapping of path to text."""
    return [
        sources.Finding(path, first, f"{name} has {last - first + 1} lines; the limit is {LIMIT}, "
                                     "move steps of it into functions of their own")
        for path, text in files.items()
        for name, first, last in functions(text)
        if last - first + 1 > LIMIT
    ]


def main():
    return sources.report(check(sources.cpp_files("src", "tests", "bench")))


if __name__ == "__main__":
    sys.exit(main())
