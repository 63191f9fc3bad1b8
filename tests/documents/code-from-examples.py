"""code-from-examples.py SOURCE: whether the code that a document shows as a part of a file still is one.

Such a block follows a comment with the file's name: <!-- from examples/host/main.cpp -->"""

import pathlib
import re
import sys


def main(root):
    shown = problems = 0
    for page in sorted((root / "docs").glob("*.md")):
        for name, code in re.findall(r"<!-- from (\S+) -->\n```\w*\n(.*?)```", page.read_text(), re.DOTALL):
            shown += 1
            if code not in (root / name).read_text():
                problems += 1
                print(f"{page.name}: no part of {name}:\n{code}")
    print(f"{shown} blocks, {problems} of them out of date")
    return 0 if shown and not problems else 1


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
