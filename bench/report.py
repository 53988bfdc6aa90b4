"""Makes tables of ratios from what the benchmarks wrote: bench/report.py PART...

A part NAME is read from build/bench/results/NAME.json. Times are medians of the processor's time
over rounds of all engines in turn; a ratio is another's time through ours: above 1 we are faster.
"""

import json
import math
import os
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RESULTS = os.path.join(ROOT, "build", "bench", "results")
UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def read_medians(part):
    """The median in nanoseconds of every benchmark by its name."""
    with open(os.path.join(RESULTS, part + ".json"), encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    runs.sort(key=lambda run: run["family_index"])  # as they were registered
    return {"/".join(run["run_name"].split("/")[:3]): run[clock(run)] * UNITS[run["time_unit"]]
            for run in runs if run.get("aggregate_name") == "median"}


def clock(run):
    """Where the processor's time is; a process beside the benchmark has its own."""
    return "real_time" if "manual_time" in run["run_name"] else "cpu_time"


def nanoseconds(time):
    return f"{time:,.0f}" if time >= 10 else f"{time:.1f}"


def milliseconds(time):
    return f"{time / 1e6:,.0f}" if time >= 1e8 else f"{max(time / 1e6, 0.0001):.3g}"


def ratio(value):
    return f"{value:,.0f}" if value >= 10 else f"{value:.2f}"


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|" + "---|" * len(header)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def side_by_side(medians, group, engines, write):
    """A row for each case GROUP/CASE/ENGINE: our time, then each other's with its ratio."""
    cases = list(dict.fromkeys(name.split("/")[1] for name in medians if name.startswith(group + "/")))
    rows = []
    for case in cases:
        ours = medians[f"{group}/{case}/ours"]
        row = [case, write(ours)]
        for engine in engines:
            time = medians.get(f"{group}/{case}/{engine}")
            row.append("–" if time is None else f"{write(time)} ({ratio(time / ours)})")
        rows.append(row)
    return table(["", "ours"] + engines, rows)


def report_compile():
    medians = read_medians("compile")
    print("Nanoseconds a compilation, in brackets the ratio to ours:\n")
    print(side_by_side(medians, "shapes", ["lexer", "pugixml", "libxml2", "luajit", "lua"],
                       nanoseconds))
    for name, time in medians.items():
        if not name.startswith("shapes/"):
            print(f"{name}: {nanoseconds(time)} ns")


def report_evaluate():
    medians = read_medians("evaluate")
    peers = ["structs", "pugixml", "luajit", "lua", "jq"]
    print("\nMilliseconds a query, in brackets the ratio to ours:\n")
    print(side_by_side(medians, "queries", peers, milliseconds))
    print("\nNanoseconds a call of a bound condition:\n")
    print(side_by_side(medians, "condition", peers[:-1], nanoseconds))
    print("\nHow the time grows from 1,000 to 20,000 classes, as a power of their number:\n")
    rows = []
    for name, time in medians.items():
        group, query, engine = name.split("/")
        if group == "small" and engine == "ours":
            rows.append([query] + [exponent(medians, query, each) for each in ["ours", "structs"]])
    print(table(["", "ours", "structs"], rows))


def exponent(medians, query, engine):
    grown = medians[f"queries/{query}/{engine}"] / medians[f"small/{query}/{engine}"]
    return f"{math.log(grown, 20):.2f}"


def main():
    for part in sys.argv[1:]:
        globals()["report_" + part]()


if __name__ == "__main__":
    main()
