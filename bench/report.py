"""Makes tables of what the benchmarks wrote, and says which aims are met.

bench/report.py PART... prints the tables of parts (compile, evaluate, scale, load, threads), each
read from build/bench/results/PART.json; bench/report.py --document prints all of
docs/performance.md. Times are medians of the processor's time over rounds of all engines in turn; a
ratio is another's time through ours: above 1 we are faster.
"""

import json
import math
import os
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RESULTS = os.path.join(ROOT, "build", "bench", "results")
UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}

SHAPES = {
    "attribute": '`$name`',
    "comparison": '`$name = "x"`',
    "quantifiers": "every class has an operation with more than 2 parameters, 98 bytes",
    "filters": "three filters along a path, 192 bytes",
    "ifs": "eight nested ifs, 372 bytes",
    "comparisons": "50 comparisons joined by `or`, 1,036 bytes",
}
QUERIES = {
    "count": "number of classes",
    "pattern": "operations whose name matches a pattern",
    "prefix": "number of operations with a prefix and a visibility",
    "every": "every class has an operation with more than 2 parameters",
    "signature": "signature text of every operation",
    "sorted": "classes sorted by name",
    "closure": "closure of generalization from every class",
    "path": "parameters along a filtered path",
}
INDEXED = ["count", "prefix", "every"]  # the index of instances leaves nothing but the work
# What a query has to look at, as a power of the number of classes; the closure's result says its own.
DEMAND = {"count": 0, "sorted": math.log(20 * math.log(20000) / math.log(1000), 20)}
PACKAGES = ["g++", "libpugixml-dev", "libxml2-dev", "libxml2-utils", "libexpat1-dev",
            "libluajit-5.1-dev", "liblua5.4-dev", "jq", "libre2-dev", "libbenchmark-dev"]


class Results:
    """The medians of one part, in nanoseconds and as counters, by GROUP/CASE/ENGINE."""

    def __init__(self, part):
        with open(os.path.join(RESULTS, part + ".json"), encoding="utf-8") as file:
            content = json.load(file)
        self.context = content["context"]
        runs = sorted(content["benchmarks"], key=lambda run: run["family_index"])
        self.medians = {"/".join(run["run_name"].split("/")[:3]): run
                        for run in runs if run.get("aggregate_name") == "median"}

    def time(self, group, case, engine="ours"):
        """The processor's time; a process beside the benchmark reports its own. None if missing."""
        run = self.medians.get(f"{group}/{case}/{engine}")
        if run is None:
            return None
        clock = "real_time" if "manual_time" in run["run_name"] else "cpu_time"
        return run[clock] * UNITS[run["time_unit"]]

    def counter(self, group, case, engine, name):
        return self.medians[f"{group}/{case}/{engine}"][name]

    def ratio(self, group, case, engine):
        """The other's time through ours, or None where the other has none."""
        time = self.time(group, case, engine)
        return None if time is None else time / self.time(group, case)

    def exponent(self, engine, query):
        grown = self.time("queries", query, engine) / self.time("small", query, engine)
        return math.log(grown, 20)


def nanoseconds(time):
    return f"{time:,.0f}" if time >= 10 else f"{time:.1f}"


def milliseconds(time):
    return f"{time / 1e6:,.0f}" if time >= 1e8 else f"{max(time / 1e6, 0.0001):.3g}"


def power(value):
    return f"{round(value, 2) + 0:.2f}"  # without a sign of zero


def factor(value):
    return f"{value:,.0f}" if value >= 10 else f"{value:.2f}"


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|" + "---|" * len(header)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows]) + "\n"


def side_by_side(results, group, captions, engines, write):
    """A row a case: our time, then each other's with its ratio."""
    rows = []
    for case, caption in captions.items():
        row = [caption, write(results.time(group, case))]
        for engine in engines:
            ratio = results.ratio(group, case, engine)
            row.append("–" if ratio is None else
                       f"{write(results.time(group, case, engine))} ({factor(ratio)})")
        rows.append(row)
    return table(["", "ours"] + engines, rows)


def aim(text, measured, is_met):
    return [text, measured, "yes" if is_met else "**no**"]


def lowest(results, group, cases, engine):
    """The case in which we do worst against an engine: its ratio and name."""
    return min((results.ratio(group, case, engine), case) for case in cases
               if results.ratio(group, case, engine) is not None)


def aim_of_lowest(text, results, group, cases, engine, bound, least=False):
    """An aim on the worst ratio: more than a bound, or with `least` no less."""
    ratio, case = lowest(results, group, cases, engine)
    return aim(text, f"{factor(ratio)} ({case})", ratio >= bound if least else ratio > bound)


# --- compile


