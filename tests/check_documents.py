"""Holds the blocks of the documents that are no sessions to what runs: check_documents.py, from the
root of the tree.

The lines of such a block, however they are indented and spaced, stand in the same order without a gap in a file
of examples/, tests/ or editors/, or in what a session of the documents prints. Sessions themselves
are run by mmq_test, drawings and grammars are blocks of plain text.
"""

import pathlib
import re
import sys

BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
ELSEWHERE = {"console", "sh", "text"}


def stripped(text):
    return "\n" + "".join(line.strip() + "\n" for line in text.splitlines() if line.strip())


def main():
    documents = [pathlib.Path("README.md"), *sorted(pathlib.Path("docs").glob("*.md"))]
    blocks = [(document, *found) for document in documents
              for found in BLOCK.findall(document.read_text(encoding="utf-8"))]
    pool = [stripped(text) for _, kind, text in blocks if kind == "console"]
    for folder in ("examples", "tests", "editors"):
        pool += [stripped(path.read_text(encoding="utf-8", errors="replace"))
                 for path in pathlib.Path(folder).rglob("*") if path.is_file()]
    strange = [(document, kind, text) for document, kind, text in blocks
               if kind not in ELSEWHERE and not any(stripped(text) in known for known in pool)]
    for document, kind, text in strange:
        print(f"{document}: this block of {kind} is in no example:\n{text}")
    sys.exit(1 if strange or not blocks else 0)


if __name__ == "__main__":
    main()
