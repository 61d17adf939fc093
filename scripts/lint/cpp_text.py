"""C++ source as plain structure: comments, literals and directives blanked out, offsets kept."""

import re

_LITERAL_PREFIXES = ("u8", "u", "U", "L")
_RAW_OPENING = re.compile(r'R"([^()\\\s]{0,16})\(')


def line_of(text, offset):
    """The line number, from 1, of an offset."""
    return text.count("\n", 0, offset) + 1


def _spaces(text):
    return re.sub(r"[^\n]", " ", text)


def _quoted_end(text, start):
    """The offset after the literal that opens at `start`; an unclosed one ends with its line."""
    quote, at = text[start], start + 1
    while at < len(text) and text[at] != "\n":
        if text[at] == quote:
            return at + 1
        at += 2 if text[at] == "\\" else 1
    return at


def _comment_end(text, start):
    if text.startswith("/*", start):
        end = text.find("*/", start + 2)
        return len(text) if end < 0 else end + 2
    end = start
    while True:  # a line comment goes on after a backslash at the line's end
        end = text.find("\n", end)
        if end < 0:
            return len(text)
        if text[end - 1] != "\\":
            return end
        end += 1


def _word_before(text, offset):
    return re.search(r"\w*$", text[max(0, offset - 32):offset]).group()


def _literal_end(text, at):
    """The offset after the string or character literal at `at`, or None where there is none."""
    word = _word_before(text, at)
    if text[at] == '"':
        if word.endswith("R") and word[:-1] in ("", *_LITERAL_PREFIXES):
            raw = _RAW_OPENING.match(text, at - 1)
            if raw:
                closing = ")" + raw.group(1) + '"'
                end = text.find(closing, raw.end())
                return len(text) if end < 0 else end + len(closing)
        return _quoted_end(text, at)
    if word and word not in _LITERAL_PREFIXES:
        return None  # a digit separator
    return _quoted_end(text, at)


def without_comments_and_literals(text):
    """Blank comments and the insides of literals; the quotes themselves stay."""
    out, at, copied = [], 0, 0
    while at < len(text):
        if text.startswith(("//", "/*"), at):
            end = _comment_end(text, at)
            out += [text[copied:at], _spaces(text[at:end])]
            at = copied = end
        elif text[at] in "\"'" and (end := _literal_end(text, at)):
            closing = text[end - 1] if end - at > 1 and text[end - 1] == text[at] else ""
            inside = text[at + 1:end - len(closing)]
            out += [text[copied:at + 1], _spaces(inside), closing]
            at = copied = end
        else:
            at += 1
    return "".join(out) + text[copied:]


def structure(text):
    """Also blank preprocessor directives, and all but the first branch of a conditional."""
    lines = without_comments_and_literals(text).split("\n")
    branches, continued = [], False
    for number, line in enumerate(lines):
        directive = re.match(r"\s*#\s*(\w*)", line)
        if directive and not continued:
            name = directive.group(1)
            if name in ("if", "ifdef", "ifndef"):
                branches.append(False)
            elif name in ("else", "elif") and branches:
                branches[-1] = True
            elif name == "endif" and branches:
                branches.pop()
        is_directive = bool(directive) or continued
        continued = is_directive and line.endswith("\\")
        if is_directive or any(branches):
            lines[number] = " " * len(line)
    return "\n".join(lines)


def matching(text, opening):
    """The offset of the bracket that closes the one at `opening`, or None."""
    pairs = {"(": ")", "[": "]", "{": "}"}
    opener, closer, depth = text[opening], pairs[text[opening]], 0
    for found in re.compile("[" + re.escape(opener + closer) + "]").finditer(text, opening):
        depth += 1 if found.group() == opener else -1
        if depth == 0:
            return found.start()
    return None