def compile_tables(results):
    peers = ["lexer", "pugixml", "libxml2", "luajit", "lua"]
    yield "Nanoseconds to compile one meaning, and in brackets the ratio to ours.\n"
    yield side_by_side(results, "shapes", SHAPES, peers, nanoseconds)
    yield "Longer and longer texts: so many comparisons joined by `or`, in nanoseconds.\n"
    yield side_by_side(results, "growth", {str(n): f"{n:,}" for n in (50, 500, 5000)},
                       ["libxml2", "luajit"], nanoseconds)
    yield "Texts of 1 and 2 MB, in milliseconds.\n"
    yield table(["", "1 MB", "2 MB"],
                [[stage] + [milliseconds(results.time(stage, size))
                            for size in ("1000000", "2000000")] for stage in ("lex", "parse")])


def compile_aims(results):
    yield aim_of_lowest("compile: faster than LuaJIT's loader on every shape; the worst ratio",
                        results, "shapes", SHAPES, "luajit", 1)
    yield aim("compile: no slower than libxml2's XPath compiler from 1 KB up; the worst ratio",
              *worst_growth(results))
    attribute = results.time("shapes", "attribute")
    yield aim("compile: the bare attribute in less than 150 ns", f"{attribute:.0f} ns",
              attribute < 150)
    growth = math.log(results.time("growth", "5000") / results.time("growth", "50"), 100)
    yield aim("compile: cost linear in the text; 50 to 5,000 comparisons, as a power of the length",
              f"{growth:.2f}", growth < 1.1)


def worst_growth(results):
    ratio, case = lowest(results, "growth", ("50", "500", "5000"), "libxml2")
    return f"{factor(ratio)} ({case} comparisons)", ratio >= 1


# --- evaluate


def evaluate_tables(results):
    peers = ["structs", "pugixml", "luajit", "lua", "jq"]
    yield "Milliseconds a query, and in brackets the ratio to ours.\n"
    yield side_by_side(results, "queries", QUERIES, peers, milliseconds)
    yield "Nanoseconds to call one bound condition, `$visibility = \"public\"`, for one object.\n"
    yield side_by_side(results, "condition", {"call": "one call"}, peers[:-1], nanoseconds)


def evaluate_aims(results):
    yield aim_of_lowest("evaluate: faster than pugixml's XPath on every query that both can say; "
                        "the worst ratio", results, "queries", QUERIES, "pugixml", 1)
    yield aim_of_lowest("evaluate: five times as fast as pugixml's XPath where the class index "
                        "helps; the worst ratio", results, "queries", INDEXED, "pugixml", 5, True)
    others = [query for query in QUERIES if query != "prefix"]
    yield aim_of_lowest("evaluate: within 4 times of the loop over structs; the worst ratio",
                        results, "queries", others, "structs", 1 / 4, True)
    yield aim_of_lowest("evaluate: within 15 times of it where a pattern stands in for a prefix",
                        results, "queries", ["prefix"], "structs", 1 / 15, True)
    call = results.time("condition", "call")
    yield aim("evaluate: a bound condition called for one object in less than 40 ns",
              f"{call:.0f} ns", call < 40)


# --- scale


def scale_tables(results):
    yield ("Time from 1,000 to 20,000 classes as a power of their number; what has to be looked at "
           "grows likewise, and the caches of the processor hold less of the larger model. In a "
           "process without the other engines: what they leave in the heap would decide how long "
           "it takes to keep 100,000 texts.\n")
    yield table(["", "ours", "structs", "looked at"],
                [[caption, power(results.exponent("ours", query)),
                  power(results.exponent("structs", query)), power(demand(results, query))]
                 for query, caption in QUERIES.items()])


def demand(results, query):
    if query != "closure":
        return DEMAND.get(query, 1)
    sizes = [results.counter(group, query, "ours", "size") for group in ("queries", "small")]
    return math.log(sizes[0] / sizes[1], 20)


def scale_aims(results):
    over, query = max((results.exponent("ours", query) -
                       max(results.exponent("structs", query), demand(results, query)), query)
                      for query in QUERIES)
    yield aim("scale: no query grows faster than the loop over structs or what has to be looked "
              "at, by 0.1; the worst exponent over it", f"{over:+.2f} ({query})", over <= 0.1)


# --- load


