#!/usr/bin/env python3
"""measure-fixes.py PROGRAM FOLDER [COUNT] [SEED] [KEPT]: how many slips in PHP are mended by `check --fix`.

Makes COUNT slips that PHP's parser rejects, one each in a copy of a PHP file below FOLDER, and has each copy fixed, twice.
It says for how many slips there was a fix that was preferred, how many of these left a file that `php -l` takes, and how
many left the file as it was before the slip. The copies that were not mended are kept in the folder KEPT.
"""
import collections
import json
import pathlib
import random
import re
import subprocess
import sys

import slips

TOKENS = r'''
while (($path = fgets(STDIN)) !== false) {
    $list = [];
    foreach (@token_get_all(file_get_contents(rtrim($path))) as $t)
        $list[] = is_array($t) ? [token_name($t[0]), $t[1]] : ['', $t];
    echo json_encode($list), "\n";
}'''
WORDS = {"T_FUNCTION", "T_CLASS", "T_RETURN", "T_FOREACH", "T_AS", "T_ELSE", "T_ELSEIF", "T_IF", "T_WHILE", "T_PUBLIC", "T_STATIC",
         "T_PROTECTED", "T_PRIVATE", "T_NEW", "T_EXTENDS", "T_CASE", "T_ECHO", "T_ARRAY", "T_SWITCH", "T_BREAK", "T_USE", "T_TRY",
         "T_CATCH", "T_THROW", "T_NAMESPACE", "T_INSTANCEOF", "T_DEFAULT", "T_ISSET", "T_EMPTY", "T_FOR", "T_CONST"}
SYMBOLS = {"T_OBJECT_OPERATOR", "T_DOUBLE_ARROW", "T_PAAMAYIM_NEKUDOTAYIM", "T_BOOLEAN_AND", "T_BOOLEAN_OR", "T_IS_EQUAL"}
PAIRS = {"(": "[{", ")": "]}", "[": "(", "]": ")}", "{": "(", "}": ")", ";": ":,", ",": ";.", ":": ";"}


def drop(texts):
    return lambda kind, text, dice: "" if text in texts else None


def double(texts):
    return lambda kind, text, dice: text + text if text in texts else None


def typo(kind, text, dice):
    if kind not in WORDS or len(text) < 4:
        return None
    i = dice.randrange(len(text) - 1)
    return dice.choice([text[:i] + text[i + 1] + text[i] + text[i + 2:], text[:i] + text[i + 1:], text[:i] + text[i] + text[i:]])


SLIPS = {
    "no ;": drop(";"), "no )": drop(")"), "no (": drop("("), "no }": drop("}"), "no {": drop("{"), "no ]": drop("]"),
    "no [": drop("["), "no ,": drop(","), "no =": drop("="), "no .": drop("."), "no :": drop(":"),
    "double )": double(")"), "double }": double("}"), "double ,": double(","), "double ]": double("]"), "double (": double("("),
    "typo": typo,
    "no word": lambda kind, text, dice: "" if kind in WORDS else None,
    "no symbol": lambda kind, text, dice: "" if kind in SYMBOLS else None,
    "no $": lambda kind, text, dice: text[1:] if kind == "T_VARIABLE" else None,
    "other": lambda kind, text, dice: dice.choice(PAIRS[text]) if kind == "" and text in PAIRS else None,
    "no quote": lambda kind, text, dice: dice.choice([text[1:], text[:-1]]) if kind == "T_CONSTANT_ENCAPSED_STRING" else None,
}
# Those that are made often are tried often.
OFTEN = ["no ;", "no )", "no }", "no ,", "typo"] * 2


def make_slips(paths, count, dice):
    """Yields kind, text, text with the slip, its line, path; PHP need not reject them."""
    chosen = [dice.choice(paths) for _ in range(count * 3)]
    run = subprocess.run(["php", "-d", "memory_limit=-1", "-r", TOKENS], input="\n".join(map(str, chosen)), text=True,
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    kinds = list(SLIPS) + OFTEN
    for number, (path, line) in enumerate(zip(chosen, run.stdout.splitlines())):
        if not line:
            continue
        tokens = json.loads(line)
        kind = kinds[number % len(kinds)]
        places = [(i, made) for i, token in enumerate(tokens) if (made := SLIPS[kind](*token, dice)) is not None]
        if not places:
            continue
        at, made = dice.choice(places)
        before, behind = ("".join(text for _, text in part) for part in (tokens[:at], tokens[at + 1:]))
        yield kind, before + tokens[at][1] + behind, before + made + behind, before.count("\n") + 1, path


def main(program, folder, count="1000", seed="1", kept=None):
    count = int(count)
    paths = [p for p in sorted(pathlib.Path(folder).rglob("*.php")) if p.is_file() and not p.is_symlink()
             and 300 < p.stat().st_size < 60_000 and not re.search(rb"\r", p.read_bytes())]
    made = list(make_slips(paths, count, random.Random(int(seed))))
    sound = slips.php_errors([case[1] for case in made])
    broken = slips.php_errors([case[2] for case in made])
    cases = [case for case, good, bad in zip(made, sound, broken) if good is None and bad and bad.startswith("Parse")][:count]
    version = subprocess.run(["php", "-n", "-r", "echo PHP_MAJOR_VERSION, '.', PHP_MINOR_VERSION;"], capture_output=True, text=True).stdout
    once, twice = slips.fixed(program, [case[2] for case in cases], ".php", "--php-version", version)
    left = slips.php_errors(once)
    total, preferred, taken, restored = (collections.Counter() for _ in range(4))
    for number, (case, text, error) in enumerate(zip(cases, once, left)):
        kind = case[0]
        total[kind] += 1
        preferred[kind] += text != case[2]
        taken[kind] += text != case[2] and error is None
        restored[kind] += text == case[1]
        if kept and (text == case[2] or error):
            name = kind.replace(" ", "_") + ("-none" if text == case[2] else "-wrong")
            place = pathlib.Path(kept, f"{number:04}-{name}-{case[3]}.php")
            place.parent.mkdir(parents=True, exist_ok=True)
            place.write_text(case[2])
            if error:
                print(f"{place} ({case[4]}:{case[3]}) {kind}: {error if text != case[2] else 'no fix'}")
    for kind in total:
        print(f"{kind:10} {total[kind]:4} preferred {preferred[kind]:4} taken {taken[kind]:4} restored {restored[kind]:4}")
    everything, fixes = sum(total.values()), sum(preferred.values())
    print(f"{everything} slips, a preferred fix for {100 * fixes / everything:.1f} %, of these PHP takes "
          f"{100 * sum(taken.values()) / max(fixes, 1):.1f} %, {100 * sum(restored.values()) / max(fixes, 1):.1f} % are as before; "
          f"fixed twice otherwise than once: {sum(a != b for a, b in zip(once, twice))}")


if __name__ == "__main__":
    main(*sys.argv[1:])
