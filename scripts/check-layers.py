#!/usr/bin/env python3
"""Checks what the build cannot: which folder includes which, and what a form may hold."""

import pathlib
import re
import subprocess
import sys

# Folder -> folders whose headers it may include. Forms stand above all logic folders.
LOGIC = ["refbooks", "journals", "reports", "import"]
ALLOWED = {
    "jet": ["jet"],
    "data": ["data", "jet"],
    "sheets": ["sheets", "data", "jet"],
    "shell": ["shell", "data", "jet"],
    "papers": ["papers", "sheets", "data", "jet"],
    "demo": ["demo", "data", "jet"],
    **{folder: [folder, "papers", "sheets", "shell", "data", "jet"] for folder in LOGIC},
    "import": ["import", "refbooks", "shell", "data", "jet"],
    "reports": ["reports", "journals", "papers", "sheets", "shell", "data", "jet"],
    "cli": ["cli", "demo", *LOGIC, "papers", "shell", "data", "jet"],
    "app": ["app", "demo", "shell/forms", *[f"{f}/forms" for f in LOGIC], *LOGIC, "shell", "data", "jet"],
    "shell/forms": ["shell/forms", "sheets", "shell", "data", "jet"],
    "papers/forms": ["papers/forms", "papers", "sheets", "shell/forms", "shell", "data", "jet"],
    **{f"{folder}/forms": [f"{folder}/forms", folder, *(["journals", "journals/forms"] if folder == "reports" else ["refbooks"] if folder == "import" else []), "papers/forms", "papers", "shell/forms", "sheets", "shell", "data", "jet"] for folder in LOGIC},
}
WIDGETS = re.compile(r"#include <Q(Widget|Dialog|MainWindow|MessageBox|TableView|Application|Mdi\w+)>")
SQL = re.compile(r"\b(SELECT|DELETE|UPDATE|INSERT)\s+(\*|[A-Z]|INTO)")
INCLUDE = re.compile(r'#include "([^"]+)"')


def folder_of(path: str) -> str:
    parts = pathlib.PurePosixPath(path).parts
    if len(parts) > 2 and parts[1] == "forms":
        return f"{parts[0]}/forms"
    return parts[0]


def faults(path: str, text: str) -> list[str]:
    folder = folder_of(path)
    if folder not in ALLOWED:
        return []
    found = []
    for number, line in enumerate(text.splitlines(), 1):
        where = f"{path}:{number}"
        include = INCLUDE.match(line)
        if include and "/" in include[1] and folder_of(include[1]) not in ALLOWED[folder]:
            found.append(f"{where}: {folder} must not include {include[1]}")
        if folder == "jet" and line.startswith("#include <Q"):
            found.append(f"{where}: the engine includes Qt")
        is_form = folder.endswith("/forms") or folder == "app"
        if not is_form and WIDGETS.match(line):
            found.append(f"{where}: logic includes Qt Widgets")
        if is_form and SQL.search(line):
            found.append(f"{where}: a form holds SQL")
    return found


def main() -> int:
    root = pathlib.Path(__file__).resolve().parent.parent
    listed = subprocess.run(["git", "ls-files", "*.cpp", "*.h"], cwd=root, capture_output=True, text=True, check=True)
    paths = [p for p in listed.stdout.split() if not p.startswith(("tests/", "bench/"))]
    found = [f for p in paths for f in faults(p, (root / p).read_text(encoding="utf-8"))]
    print("\n".join(found) if found else f"Слои: без замечаний ({len(paths)} файлов).")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