def load_tables(results):
    size = os.path.getsize(os.path.join(RESULTS, "large.uml"))
    yield (f"A document of {size / 1e6:.0f} MB in memory: we make a model of it, pugixml and "
           "libxml2 a tree, expat events. Memory is what a process has more than before, as a "
           "multiple of the file: at most, and once it is read.\n")
    rows = []
    for engine in ("ours", "pugixml", "libxml2", "expat"):
        time = results.time("load", "model", engine)
        memory = [results.counter("load", "model", engine, name) for name in ("peak", "loaded")]
        rows.append([engine, milliseconds(time), f"{size / time * 1e3:.0f}",
                     factor(results.ratio("load", "model", engine))] +
                    [factor(value) if value else "–" for value in memory])
    yield table(["", "ms", "MB/s", "ratio", "peak memory", "memory once read"], rows)
    small = os.path.getsize(os.path.join(RESULTS, "small.uml"))
    yield (f"A program from its start to the number of classes of a document of "
           f"{small / 1e6:.1f} MB (jq: of its JSON form), in milliseconds.\n")
    yield table(["", "by the clock", "on processors"],
                [[name, milliseconds(results.time("start", "first", engine)),
                  milliseconds(results.counter("start", "first", engine, "processor") * 1e9)]
                 for engine, name in (("ours", "mmq"), ("xmllint", "xmllint --xpath"),
                                      ("jq", "jq"))])


def load_aims(results):
    yield aim_of_lowest("load: at most twice the time of pugixml's parse; the ratio", results,
                        "load", ["model"], "pugixml", 1 / 2, True)
    start = results.time("start", "first") / 1e6
    yield aim("load: 1.6 MB and the first query answered in less than 25 ms from a cold start",
              f"{start:.1f} ms", start < 25)
    for name, bound, text in (("peak", 6, "at most"), ("loaded", 3, "once it is read")):
        memory = results.counter("load", "model", "ours", name)
        yield aim(f"load: memory at most {bound} times the file, {text}", factor(memory),
                  memory <= bound)


# --- threads

JUDGES = {"eval": "`mmq eval --on`", "lint": "`mmq lint`"}


def threads_tables(results):
    yield ("A program that judges 100,000 operations, from its start to its end, in milliseconds by the "
           "clock: how much faster two threads are in what a condition adds to one that says "
           "nothing.\n")
    yield table(["", "nothing to do", "one thread", "two threads", "times as fast"],
                [[caption] + [milliseconds(results.time("threads", command, name))
                              for name in ("idle", "one", "two")] + [factor(gain(results, command))]
                 for command, caption in JUDGES.items()])


def gain(results, command):
    idle, one, two = (results.time("threads", command, name) for name in ("idle", "one", "two"))
    return (one - idle) / (two - idle)


def threads_aims(results):
    least, command = min((gain(results, command), command) for command in JUDGES)
    yield aim("threads: at least 1.7 times as fast on 2 cores", f"{factor(least)} ({command})",
              least >= 1.7)


# --- the document

PARTS = {"compile": ("Compiling", compile_tables, compile_aims),
         "evaluate": ("Evaluating", evaluate_tables, evaluate_aims),
         "scale": ("Growing", scale_tables, scale_aims),
         "load": ("Loading", load_tables, load_aims),
         "threads": ("Threads", threads_tables, threads_aims)}


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True, cwd=ROOT).stdout


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        models = [line.split(":", 1)[1].strip() for line in file if line.startswith("model name")]
    return f"{models[0]}, {len(models)} cores"


def introduction(context):
    versions = output_of("dpkg-query", "--show", "--showformat", "${Package} ${Version}\n",
                         *PACKAGES).strip().replace("\n", ", ")
    revision = output_of("git", "describe", "--always", "--dirty").strip()
    load = " ".join(f"{value:.1f}" for value in context["load_avg"])
    return f"""# Performance

Written by `scripts/bench`, not by hand: every engine answers the same questions in one run, in one
process for each part, in turn; times are medians of the processor's time. A ratio is another's time
through ours: above 1 we are faster. A wrong answer of any engine ends the run.

- machine: {processor()}; load when it began: {load}
- revision: {revision}
- versions: {versions}
- the model: 20,000 classes, 100,000 operations, 300,000 parameters, generated
- `structs` is a loop in C++, written for the one question; `lexer` is our own lexer alone
- Lua and LuaJIT hold the model as tables, jq as a JSON value; pugixml's host joins texts and looks
  ids up where XPath 1.0 cannot
"""


def write_document():
    results = {part: Results(part) for part in PARTS}
    print(introduction(results["compile"].context))
    print("## What is aimed at\n")
    aims = [row for part, (_, _, list_aims) in PARTS.items() for row in list_aims(results[part])]
    print(table(["aim", "measured", "met"], aims))
    for part, (title, list_tables, _) in PARTS.items():
        print(f"## {title}\n")
        print("\n".join(list_tables(results[part])))


def print_parts(parts):
    for part in parts:
        _, list_tables, list_aims = PARTS[part]
        results = Results(part)
        print("\n".join(list_tables(results)))
        print(table(["aim", "measured", "met"], list_aims(results)))


if __name__ == "__main__":
    if sys.argv[1:] == ["--document"]:
        write_document()
    else:
        print_parts(sys.argv[1:])
