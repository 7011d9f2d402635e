#!/usr/bin/env python3
"""clang-tidy over every source file.

    scripts/check-lint.py BUILD [FILE...]

BUILD is a configured and built directory; its compile_commands.json gives the flags. Most of
clang-tidy's time goes into the headers that every file includes, so the files of one library
are checked together, a batch of them included into one translation unit. Files that
cannot stand together (two of them name a local thing alike) are told apart by the compiler,
which is much quicker, before clang-tidy reads them.
"""
import json
import os
import shlex
import subprocess
import sys
import tempfile
from collections import defaultdict
from concurrent.futures import ThreadPoolExecutor

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BATCH = 40


def sources(names):
    if names:
        return [os.path.abspath(name) for name in names]
    listed = subprocess.run(["git", "ls-files", "*.cpp", ":!tests", ":!bench", ":!fuzz", ":!examples", ":!*windows*.cpp"],
                            cwd=ROOT, check=True, capture_output=True, text=True).stdout.split()
    return [os.path.join(ROOT, name) for name in listed]


def compile_flags(build):
    """The flags of every file, without compiler, input and output."""
    flags = {}
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        for entry in json.load(file):
            words = shlex.split(entry["command"])
            start = next(i for i, word in enumerate(words) if word.startswith("-"))
            kept = []
            skip = False
            for word in words[start:]:
                if skip or word == "-c" or word == entry["file"]:
                    skip = False
                elif word == "-o":
                    skip = True
                else:
                    kept.append(word)
            flags[entry["file"]] = tuple(kept)
    return flags


def tidy(path, flags):
    return subprocess.run(["clang-tidy", "--quiet", path, "--", *flags, "-Wno-unknown-warning-option"],
                          cwd=ROOT, capture_output=True, text=True)


def unit_of(batch, folder):
    """One file that stands for all of the batch."""
    if len(batch) == 1:
        return batch[0]
    unit = tempfile.mkstemp(".cpp", dir=folder)[1]
    with open(unit, "w", encoding="utf-8") as file:
        file.writelines(f'#include "{path}"\n' for path in batch)
    return unit


def clashing(batch, flags, folder):
    """The files of the batch that cannot be parsed after those before them."""
    parsed = subprocess.run(["clang++", "-fsyntax-only", "-ferror-limit=0", "-w", *flags, unit_of(batch, folder)],
                            cwd=ROOT, capture_output=True, text=True)
    failed = {line.split(":", 1)[0] for line in parsed.stderr.splitlines() if ": error:" in line}
    return [path for path in batch if path in failed]


def together(batch, flags, folder):
    """The batch as lists of files that can be parsed as one unit each."""
    parts = []
    while batch:
        later = clashing(batch, flags, folder) if len(batch) > 1 else []
        if len(later) == len(batch):
            later = batch[1:]
        part = [path for path in batch if path not in later]
        # What failed may have hidden what fails after it.
        more = later
        while more and len(part) > 1:
            more = clashing(part, flags, folder)
            part = [path for path in part if path not in more]
            later = later + more
        parts.append(part)
        batch = later
    return parts


def check(batch, flags, folder):
    """Gives what clang-tidy found, "" for nothing."""
    found = ""
    for part in together(batch, flags, folder):
        result = tidy(unit_of(part, folder), flags)
        if result.returncode != 0 and len(part) > 1 and "clang-diagnostic-" in result.stdout:
            found += "".join(check([path], flags, folder) for path in part)  # a clash in a header
        elif result.returncode != 0:
            found += result.stdout or result.stderr
    return found


def main():
    build, *names = sys.argv[1:]
    flags = compile_flags(build)
    groups = defaultdict(list)
    for path in sources(names):
        if path not in flags:
            sys.exit(f"{path}: нет в {build}/compile_commands.json")
        groups[flags[path]].append(path)
    batches = [(group[i:i + BATCH], options)
               for options, group in groups.items() for i in range(0, len(group), BATCH)]
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(os.cpu_count()) as pool:
        with open(os.path.join(ROOT, ".clang-tidy"), encoding="utf-8") as config, \
                open(os.path.join(folder, ".clang-tidy"), "w", encoding="utf-8") as copy:
            copy.write(config.read())
        reports = list(pool.map(lambda job: check(*job, folder), batches))
    findings = "".join(reports)
    if findings:
        sys.exit(findings)
    print(f"Проверка clang-tidy: без замечаний ({sum(len(b) for b, _ in batches)} файлов).")


if __name__ == "__main__":
    main()
