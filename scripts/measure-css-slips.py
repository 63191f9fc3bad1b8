#!/usr/bin/env python3
"""measure-css-slips.py FOLDER [COUNT [SEED]]: which slips in real style sheets the check finds.

Takes the sheets below FOLDER in which the check has no errors, makes COUNT slips of all kinds in copies of
them, and prints what is missed, then the sums. The program is $CODE_ANALYZER, or build/dev/bin/code-analyzer.
Not part of ./test: it needs a folder of sheets that others wrote."""

import collections
import json
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

PROGRAM = os.environ.get("CODE_ANALYZER", "build/dev/bin/code-analyzer")
MARGIN = 1  # lines that a record may be off
PLAIN = r"(?:color|margin|padding|width|height|display|position|float|overflow|text-align|font-size|top|left)"
COLOUR = r":[^;{}]*?(#[0-9a-fA-F]{3,8})\b(?=[^{}]*\})"
UNITS = {"px": "xp", "em": "emm", "rem": "erm", "ms": "msx", "deg": "dge", "vh": "hv", "vw": "wv"}


def mistyped(word):
    if len(word) < 4:
        return word
    i = random.randrange(1, len(word) - 1)
    return random.choice([word[:i] + word[i + 1:], word[:i] + word[i:i + 1] + word[i:],
                          word[:i] + word[i + 1] + word[i] + word[i + 2:]])


def gone(_):
    return ""


def twice(text):
    return text * 2


def always(text):
    return lambda _: text


# Each slip: where, in group 1 of a pattern, and what stands there instead.
SLIPS = {
    "{ dropped": (r"(\{)", gone), "} dropped": (r"(\})", gone),
    "{ doubled": (r"(\{)", twice), "} doubled": (r"(\})", twice),
    "} for {": (r"(\{)[^{}]+\}", always("}")),
    "; dropped": (r"(;)(?=\s*[-a-z]+\s*:)", gone), ": for ;": (r"(;)(?=\s*[-a-z]+\s*:)", always(":")),
    ", for ;": (r"(;)(?=\s*[-a-z]+\s*:)", always(",")),
    ": dropped": (r"[;{]\s*[-a-z]+(:)\s", gone), ": doubled": (r"[;{]\s*[-a-z]+(:)\s", twice),
    "; for :": (r"[;{]\s*[-a-z]+(:)\s", always(";")),
    "quote dropped": (r"([\"'])", gone),
    "( dropped": (r"(\()", gone), ") dropped": (r"(\))", gone),
    "( doubled": (r"(\()", twice), ") doubled": (r"(\))", twice), "] dropped": (r"\[[a-z-]+[^\]{}]*(\])(?=[^{}]*\{)", gone),
    "unit mistyped": (r":[^;{}]*?\d(px|em|rem|ms|deg|vh|vw)\b(?=[^{}]*\})", UNITS.get),
    "unit dropped": (r"[;{]\s*(?:margin|padding|width|height|top|left|font-size)\s*:\s*[1-9]\d*(px|em|rem)\s*;", gone),
    "colour too long": (COLOUR, lambda c: (c + "000")[:6]), "colour mistyped": (COLOUR, lambda c: c[:2] + "g" + c[3:]),
    "keyword mistyped": (r"(?:display|position|float|overflow|text-align|visibility|white-space|clear)\s*:\s*"
                         r"([a-z-]{4,})\s*[;}]", mistyped),
    "keyword of a shorthand": (r"[;{]\s*(?:border|background|outline)\s*:\s*[^;{}(]*?\b(solid|none|transparent|dashed|"
                               r"repeat-x|no-repeat|center|inherit|dotted)\b", mistyped),
    "function mistyped": (r":[^;{}]*?\b(rgba|translate|rotate|linear-gradient|calc|scale|hsla)\(", mistyped),
    "pseudo mistyped": (r":(hover|focus|active|before|after|first-child|last-child|disabled)\b(?=[^{}]*\{)", mistyped),
    "at-rule mistyped": (r"@(media|font-face|keyframes|supports|import)\b", mistyped),
    "feature mistyped": (r"\((min-width|max-width|min-height|orientation)\b", mistyped),
    "!important mistyped": (r"!(important)", mistyped),
    "property mistyped": (r"[;{]\s*([a-z]+(?:-[a-z]+)*)\s*:\s", mistyped),
    "element mistyped": (r"(?:^|[},])\s*(body|table|input|button|select|label|span|code)\b(?=[^{}]*\{)", mistyped),
    "value dropped": (r"[;{]\s*[-a-z]+:\s*([^;{}\"'()]+)(?=;)", gone),
    "value doubled": (r"[;{]\s*" + PLAIN + r"\s*:\s*([^;{}()]+?)(?=\s*[;}])", lambda v: f"{v} {v} {v} {v} {v}"),
    ", doubled": (r"(?:rgba?\([^)]*?|font-family:[^;]*?)(,)", twice), ", before {": (r"(?<=[a-z0-9])(\s*\{)", lambda t: "," + t),
    ". doubled": (r"[},]\s*(\.)[a-z]", twice), "> doubled": (r"[a-z]\s*(>)\s*[a-z.]", twice),
}


