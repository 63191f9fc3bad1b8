"""include-graph.py SOURCE: whether the rooms include from each other, and are linked, as docs/architecture.md draws
it, no more, no less, and without a way back."""

import graphlib
import pathlib
import re
import sys

HOUSE = {
    "SDK": "SDK",
    "Lib": "Lib",
    "CodeAnalyzer": "CodeAnalyzer",
    "Host": "Host",
    "cli": "apps/code-analyzer",
    "library": "apps/check-library",
    "workbench": "apps/workbench",
}
INSIDE = ["CodeAnalyzer", "Host"]  # whose folders are rooms, too
SOURCES = {".h", ".cpp", ".re", ".yy", ".y"}


def drawn(page, heading):
    section = re.search(rf"^## {heading}\n(.*?)(?=^## |\Z)", page.read_text(), re.DOTALL | re.MULTILINE).group(1)
    graph = re.search(r"```mermaid\n(.*?)```", section, re.DOTALL).group(1)
    return set(re.findall(r'^\s*(\w+)(?:\["[^"]*"\])? --> (\w+)', graph, re.MULTILINE))


def forwards(text):
    """A header that only leads to others, for those who ask for them under another path."""
    lines = [line.strip() for line in text.splitlines()]
    return all(not line or line.startswith(("//", "#pragma once", "#include")) for line in lines)


def included(base, rooms):
    """Who includes from whom: (room, room, where). `base`: the folder of the rooms' folders."""
    files = {room: [f for f in (base / folder).rglob("*") if f.suffix in SOURCES] for room, folder in rooms.items()}
    # How a header is named by those who include it: by its path below the house's room, or below a room inside of it.
    owners = {}
    for room, folder in rooms.items():
        for file in files[room]:
            for above in {base / folder, base} if base.name in INSIDE else {base / folder}:
                owners.setdefault(str(file.relative_to(above)), set()).add(room)
    edges = set()
    for room, folder in rooms.items():
        for file in files[room]:
            text = file.read_text()
            if base.name in INSIDE and forwards(text):
                continue
            for name in re.findall(r'^\s*#\s*include\s*"([^"]+)"', text, re.MULTILINE):
                own = (file.parent / name).exists() or (base / folder / name).exists()
                for owner in set() if own else owners.get(name, set()) - {room}:
                    edges.add((room, owner, f"{file.relative_to(base)}: {name}"))
    return edges


def linked(lists):
    edges = set()
    for line in re.findall(r"^room\(\w+ ([^)]*)\)", lists.read_text(), re.MULTILINE):
        room, *below = line.split()
        edges |= {(room, other) for other in below}
    return edges


def cycle(edges):
    below = {}
    for a, b in edges:
        below.setdefault(a, set()).add(b)
    try:
        graphlib.TopologicalSorter(below).prepare()
    except graphlib.CycleError as fault:
        return [f"a way back: {' --> '.join(reversed(fault.args[1]))}"]
    return []


def compare(name, allowed, edges):
    present = {(a, b) for a, b, _ in edges}
    problems = [f"{name}: not drawn: {a} --> {b} ({where})" for a, b, where in sorted(edges) if (a, b) not in allowed]
    problems += [f"{name}: drawn, but nobody includes so: {a} --> {b}" for a, b in sorted(allowed - present)]
    if not edges:
        problems.append(f"{name}: nothing is included")
    return problems + [f"{name}: {problem}" for problem in cycle(allowed)]


def main(root):
    page = root / "docs/architecture.md"
    problems = compare("house", drawn(page, "The house"), included(root, HOUSE))
    for room in INSIDE:
        allowed = drawn(page, f"Inside {room}")
        folders = {f.name: f.name for f in (root / room).iterdir() if f.is_dir()}
        problems += compare(room, allowed, included(root / room, folders))
        for a, b in sorted(allowed ^ linked(root / room / "CMakeLists.txt")):
            problems.append(f"{room}: not drawn as CMakeLists.txt has it: {a} --> {b}")
    print("\n".join(problems) or "as drawn")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
