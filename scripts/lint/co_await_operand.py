"""The operand of co_await is a named local, or std::move of one.

The compiler destroys some temporaries in a co_await expression twice (closures with captures,
aggregates), so nothing may be created on such a line.
"""

import re
import sys

import cpp_text
import sources

_OPERAND = re.compile(r"\s*(?:std::move\(\s*([A-Za-z_]\w*)\s*\)|([A-Za-z_]\w*))\s*")
_NOT_LOCAL = {"this", "nullptr", "true", "false", "new", "co_await", "co_yield", "static_cast"}


def _operand_fault(code, after):
    operand = _OPERAND.match(code, after)
    name = operand and (operand.group(1) or operand.group(2))
    if not name or name in _NOT_LOCAL or name.startswith("m_"):
        return "is not a named local"
    if re.match(r"[.(\[{<]|->|::|\+\+|--", code[operand.end():operand.end() + 2]):
        return "is an expression; name it first"
    return None


def check(files):
    """Findings for a mapping of path to text."""
    found = []
    for path, text in files.items():
        code = cpp_text.structure(text)
        lines = code.split("\n")
        for keyword in re.finditer(r"\bco_await\b", code):
            if re.search(r"\boperator\s*$", code[:keyword.start()]):
                continue
            line = cpp_text.line_of(code, keyword.start())
            if fault := _operand_fault(code, keyword.end()):
                found.append(sources.Finding(path, line, f"the operand of co_await {fault}"))
            elif re.search(r"[\[{]", lines[line - 1]):
                found.append(sources.Finding(path, line, "no [ or { on a line with co_await"))
    return found


def main():
    return sources.report(check(sources.cpp_files()))


if __name__ == "__main__":
    sys.exit(main())
