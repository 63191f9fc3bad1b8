"""links.py FOLDER: whether every link between the pages of a folder leads to a file that is there, and to a heading of
it."""

import pathlib
import re
import sys


def anchors(page):
    found = set()
    for heading in re.findall(r"^#+ (.+)$", page.read_text(), re.MULTILINE):
        words = re.sub(r"[^\w\- ]", "", heading.lower())
        found.add(words.replace(" ", "-"))
    return found | set(re.findall(r'<a (?:id|name)="([^"]+)"', page.read_text()))


def main(folder):
    links = problems = 0
    for page in sorted(folder.rglob("*.md")):
        text = re.sub(r"```.*?```", "", page.read_text(), flags=re.DOTALL)
        for target in re.findall(r"\]\(([^)\s]+)\)", text):
            if re.match(r"[a-z]+:", target):
                continue
            links += 1
            name, _, anchor = target.partition("#")
            file = page.parent / name if name else page
            if not file.is_file() or (anchor and anchor not in anchors(file)):
                problems += 1
                print(f"{page.name}: {target} leads nowhere")
    print(f"{links} links, {problems} of them dead")
    return 1 if problems or not links else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
