"""Runs the benchmark programs and prints each benchmark beside its reference."""

import argparse
import fnmatch
import json
import pathlib
import re
import subprocess
import sys
import tempfile

import process
import stalls

ROOT = pathlib.Path(__file__).resolve().parents[2]
SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def run_program(program, arguments):
    """Seconds of each benchmark of a program, by name: the shortest of five runs that take turns
    with those of the others, so that what else the machine does counts least."""
    with tempfile.NamedTemporaryFile(suffix=".json") as output:
        done = subprocess.run(
            [program, f"--benchmark_out={output.name}", "--benchmark_out_format=json",
             "--benchmark_repetitions=5", "--benchmark_enable_random_interleaving=true",
             *arguments],
            check=False, capture_output=True, text=True)
        if done.returncode != 0:
            raise SystemExit(f"{program.name} failed:\n{done.stderr}")
        text = output.read()
    # A filter that leaves nothing of a program makes it write nothing.
    data = json.loads(text) if text else {"benchmarks": []}
    times = {}
    for entry in data["benchmarks"]:
        if "error_message" in entry:
            raise SystemExit(f"{program.name}: {entry['name']}: {entry['error_message']}")
        if entry["run_type"] == "iteration":
            name, seconds = entry["run_name"], entry["real_time"] * SECONDS[entry["time_unit"]]
            times[name] = min(seconds, times.get(name, seconds))
    return times


def read_limits(path):
    """(pattern, limit, unit) of each line; the unit of a ratio is empty."""
    limits = []
    for line in path.read_text("utf-8").splitlines():
        words = line.split("#")[0].split()
        if words:
            value, unit = re.fullmatch(r"([\d.]+)(ms|frames)?", words[1]).groups()
            limits.append((words[0], float(value), unit or ""))
    return limits


def limit_of(name, limits):
    names = (name, name.partition("/")[0])
    return next(((limit, unit) for pattern, limit, unit in limits
                 if any(fnmatch.fnmatchcase(each, pattern) for each in names)), (None, ""))


def idle_limits(times, limits):
    """Limits that hold for no benchmark, as after renaming one."""
    return [limit[0] for limit in limits
            if all(limit_of(name, [limit])[0] is None for name in times)]


def reference_name(name):
    """The reference of X/8 is X_reference/8."""
    base, slash, rest = name.partition("/")
    return base + "_reference" + slash + rest


def rows_of(times, limits):
    for name, seconds in times.items():
        if name.partition("/")[0].endswith("_reference"):
            continue
        reference = times.get(reference_name(name))
        row = {"name": name, "seconds": seconds, "reference": reference}
        if reference:
            row["ratio"] = seconds / reference
        row["limit"], row["unit"] = limit_of(name, limits)
        measured = {"ms": seconds * 1e3, "frames": seconds}.get(row["unit"], row.get("ratio"))
        if row["limit"] and measured is None:
            raise SystemExit(f"{name} has a limit but no reference")
        row["isOver"] = bool(row["limit"] and measured > row["limit"])
        yield row


def in_words(seconds):
    for unit in ("s", "ms", "us"):
        if seconds >= SECONDS[unit]:
            return f"{seconds / SECONDS[unit]:.3g} {unit}"
    return f"{seconds * 1e9:.3g} ns"


def print_table(heading, rows):
    print()
    cells = [heading, *rows]
    widths = [max(len(row[i]) for row in cells) for i in range(len(heading))]
    for row in cells:
        print("  ".join([row[0].ljust(widths[0])] +
                        [text.rjust(width) for text, width in zip(row[1:], widths[1:])]).rstrip())


def table_row(row):
    ratio, limit = row.get("ratio"), row["limit"]
    measured = f"{row['seconds']:.2f} frames" if row["unit"] == "frames" else in_words(row["seconds"])
    return (row["name"], measured,
            in_words(row["reference"]) if row["reference"] else "",
            f"{ratio:.2f}" if ratio else "",
            "" if limit is None else f"{limit:g} {row['unit']}" if row["unit"] else f"{limit:.2f}",
            "OVER" if row["isOver"] else "")


def main():
    parser = argparse.ArgumentParser(prog="./bench", description=__doc__)
    parser.add_argument("--long", action="store_true", help="watch the memory for three minutes")
    parser.add_argument("--no-process", action="store_true",
                        help="leave out launch time and memory of the whole program")
    arguments, further = parser.parse_known_args()

    limits = read_limits(ROOT / "benchmarks/limits.txt")
    programs = sorted(path for path in (ROOT / "build/benchmarks").glob("bench_*")
                      if path.is_file())
    times = {}
    for program in programs:
        print(f"  {program.name}", flush=True)
        times.update(run_program(program, further))
    rows = list(rows_of(times, limits))
    idle = idle_limits(times, limits)
    if idle and not further:
        raise SystemExit(f"limits.txt has limits for no benchmark: {', '.join(idle)}")
    measures = []
    if not arguments.no_process:
        print("  the whole program: launch, memory", flush=True)
        measures = process.measure(ROOT / "build", 180 if arguments.long else 20)
        print("  the whole program: waits for the window", flush=True)
        measures += stalls.measure(ROOT / "build")

    print_table(("Benchmark", "time", "reference", "ratio", "limit", ""),
                [table_row(row) for row in rows])
    if measures:
        print_table(("Whole program", "measured", "limit", ""),
                    [(m["name"], f"{m['value']:.3g} {m['unit']}",
                      f"{m['limit']:g} {m['unit']}" if m["limit"] else "",
                      "OVER" if m["isOver"] else "") for m in measures])
    (ROOT / "build/bench.json").write_text(
        json.dumps({"benchmarks": rows, "process": measures}, indent=1), "utf-8")
    return 1 if any(entry["isOver"] for entry in rows + measures) else 0


if __name__ == "__main__":
    sys.exit(main())
