"""Finds sentences of messages in src/ that no test has seen: tests/check_messages.py PROGRAM, run
from the root of the tree.

A sentence is a string literal of several words, those that stand one after the other taken together;
it must occur in a literal of a test, in a golden file, or in what PROGRAM writes, which is what the
corpus makes the compiler say. What is no message is named below.
"""

import pathlib
import re
import subprocess
import sys

LITERAL = r'"(?:[^"\\\n]|\\.)*"'
# The text of one literal, or of some in a row, perhaps of other lines.
LITERALS = re.compile(rf'{LITERAL}(?:\s*{LITERAL})*')
CODE = re.compile(rf"""//[^\n]*|#include[^\n]*|R"(\w*)\(((?:.|\n)*?)\)\1"|'(?:[^'\\]|\\.)+'|({LITERALS.pattern})""")
ESCAPES = {"n": "\n", "t": "\t", "r": "\r"}
# Expressions that are compiled, and what breaks the build.
NO_MESSAGES = ("if class this = ", "Two keywords have the same hash")
# What is checked all the same where other rules see to it: steps yield collections of objects whatever
# they are, and a variable has the type that the construct which binds it was checked for.
UNREACHABLE = ("The associations of a path must have", "A component of a path must have",
               "Variable must have type")


def joined(literals):
    """What the compiler makes of literals in a row."""
    parts = re.findall(LITERAL, literals)
    return "".join(re.sub(r"\\(.)", lambda m: ESCAPES.get(m[1], m[1]), part[1:-1])
                   for part in parts)


def literals_of(path):
    text = path.read_text(encoding="utf-8")
    return [(text.count("\n", 0, match.start()) + 1, match[2] or joined(match[3]))
            for match in CODE.finditer(text) if match[2] or match[3]]


def is_sentence(text):
    return re.search(r"[a-z]+ [a-z]|^ ?[A-Z][a-z]+ [a-z{]|^[a-z ]+\.$", text) and \
        not text.startswith(NO_MESSAGES + UNREACHABLE)


def main():
    tests = [path for path in pathlib.Path("tests").rglob("*") if path.is_file()]
    expected = [literal for path in tests if path.suffix in (".cpp", ".h")
                for _, literal in literals_of(path)]
    expected.append(subprocess.run([sys.argv[1]], capture_output=True, check=True).stdout.decode(
        errors="replace"))
    expected += [path.read_text(encoding="utf-8") for path in tests
                 if path.suffix in (".golden", ".py") or "lint" in path.parts]
    everything = "\0".join(expected)
    missing = [f'{path}:{line}: no test has seen "{text}"'
               for path in sorted(pathlib.Path("src").rglob("*")) if path.suffix in (".cpp", ".h")
               for line, text in literals_of(path)
               if is_sentence(text) and text.strip() not in everything]
    print(*missing, sep="\n", end="\n" if missing else "")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
