#!/usr/bin/python3
"""Runs clang-tidy over the sources named by compile_commands.json. A file that was clean is only
looked at again when it, a header of ours that it includes, or the rules have changed."""

import argparse
import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)
FOLDERS = (ROOT / "src", ROOT, ROOT / "tests")


@functools.lru_cache(maxsize=None)
def included(path):
    """Our files that `path` includes itself."""
    found = []
    for name in INCLUDE.findall(path.read_text("utf-8", "replace")):
        places = [folder / name for folder in (path.parent,) + FOLDERS]
        if name.startswith("ui_"):
            places.append(path.parent / (name[3:-2] + ".ui"))
        found += [place for place in places if place.is_file()][:1]
    return found


def fingerprint(source):
    seen, waiting = set(), [source]
    while waiting:
        path = waiting.pop()
        if path not in seen:
            seen.add(path)
            waiting += included(path)
    digest = hashlib.sha256()
    for path in [ROOT / ".clang-tidy", *sorted(seen)]:
        digest.update(path.read_bytes())
    return digest.hexdigest()


def lint(source, build):
    done = subprocess.run(["clang-tidy-14", "--quiet", "-p", build, str(source)],
                          capture_output=True, text=True, check=False)
    return source, done.returncode == 0, done.stdout


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", help="folder with compile_commands.json")
    parser.add_argument("folders", nargs="+", help="folders whose sources are looked at")
    parser.add_argument("-j", type=int, default=os.cpu_count())
    arguments = parser.parse_args()

    folders = [ROOT / folder for folder in arguments.folders]
    commands = json.loads((pathlib.Path(arguments.build) / "compile_commands.json").read_text())
    sources = {pathlib.Path(command["file"]) for command in commands}
    sources = sorted(source for source in sources if set(folders) & set(source.parents))
    clean_folder = pathlib.Path(arguments.build) / "lint"
    clean_folder.mkdir(exist_ok=True)
    stamps = {source: clean_folder / fingerprint(source) for source in sources}
    due = [source for source in sources if not stamps[source].exists()]

    faulty = 0
    with concurrent.futures.ThreadPoolExecutor(arguments.j) as pool:
        for source, is_clean, text in pool.map(lambda s: lint(s, arguments.build), due):
            if is_clean:
                stamps[source].touch()
            else:
                faulty += 1
                print(text)
    for old in set(clean_folder.iterdir()) - set(stamps.values()):
        old.unlink()
    print(f"{len(sources)} files, {len(due)} looked at, {faulty} with findings")
    return 1 if faulty else 0


if __name__ == "__main__":
    sys.exit(main())
