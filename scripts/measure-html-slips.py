#!/usr/bin/env python3
"""measure-html-slips.py PROGRAM FOLDER [COUNT] [SEED]: how many slips in tags, values and references the program finds.

Makes COUNT slips, one each in a copy of an HTML file below FOLDER, and compares what is reported with what the file
itself gives: slips found, those told within a line, and records for each."""

import pathlib
import random
import re
import sys

from slips import tell

TAG = re.compile(r'<([a-zA-Z][\w-]*)((?:\s+[\w-]+="[^"<>]*")+)\s*/?>')
VALUES = {"type": ["text", "submit", "hidden", "checkbox", "button"], "method": ["post", "get"], "dir": ["ltr", "rtl"]}


def attribute(tag, rnd):
    return rnd.choice(list(re.finditer(r'\s+([\w-]+)="([^"<>]*)"', tag.group(2)))), tag.start(2)


def drop(text, begin, end, new=""):
    return text[:begin] + new + text[end:], begin


def in_attribute(make):
    def slip(text, tags, rnd):
        tag = rnd.choice(tags)
        found, offset = attribute(tag, rnd)
        return make(text, found, offset)
    return slip


def end_quote(text, m, at):
    return drop(text, at + m.end() - 1, at + m.end())


def start_quote(text, m, at):
    return drop(text, at + m.start(2) - 1, at + m.start(2))


def twice(text, m, at):
    return drop(text, at + m.end(), at + m.end(), f' {m.group(1)}="x"')


def no_space(text, m, at):
    return drop(text, at + m.start(), at + m.start(1)) if text[at + m.start() - 1] == '"' else None


def two_equals(text, m, at):
    return drop(text, at + m.end(1), at + m.end(1), "=")


def no_equals(text, m, at):
    return drop(text, at + m.end(1), at + m.end(1) + 1)


def mistyped_value(text, m, at):
    if m.group(1) not in VALUES or m.group(2) not in VALUES[m.group(1)]:
        return None
    swapped = m.group(2)[1] + m.group(2)[0] + m.group(2)[2:]
    return drop(text, at + m.start(2), at + m.end(2), swapped)


def no_end(text, tags, rnd):
    tag = rnd.choice(tags)
    return drop(text, tag.end() - 1, tag.end())


def no_end_of_end(text, _, rnd):
    found = list(re.finditer(r"</\w+>", text))
    return drop(text, (m := rnd.choice(found)).end() - 1, m.end()) if found else None


def in_match(pattern, make):
    def slip(text, _, rnd):
        found = list(re.finditer(pattern, text))
        return make(text, rnd.choice(found)) if found else None
    return slip


SLIPS = {
    "end-quote": in_attribute(end_quote), "start-quote": in_attribute(start_quote), "twice": in_attribute(twice),
    "no-space": in_attribute(no_space), "two-equals": in_attribute(two_equals), "no-equals": in_attribute(no_equals),
    "value": in_attribute(mistyped_value), "no-gt": no_end, "no-gt-end": no_end_of_end,
    "reference": in_match(r"&[a-z]{3,};", lambda t, m: drop(t, m.start() + 2, m.start() + 4, t[m.start() + 3] + t[m.start() + 2])
                          if t[m.start() + 2] != t[m.start() + 3] else None),
    "semicolon": in_match(r"&(?:amp|lt|gt|nbsp|copy|quot);(?![\w=])", lambda t, m: drop(t, m.end() - 1, m.end())),
    "comment": in_match(r"-->", lambda t, m: drop(t, m.start(), m.start() + 1)),
}


def make_slips(folder, count, rnd):
    texts = [t for p in sorted(folder.rglob("*.htm*")) if p.is_file() and p.stat().st_size < 150_000
             for t in [p.read_text(errors="replace")] if len(TAG.findall(t)) > 5]
    if not texts:
        sys.exit(f"no HTML files with attributes below {folder}")
    kinds = list(SLIPS)
    for _ in range(count * 40):
        if count == 0:
            return
        text, kind = rnd.choice(texts), kinds[count % len(kinds)]
        plain = re.sub(r"(?is)<(script|style|textarea)\b.*?</\1>" + ("" if kind == "comment" else "|<!--.*?-->"),
                       lambda m: " " * len(m.group()), text)
        tags = list(TAG.finditer(plain))
        made = SLIPS[kind](plain, tags, rnd) if tags else None
        if made and made[0] != plain:
            count -= 1
            yield kind, plain, made[0], plain.count("\n", 0, made[1]) + 1


def main(program, folder, count="200", seed="1"):
    tell(program, list(make_slips(pathlib.Path(folder), int(count), random.Random(int(seed)))), ".html")


if __name__ == "__main__":
    main(*sys.argv[1:])
