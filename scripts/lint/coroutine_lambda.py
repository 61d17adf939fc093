"""No lambda with captures is itself a coroutine: the closure may be gone when it resumes."""

import re
import sys
from typing import NamedTuple

import cpp_text
import sources

_MAY_PRECEDE = {"return", "co_return", "co_await", "co_yield", "case", "else", "do", "throw"}
_BEFORE_BODY = re.compile(r"\s*(?:mutable|constexpr|consteval|static|noexcept)\b|\s*->\s*[^;{}]*")


class Lambda(NamedTuple):
    captures: bool
    start: int
    body: range


def _introduces(code, at):
    """Whether the [ at `at` can begin a lambda: neither subscript, attribute nor binding."""
    if code[at:at + 2] == "[[" or code[at - 1:at] == "[":
        return False
    before = code[:at].rstrip()
    if re.search(r"\bauto\s*&{0,2}$", before):
        return False
    if re.search(r"[\])\"']$", before):
        return False
    word = re.search(r"(\w+)$", before)
    return not word or word.group(1) in _MAY_PRECEDE


def _skip_angle_brackets(code, at):
    depth = 0
    for offset in range(at, len(code)):
        depth += (code[offset] == "<") - (code[offset] == ">")
        if depth == 0:
            return offset + 1
    return len(code)


def _body_opening(code, at):
    """The offset of the { of the lambda whose introducer ends before `at`, or None."""
    at += len(code[at:]) - len(code[at:].lstrip())
    if code[at:at + 1] == "<":
        at = _skip_angle_brackets(code, at)
        at += len(code[at:]) - len(code[at:].lstrip())
    if code[at:at + 1] == "(":
        closing = cpp_text.matching(code, at)
        at = len(code) if closing is None else closing + 1
    while (specifier := _BEFORE_BODY.match(code, at)):
        at = specifier.end()
    found = re.compile(r"\s*\{").match(code, at)
    return found.end() - 1 if found else None


def lambdas(code):
    """The lambdas of a text without comments and literals."""
    for bracket in re.finditer(r"\[", code):
        at = bracket.start()
        closing = cpp_text.matching(code, at) if _introduces(code, at) else None
        opening = None if closing is None else _body_opening(code, closing + 1)
        end = None if opening is None else cpp_text.matching(code, opening)
        if end is not None:
            yield Lambda(bool(code[at + 1:closing].strip()), at, range(opening, end))


def check(files):
    """Findings for a mapping of path to text."""
    found = []
    for path, text in files.items():
        code = cpp_text.structure(text)
        known, faulty = list(lambdas(code)), set()
        for keyword in re.finditer(r"\bco_(?:await|return|yield)\b", code):
            around = [each for each in known if keyword.start() in each.body]
            innermost = max(around, key=lambda each: each.start, default=None)
            if innermost and innermost.captures:
                faulty.add(cpp_text.line_of(code, innermost.start))
        found += [sources.Finding(path, line, "a lambda with captures is a coroutine; write a "
                                              "function that takes them by value")
                  for line in sorted(faulty)]
    return found


def main():
    return sources.report(check(sources.cpp_files()))


if __name__ == "__main__":
    sys.exit(main())