def check(folder):
    done = subprocess.run([PROGRAM, "check", "--no-config", "--format", "json", "-q", folder], capture_output=True,
                          text=True)
    records = collections.defaultdict(list)
    for record in json.loads(done.stdout):
        records[pathlib.Path(record["file"]).name].append(record)
    return records


def slip(css, kind):
    """The text with a slip, and its offset; None: the text has no place for it."""
    pattern, change = SLIPS[kind]
    comments = [match.span() for match in re.finditer(r"/\*.*?\*/|url\([^)\n]*\)", css, re.DOTALL)]
    places = [match.span(1) for match in re.finditer(pattern, css)
              if not any(begin <= match.start(1) < end for begin, end in comments)]
    if not places:
        return None
    begin, end = random.choice(places)
    text = css[:begin] + change(css[begin:end]) + css[end:]
    return None if text == css else (text, begin)


def main(folder, count=275, seed=1):
    random.seed(seed)
    with tempfile.TemporaryDirectory() as whole, tempfile.TemporaryDirectory() as slipped:
        sheets = {}
        for path in sorted(pathlib.Path(folder).rglob("*.css")):
            text = path.read_bytes().decode(errors="replace").replace("\r\n", "\n")
            name = f"{len(sheets)}.css"
            if 800 < len(text) < 300000:
                sheets[name] = text
                (pathlib.Path(whole) / name).write_text(text)
        before = check(whole)
        names = [name for name in sheets if not any(r["severity"] == "error" for r in before[name])]
        cases = []
        for tried in range(count * 100):
            kind = list(SLIPS)[len(cases) % len(SLIPS)]
            name = random.choice(names)
            changed = slip(sheets[name], kind)
            if changed:
                (pathlib.Path(slipped) / f"{len(cases)}.css").write_text(changed[0])
                cases.append((kind, name, changed[0].count("\n", 0, changed[1]) + 1))
            if len(cases) == count:
                break
        after = check(slipped)
        found = near = records = 0
        for index, (kind, name, line) in enumerate(cases):
            known = {(r["code"], r["message"]) for r in before[name]}
            new = [r for r in after[f"{index}.css"] if (r["code"], r["message"]) not in known]
            hit = any(r["startLine"] - MARGIN <= line <= r["endLine"] + MARGIN for r in new)
            found += bool(new)
            near += hit
            records += len(new)
            if not new:
                print(f"missed: {kind}: {(pathlib.Path(slipped) / f'{index}.css').read_text().splitlines()[line - 1][:100]}")
        print(f"{len(cases)} slips: {found} found, {near} within a line, {records / max(found, 1):.2f} records for each")


if __name__ == "__main__":
    main(sys.argv[1], *map(int, sys.argv[2:]))
