"""The prompt on a terminal: completion by Tab, Ctrl-C, Ctrl-D and the history.

check_prompt.py MMQ: each row is what is typed and what the terminal then shows. The session that
docs/prompt.md shows is held first.
"""

import os
import pty
import re
import select
import sys
import tempfile
import termios
import time

SLOW = "=> ".join(f'for_all v{i} in all "Property" ' for i in range(9)) + "=> true"
CTRL_C = "\x03"

ROWS = [
    ("", "152 objects. :help shows what there is.\r\nmmq> "),
    ('size (all "Cl\t)\n', "\r\n16\r\nmmq> "),
    ('size (all "Lit\tI\t)\n', "\r\n10\r\nmmq> "),
    ('size (all "Literal\t', "\r\nLiteralBoolean           LiteralInteger  "),
    (CTRL_C, "\r\nmmq> "),
    (":des\tPack\t\n", "\r\nPackage: 5 objects\r\n"),
    ("let total = 41 in\n", "\r\n...> "),
    ("\t1 +", "\x1b[10G1 +"),  # behind four blanks
    (" tota\t\n", "\r\n42\r\nmmq> "),
    (SLOW + "\n", "true\r\n"),
    (CTRL_C, "Interrupted.\r\nmmq> "),
    ("\x10\x01\x0b$na\t\n", "\r\nWebShop\r\nmmq> "),
    ("filter {\n", "\r\n...> "),
    (CTRL_C, "\r\nmmq> "),
    ("$name\n", "\r\nWebShop\r\nmmq> "),
    ("\x10\x01:type \n", "\r\nstring\r\nmmq> "),
    ("\x04", "\r\n"),
]


class Terminal:
    """A child on a terminal of its own."""

    def __init__(self, arguments, environment):
        self.shown = ""
        self.process, self.file = pty.fork()
        if self.process == 0:
            os.execve(arguments[0], arguments, environment)

    def wait_for(self, text, seconds):
        """Reads until the text is shown, and passes over it; whether it was, in that time."""
        while text not in self.shown:
            ready = select.select([self.file], [], [], seconds)[0]
            try:
                piece = os.read(self.file, 4096) if ready else b""
            except OSError:
                piece = b""
            if not piece:
                return False
            self.shown += piece.decode()
        self.shown = self.shown.partition(text)[2]
        return True

    def is_edited(self):
        """Whether the program takes keys, and not the terminal, which it does after the prompt."""
        return not termios.tcgetattr(self.file)[3] & termios.ICANON

    def answers(self, keys, text):
        """Types, and waits for what is shown then. Ctrl-C is typed again, as people do."""
        for seconds in [2, 2, 2, 2] if keys == CTRL_C else [20]:
            while keys not in ("", CTRL_C) and not self.is_edited():
                time.sleep(0.01)
            os.write(self.file, keys.encode())
            if self.wait_for(text, seconds):
                return True
        return False


def rows_of_document():
    """What is typed at each prompt of the session, and what stands behind it up to the next one."""
    with open("docs/prompt.md", encoding="utf-8") as file:
        session = file.read().split("```text\n")[1].split("```")[0]
    pieces = re.split(r"^(?:mmq|\.\.\.)> (.*)\n", session, flags=re.MULTILINE)
    rows = [("", pieces[0].partition("\n")[2].replace("\n", "\r\n"))]
    begun = ""
    for line, shown in zip(pieces[1::2], pieces[2::2]):
        is_completed = line.endswith("$")
        rows.append((line[len(begun) :] + ("\t" if is_completed else "\n"),
                     "\r\n" + shown.replace("\n", "\r\n")))
        begun = line if is_completed else ""
    return rows


def hold(arguments, environment, rows):
    """Types all rows, and ends where something else is shown, or another status is left."""
    terminal = Terminal(arguments, environment)
    for keys, expected in rows:
        if not terminal.answers(keys, expected):
            sys.exit(f"{keys!r}: {expected!r} is not in {terminal.shown!r}")
    status = os.waitstatus_to_exitcode(os.waitpid(terminal.process, 0)[1])
    if status != 0:
        sys.exit(f"status {status}")


def main():
    with tempfile.TemporaryDirectory() as folder:
        environment = {"TERM": "xterm", "XDG_STATE_HOME": folder, "HOME": folder, "NO_COLOR": "1"}
        arguments = [sys.argv[1], "repl", "--model", "examples/webshop.uml"]
        hold(arguments, environment, rows_of_document())
        hold(arguments, environment, ROWS)
        history = open(os.path.join(folder, "mmq", "history"), encoding="utf-8").read()
        if "describe\\040Package" not in history:
            sys.exit(f"history {history!r}")


main()
