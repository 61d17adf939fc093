"""No two files include each other, directly or in a circle."""

import sys

import includes
import sources


def _cycle_through(start, graph):
    """The shortest way from `start` back to itself, or None."""
    ways = [[start]]
    seen = set()
    for way in ways:
        for target in sorted(graph.get(way[-1], {})):
            if target == start:
                return way + [start]
            if target not in seen:
                seen.add(target)
                ways.append(way + [target])
    return None


def check(files):
    """Findings for a mapping of path to text; each circle once."""
    graph = includes.graph_of(files)
    found, reported = [], set()
    for path in sorted(graph):
        cycle = _cycle_through(path, graph)
        if cycle and not reported & set(cycle):
            reported |= set(cycle)
            line = graph[path][cycle[1]]
            found.append(sources.Finding(path, line, "circle of includes: " + " -> ".join(cycle)))
    return found


def main():
    return sources.report(check(sources.cpp_files("src", "tests")))


if __name__ == "__main__":
    sys.exit(main())
