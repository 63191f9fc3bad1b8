"""What the scripts that measure slips share: the program is run over each text with its slip and without it."""

import collections
import concurrent.futures
import json
import pathlib
import re
import subprocess
import tempfile


def check(program, folder):
    run = subprocess.run([program, "check", "--no-config", "--format", "json", folder], capture_output=True, text=True)
    records = collections.defaultdict(list)
    for record in json.loads(run.stdout):
        records[pathlib.Path(record["file"]).name].append(record)
    return records


def new_records(program, cases, suffix):
    """For each case (text, text with a slip): the records that only the second one has."""
    with tempfile.TemporaryDirectory() as place:
        for i, (text, slip) in enumerate(cases):
            pathlib.Path(place, f"{i}a{suffix}").write_text(text)
            pathlib.Path(place, f"{i}b{suffix}").write_text(slip)
        records = check(program, place)
    for i in range(len(cases)):
        before = collections.Counter(r["code"] for r in records[f"{i}a{suffix}"])
        new = []
        for record in records[f"{i}b{suffix}"]:
            before[record["code"]] -= 1
            if before[record["code"]] < 0:
                new.append(record)
        yield new


def php_errors(texts):
    """What `php -l` says of each text: "Parse error: ...", "Fatal error: ...", or None when it takes it."""
    def verdict(path):
        run = subprocess.run(["php", "-n", "-d", "short_open_tag=1", "-d", "display_errors=1", "-d", "log_errors=0", "-l", path],
                             capture_output=True, text=True, errors="replace")
        error = re.search(r"^((?:Parse|Fatal) error: .*) in .* on line (\d+)$", run.stdout, re.M)
        return f"{error[1]} in line {error[2]}" if error else None

    with tempfile.TemporaryDirectory() as place, concurrent.futures.ThreadPoolExecutor(2) as pool:
        paths = [pathlib.Path(place, f"{i}.php") for i in range(len(texts))]
        for path, text in zip(paths, texts):
            path.write_text(text)
        return list(pool.map(verdict, paths))


def fixed(program, texts, suffix, *options):
    """The texts after `check --fix`, and after another one."""
    with tempfile.TemporaryDirectory() as place:
        paths = [pathlib.Path(place, f"{i:05}{suffix}") for i in range(len(texts))]
        for path, text in zip(paths, texts):
            path.write_text(text)
        runs = []
        for _ in range(2):
            subprocess.run([program, "check", "--no-config", "--quiet", "--format", "json", "--fix", *options, place], stdout=subprocess.DEVNULL)
            runs.append([path.read_text() for path in paths])
    return runs


def tell(program, slips, suffix, missed=None):
    """`slips`: (kind, text, text with the slip, its line, what else). Prints what was found; `missed` is called for the others."""
    total, found, near, told = (collections.Counter() for _ in range(4))
    results = new_records(program, [(case[1], case[2]) for case in slips], suffix)
    for case, new in zip(slips, results):
        kind, line = case[0], case[3]
        total[kind] += 1
        found[kind] += bool(new)
        close = any(r["startLine"] - 1 <= line <= r["startLine"] + 1 for r in new)
        near[kind] += close
        told[kind] += len(new)
        if missed and (not new or not close or len(new) > 2):
            missed(case, new)
    for kind in total:
        print(f"{kind:12} {total[kind]:4} found {found[kind]:4} near {near[kind]:4} records {told[kind]:4}")
    everything, hits = sum(total.values()), sum(found.values())
    print(f"all {everything} found {100 * hits / everything:.1f} % near {100 * sum(near.values()) / hits:.1f} % "
          f"records a slip {sum(told.values()) / hits:.2f}")
