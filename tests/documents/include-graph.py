"""include-graph.py SOURCE: whether the rooms include from each other as docs/architecture.md draws it, no more, no
less."""

import pathlib
import re
import sys

ROOMS = {
    "SDK": "SDK",
    "Lib": "Lib",
    "CodeAnalyzer": "CodeAnalyzer",
    "Host": "Host",
    "cli": "apps/code-analyzer",
    "workbench": "apps/workbench",
}
SOURCES = {".h", ".cpp", ".re", ".yy", ".y"}


def drawn(page):
    graph = re.search(r"```mermaid\n(.*?)```", page.read_text(), re.DOTALL).group(1)
    return set(re.findall(r'^\s*(\w+)(?:\["[^"]*"\])? --> (\w+)', graph, re.MULTILINE))


def found(root):
    files = {
        room: [f for f in (root / folder).rglob("*") if f.suffix in SOURCES] for room, folder in ROOMS.items()
    }
    # How a header is named by those who include it: by its path below the room.
    owners = {}
    for room, folder in ROOMS.items():
        for file in files[room]:
            owners.setdefault(str(file.relative_to(root / folder)), set()).add(room)
    edges = set()
    for room in ROOMS:
        for file in files[room]:
            for name in re.findall(r'^\s*#\s*include\s*"([^"]+)"', file.read_text(), re.MULTILINE):
                own = (file.parent / name).exists() or (root / ROOMS[room] / name).exists()
                for owner in set() if own else owners.get(name, set()):
                    edges.add((room, owner, f"{file.relative_to(root)}: {name}"))
    return edges


def main(root):
    allowed = drawn(root / "docs/architecture.md")
    edges = found(root)
    problems = [f"not drawn: {a} --> {b} ({where})" for a, b, where in sorted(edges) if (a, b) not in allowed]
    present = {(a, b) for a, b, _ in edges}
    problems += [f"drawn, but nobody includes so: {a} --> {b}" for a, b in sorted(allowed - present)]
    print("\n".join(problems) or f"{len(present)} edges, as drawn")
    return 1 if problems or not edges else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
