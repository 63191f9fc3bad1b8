#!/usr/bin/env python3
"""measure-template-slips.py PROGRAM FOLDER [COUNT] [SEED] [MISSED]: how many slips in the HTML of PHP templates are found.

Makes COUNT slips, one each in a copy of a PHP file below FOLDER that has HTML between its PHP, and compares what is
reported with what the file itself gives. The copies that are missed, told far away or more than twice are kept in the
folder MISSED."""

import json
import pathlib
import random
import re
import subprocess
import sys

from slips import tell

# PHP's own tokens tell what is outside of it.
OUTSIDE = """while (($path = fgets(STDIN)) !== false) {
    $text = str_replace("\r\n", "\n", file_get_contents(rtrim($path)));
    $plain = "";
    foreach (token_get_all($text) as $token)
        $plain .= is_array($token) && $token[0] === T_INLINE_HTML
            ? $token[1] : preg_replace("/[^\\n]/u", chr(1), is_array($token) ? $token[1] : $token);
    echo json_encode([$text, $plain], JSON_INVALID_UTF8_IGNORE), "\n";
}"""
VOID = "area base br col embed hr img input link meta source track wbr".split()
# End tags that may be left out, and what is no HTML.
OPTIONAL = "li p td th tr dt dd tbody thead tfoot option optgroup colgroup caption html head body rp rt".split()
OTHER = re.compile(r"<(script|style|svg|textarea|title|xmp)\b.*?</\1\s*>|<!--.*?-->", re.S | re.I)
START = re.compile(r"<([a-zA-Z][a-zA-Z0-9]*)(\s[^<>]*)?>")
END = re.compile(r"</([a-zA-Z][a-zA-Z0-9]*)\s*>")


def blank(match):
    return re.sub(r"[^\n]", "\x01", match.group())


def elements(plain, pattern):
    return [m for m in pattern.finditer(plain) if m.group(1).lower() not in VOID + OPTIONAL]


def cut(text, begin, end, new=""):
    return text[:begin] + new + text[end:], begin


def drop(pattern):
    def slip(text, plain, rnd):
        found = elements(plain, pattern)
        return cut(text, *rnd.choice(found).span()) if found else None
    return slip


def double_end(text, plain, rnd):
    found = elements(plain, END)
    if not found:
        return None
    m = rnd.choice(found)
    return cut(text, m.end(), m.end(), m.group())


def swap_ends(text, plain, rnd):
    pairs = [(a, b) for a, b in zip(*(lambda e: (e, e[1:]))(list(END.finditer(plain))))
             if a.group(1).lower() != b.group(1).lower() and not plain[a.end():b.start()].strip()
             and not {a.group(1).lower(), b.group(1).lower()} & set(OPTIONAL)]
    if not pairs:
        return None
    a, b = rnd.choice(pairs)
    return text[:a.start()] + b.group() + text[a.end():b.start()] + a.group() + text[b.end():], a.start()


def rename_end(text, plain, rnd):
    found = elements(plain, END)
    if not found:
        return None
    m = rnd.choice(found)
    other = "span" if m.group(1).lower() != "span" else "div"
    return cut(text, *m.span(1), other)


def no_gt(pattern):
    def slip(text, plain, rnd):
        found = list(pattern.finditer(plain))
        return cut(text, (m := rnd.choice(found)).end() - 1, m.end()) if found else None
    return slip


def in_value(make):
    def slip(text, plain, rnd):
        tags = [t for t in START.finditer(plain) if t.group(2)]
        values = [(t.start(2) + m.start(), m) for t in tags for m in re.finditer(r'\s([\w-]+)="([^"<>]*)"', t.group(2))]
        if not values:
            return None
        at, m = rnd.choice(values)
        return make(text, at, m)
    return slip


SLIPS = {
    "drop-end": drop(END), "drop-start": drop(START), "double-end": double_end, "swap-ends": swap_ends,
    "rename-end": rename_end, "no-gt": no_gt(START), "no-gt-end": no_gt(END),
    "end-quote": in_value(lambda t, at, m: cut(t, at + len(m.group()) - 1, at + len(m.group()))),
    "start-quote": in_value(lambda t, at, m: cut(t, at + m.start(2) - m.start() - 1, at + m.start(2) - m.start())),
    "twice": in_value(lambda t, at, m: cut(t, at + len(m.group()), at + len(m.group()), f' {m.group(1)}="x"')),
}


def make_slips(folder, count, rnd):
    paths = [p for p in sorted(folder.rglob("*")) if p.is_file() and p.suffix in (".php", ".phtml", ".inc", ".tpl")
             and p.stat().st_size < 150_000 and re.search(rb"</\w+>", p.read_bytes())]
    run = subprocess.run(["php", "-d", "memory_limit=-1", "-r", OUTSIDE], text=True, stdout=subprocess.PIPE, check=True,
                         input="".join(f"{path}\n" for path in paths))
    texts = []
    for path, line in zip(paths, run.stdout.splitlines()):
        text, plain = json.loads(line) if line != "" else ("", "")
        plain = OTHER.sub(blank, plain)
        if len(text) == len(plain) and "<?" in text and len(elements(plain, END)) > 5 and "<?xml" not in text and "xmlns" not in text:
            texts.append((path, text, plain))
    if not texts:
        sys.exit(f"no PHP files with HTML below {folder}")
    kinds = list(SLIPS)
    made = 0
    for _ in range(count * 40):
        if made == count:
            return
        path, text, plain = rnd.choice(texts)
        kind = kinds[made % len(kinds)]
        slip = SLIPS[kind](text, plain, rnd)
        if slip and slip[0] != text:
            made += 1
            yield kind, text, slip[0], text.count("\n", 0, slip[1]) + 1, path


def main(program, folder, count="200", seed="1", kept=None):
    slips = list(make_slips(pathlib.Path(folder), int(count), random.Random(int(seed))))
    number = 0

    def keep(case, new):
        nonlocal number
        place = pathlib.Path(kept, f"{number:03}-{case[0]}.php")
        place.parent.mkdir(parents=True, exist_ok=True)
        place.write_text(case[2])
        told = "; ".join(f"{r['startLine']}: {r['code']} {r['message']}" for r in new[:3]) or "missed"
        print(f"{place}:{case[3]} ({case[4]}) {told}")
        number += 1

    tell(program, slips, ".php", keep if kept else None)


if __name__ == "__main__":
    main(*sys.argv[1:])
