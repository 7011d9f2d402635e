#!/usr/bin/env python3
"""clang-tidy over every source file.

    scripts/check-lint.py BUILD [FILE...]

BUILD is a configured and built directory; its compile_commands.json gives the flags. Most of
clang-tidy's time goes into the headers that every file includes, so the files of one library
are checked together, a batch of them included into one translation unit. A batch whose files
cannot stand together (two of them name a local thing alike) is halved until they can.
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
BATCH = 10


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


def check(batch, flags, folder):
    """Gives what clang-tidy found, "" for nothing."""
    unit = batch[0]
    if len(batch) > 1:
        unit = tempfile.mkstemp(".cpp", dir=folder)[1]
        with open(unit, "w", encoding="utf-8") as file:
            file.writelines(f'#include "{path}"\n' for path in batch)
    result = tidy(unit, flags)
    if result.returncode == 0:
        return ""
    if len(batch) > 1 and "clang-diagnostic-" in result.stdout:  # a clash of local names
        half = len(batch) // 2
        return check(batch[:half], flags, folder) + check(batch[half:], flags, folder)
    return result.stdout or result.stderr


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
