"""Includes below src/ point down the layers, or stay within a folder; never up, never across."""

import pathlib
import posixpath
import sys

import includes
import sources

# From the top down. Folders in one row do not include each other.
LAYERS = [
    {"app"},
    {"settings", "choice"},
    {"selection"},
    {"upload"},
    {"actions"},
    {"capture"},
    {"hud", "KeyboardShortcuts"},
    {"platform"},
    {"base"},
]
DEPTH = {folder: depth for depth, row in enumerate(LAYERS) for folder in row}
BACKENDS = {"x11", "wayland", "null"}
BACKEND_CHOOSER = "src/platform/PlatformLoader.cpp"


def _folder(path):
    """The layer of src/<layer>/…"""
    parts = path.split("/")
    return parts[1] if len(parts) > 2 else ""


def _backend(path):
    parts = path.split("/")
    is_backend = len(parts) > 3 and parts[1] == "platform" and parts[2] in BACKENDS
    return parts[2] if is_backend else None


def _is_generated(path, name, known):
    """The meta-object compiler's output for this very file, or a header made from a template."""
    stem = pathlib.PurePosixPath(path).stem
    return name in (stem + ".moc", f"moc_{stem}.cpp") or f"src/{name}.in" in known


def _direction_fault(path, target):
    source_folder, target_folder = _folder(path), _folder(target)
    if target_folder not in DEPTH:
        return f"{target_folder or 'src'} is no layer"
    if source_folder != target_folder and DEPTH[target_folder] <= DEPTH[source_folder]:
        way = "across" if DEPTH[target_folder] == DEPTH[source_folder] else "up"
        return f"{source_folder}/ may not look {way} to {target_folder}/"
    backend = _backend(target)
    if backend and backend != _backend(path) and path != BACKEND_CHOOSER:
        return f"only {BACKEND_CHOOSER} may know the {backend} backend"
    return None


def _include_fault(path, include, known):
    target = "src/" + posixpath.normpath(include.name)
    if target in known:
        if not include.quoted:
            return "our own headers are included with quotes"
        if "src/" + include.name != target:
            return "write the include from src/ on, without detours"
        return _direction_fault(path, target)
    if include.quoted and not _is_generated(path, include.name, known):
        return "no such file below src/; includes are written from src/ on"
    return None


def check(files, known=None):
    """Findings for a mapping of path to text; `known` are all paths there are."""
    known = set(files) if known is None else set(known)
    found = []
    for path, text in files.items():
        if _folder(path) not in DEPTH:
            found.append(sources.Finding(path, 1, "belongs to no layer; move it into one of "
                                                  + ", ".join(DEPTH)))
            continue
        for include in includes.includes(text):
            if fault := _include_fault(path, include, known):
                found.append(sources.Finding(path, include.line, f'"{include.name}": {fault}'))
    return found


def main():
    return sources.report(check(sources.cpp_files("src"), sources.project_files()))


if __name__ == "__main__":
    sys.exit(main())
