"""Speaks the Language Server Protocol with mmq lsp: check_lsp.py MMQ, from the root of the tree.

In the texts of the tables « and » stand around a range, and ¦ where the cursor is.
"""

import json
import random
import re
import subprocess
import sys

MODEL = ["--model", "examples/webshop.uml", "--on", "Class"]


def rule(key, value, subject="Class"):
    return (f"rules:\n  - id: a\n    severity: error\n    for: {subject}\n    {key}: {value}\n"
            "    message: x {$name}\n    reason: y\n")


# What is wrong where: a file, its text, and the beginning of each message, with its code.
WRONG = [
    ("a.mmq", '"é𝒳" + $«nam»', ['A Class has no attribute "nam".\nDid you mean $name?']),
    ("a.mmq", "true and\r\n\t$name «=» 3", ["TypeChecker: There is no operator= that takes"]),
    ("a.mmq", 'map {$name} over (all "Class"«»', ['ExprParser: Expected "," or ")", but found']),
    ("a.mmq", "1 «#» + «é»", ['The character "#" has', 'The character "é" has']),
    ("a.mmq", "$name +\r«nme»", ["TypeChecker: Variable nme doesn't exist."]),
    ("a.mmq", " \n", []),
    ("a.yaml", rule("require", ">\n      $name <> \"é𝒳\" and\n        ($«nam» = \"\")"),
     ['A Class has no attribute "nam".']),
    ("a.yaml", rule("require", "'$name + «''» $x'"), ["The character \"'\" has no meaning here."]),
    ("a.yaml", rule("require", "true", "«Clas»"), ['There is no class "Clas"']),
    ("a.yaml", rule("require", "true") + "    «links»: x", ['A rule has no key "links"']),
    ("a.yaml", rule("require", "«nix»").replace("$name", "$«nam»"),
     ["TypeChecker: Variable nix", 'A Class has no attribute "nam"']),
    ("a.yaml", rule("require", "true") + "cases:\n  - name: n\n    rules: [a, «b»]\n"
     "    model: |\n      <a b«»\n    findings: {}\n",
     ['There is no rule "b".', "The document ends before its elements do."]),
    ("a.yml", "rules: [«»", ["This is not well-formed YAML"]),
    ("a.yaml", "\ufeff" + rule("require", "«nix»"), ["TypeChecker: Variable nix doesn't exist."]),
    ("other.yaml", "a: [", []),
]

# What is told about a place: a method, a file, its text, and the range that the answer is about
# with a piece of the answer; of completion, perhaps behind a colon, the text with an item and the
# item, or no text with what is no item.
TOLD = [
    ("hover", "a.mmq", '"𝒳" + $na¦me', '"𝒳" + «$name»', "$name : string"),
    ("hover", "a.mmq", "si¦ze [children]", "«size» [children]", "how many there are"),
    ("hover", "a.mmq", "true ¦ or)", None, None),
    ("hover", "a.mmq", "let x = $name in ¦x + (", "let x = $name in «x» + (", "x : string"),
    ("hover", "a.yaml", rule("require", '>\n      "é" =\n      $na¦me'),
     rule("require", '>\n      "é" =\n      «$name»'), "Of Class."),
    ("hover", "a.yaml", rule("require", "true").replace("$n", "$¦n"),
     rule("require", "true").replace("$name", "«$name»"), "$name : string"),
    ("hover", "a.yaml", "\ufeff" + rule("require", "size ¦[children]"),
     "\ufeff" + rule("require", "size «[children]»"), "collection"),
    ("definition", "a.mmq", 'let ab = "𝒳" in\n"𝒳" + a¦b', 'let «ab» = "𝒳" in\n"𝒳" + ab', ""),
    ("definition", "a.mmq", "up:[a] -> ^[b] -> @u¦p", "«up»:[a] -> ^[b] -> @up", ""),
    ("definition", "a.mmq", "$na¦me", None, None),
    ("definition", "a.mmq", "let x = $name in x¦ + (", "let «x» = $name in x + (", ""),
    ("definition", "a.yaml", rule("require", "'for_all q in [a] => class q¦ = \"\"'"),
     rule("require", "'for_all «q» in [a] => class q = \"\"'"), ""),
    ("completion", "a.mmq", '"𝒳" + $na¦', '"𝒳" + $name', "name"),
    ("completion", "a.mmq", "size [ownedA¦", "size [ownedAttribute]", "ownedAttribute"),
    ("completion", "a.mmq", "size [ownedA¦]", "size [ownedAttribute]", "ownedAttribute"),
    ("completion", "a.mmq", 'all "Cl¦', 'all "Class"', "Class"),
    ("completion", "a.mmq", "$na¦", None, "direction"),
    ("completion", "a.mmq", "let ab = 1 in ¦", "let ab = 1 in ab", "ab"),
    ("completion", "a.mmq", "let ¦", None, "size"),
    ("completion", "a.mmq", "map ¦", None, "else"),
    ("completion", "a.mmq", "true ) ¦", "true ) else", "else"),
    ("completion", "a.mmq", "[type] -> ¦", None, "size"),
    ("completion", "a.mmq", "th¦", "there_exists", "there_exists"),
    ("completion", "a.yaml", rule("require", "$direction = $¦", "Parameter"),
     rule("require", "$direction = $direction", "Parameter"), "direction"),
    ("completion", "a.yaml", rule("require", "true and ¦"), rule("require", "true and not"), "not"),
    ("completion", "a.yaml", rule("require", "|\n      true and\n      ¦"),
     rule("require", "|\n      true and\n      not"), "not"),
    ("completion", "a.yaml", rule("require", "|\n      true and\n    ¦"), None, "not"),
    ("completion", "a.yaml", rule("find", "[children]").replace("$", "$direction + $¦"),
     rule("find", "[children]").replace("$", "$direction + $direction"), "direction"),
    ("completion:", "a.mmq", "up:¦", None, "not"),
    ("completion:", "a.mmq", "size [inverse:¦]", "size [inverse:type]", "inverse:type"),
    ("completion", "a.yaml", rule("require", "¦"), rule("require", "for_all"), "for_all"),
    ("completion", "a.yaml", rule("require", "'size [ownedA¦"),
     rule("require", "'size [ownedAttribute]"), "ownedAttribute"),
    ("completion", "a.yaml", rule("require", "true", "Cl¦"), rule("require", "true", "Class"),
     "Class"),
    ("completion", "a.yaml", "rules:\n  - i¦", None, "if"),
]


def frame(content):
    return b"Content-Length: %d\r\n\r\n%s" % (len(content), content)


def request(number, method, **parameters):
    message = {"jsonrpc": "2.0", "method": method, "params": parameters}
    return frame(json.dumps(message | ({"id": number} if number is not None else {})).encode())


INIT, SHUTDOWN, EXIT = request(1, "initialize"), request(9, "shutdown"), request(None, "exit")
HOVER = request(2, "textDocument/hover", textDocument={"uri": "u"},
                position={"line": 0, "character": 0})
OPEN = request(None, "textDocument/didOpen", textDocument={"uri": "u", "text": "x"})

# Whole conversations: what is sent, the ids and error codes of the answers, and the exit status.
CONVERSATIONS = [
    (INIT + SHUTDOWN + EXIT, [(1, 0), (9, 0)], 0),
    (INIT + EXIT, [(1, 0)], 1),
    (INIT + OPEN + SHUTDOWN + EXIT, [(1, 0), ("textDocument/publishDiagnostics", 0), (9, 0)], 0),
    (INIT + SHUTDOWN, [(1, 0), (9, 0)], 0),
    (INIT, [(1, 0)], 1),
    (b"", [], 1),
    (HOVER + request(None, "initialized") + INIT + HOVER, [(2, -32002), (1, 0), (2, 0)], 1),
    (INIT + INIT + SHUTDOWN + HOVER, [(1, 0), (1, -32600), (9, 0), (2, -32600)], 0),
    (INIT + request("x", "a/b") + request(None, "a/b") + request(3, "$/c")
     + request(None, "$/cancelRequest", id=1), [(1, 0), ("x", -32601), (3, -32601)], 1),
    (INIT + request(2, "textDocument/hover") + frame(b'{"id":5,"method":"textDocument/hover"}')
     + frame(b'{"id":5,"result":null}'), [(1, 0), (2, -32602), (5, -32602)], 1),
    (frame(b"{") + frame(b"") + frame(b'{"id":1,"method":"\xff"}') + frame(b'{"a":"\\ud800"}')
     + INIT, [(None, -32700)] * 4 + [(1, 0)], 1),
    (frame(b"[]") + frame(b"1") + frame(b'{"id":[],"method":"a"}') + frame(b'{"id":7,"method":1}')
     + INIT, [(None, -32600)] * 3 + [(7, -32600), (1, 0)], 1),
    (frame(b"[" * 1000000) + frame(b'{"a":' * 1000000) + INIT, [(None, -32700)] * 2 + [(1, 0)], 1),
    (b"\r\n\r\ncontent-length:" + INIT[15:], [(1, 0)], 1),
    (b"Content-Type: text\r\n" + INIT + b"X: y\nContent-Length: 2\n\n{}",
     [(1, 0), (None, -32600)], 1),
    (b"nonsense\r\n\r\n{}" + INIT + b"Content-Length: -3\r\n\r\n" + HOVER,
     [(None, -32700), (1, 0), (None, -32700), (2, 0)], 1),
    (b"Content-Length: 99999999999999999999\r\n\r\n" + b"z" * 10000 + INIT,
     [(None, -32700), (1, 0)], 1),
    (INIT + b"Content-Length: 99999999999\r\n\r\n{}", [(1, 0)], 1),
]


class Client:
    """A server of its own, and what it says."""

    def __init__(self, mmq, *arguments, **parameters):
        self.server = subprocess.Popen([mmq, "lsp", *arguments], stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE)
        self.seen = []
        self.version = 0
        self.capabilities = self.ask("initialize", **parameters)["capabilities"]

    def send(self, content):
        self.server.stdin.write(content)
        self.server.stdin.flush()

    def read(self):
        size = re.fullmatch(rb"Content-Length: (\d+)\r\n", self.server.stdout.readline())
        assert self.server.stdout.readline() == b"\r\n"
        self.seen.append(json.loads(self.server.stdout.read(int(size[1])).decode()))
        return self.seen[-1]

    def ask(self, method, **parameters):
        self.send(request(5, method, **parameters))
        while self.read().get("id") != 5:
            pass
        return self.seen[-1]["result"]

    def diagnostics(self, method, **parameters):
        """What is wrong in a document when it was opened or changed."""
        self.version += 1
        parameters["textDocument"]["version"] = self.version
        self.send(request(None, method, **parameters))
        while self.read().get("params", {}).get("version") != self.version:
            pass
        return self.seen[-1]["params"]["diagnostics"]

    def open(self, uri, text):
        return self.diagnostics("textDocument/didOpen", textDocument={"uri": uri, "text": text})

    def leave(self):
        self.ask("shutdown")
        self.send(EXIT)
        assert self.server.wait() == 0 and self.server.stdout.read() == b""


def position(text, offset, encoding="utf-16-le"):
    lines = re.split("\r\n|\r|\n", text[:offset])
    return {"line": len(lines) - 1,
            "character": len(lines[-1].encode(encoding)) // (2 if "16" in encoding else 1)}


def unmarked(marked):
    """The text, and the ranges that are marked in it."""
    pieces = re.split("[«»]", marked)
    text = "".join(pieces)
    places = [position(text, len("".join(pieces[:i]))) for i in range(1, len(pieces))]
    return text, [{"start": a, "end": b} for a, b in zip(places[::2], places[1::2])]


def edited(text, edit):
    """The text after an edit; it may be out of range, or in the middle of a character."""
    def offset(place):
        lines = re.findall("[^\r\n]*(?:\r\n|\r|\n|$)", text)
        if place["line"] >= len(lines):
            return len(text)
        line, units = lines[place["line"]].rstrip("\r\n"), place["character"] * 2
        kept = line.encode("utf-16-le")[:units].decode("utf-16-le", "ignore")
        return len("".join(lines[:place["line"]])) + len(kept)
    if "range" not in edit:
        return edit["text"]
    start = offset(edit["range"]["start"])
    end = max(start, offset(edit["range"]["end"]))
    return text[:start] + edit["text"] + text[end:]


def check_wrong(client):
    for name, marked, expected in WRONG:
        text, ranges = unmarked(marked)
        found = client.open("file:///" + name, text)
        told = [each.get("code", "") + ": " * ("code" in each) + each["message"] for each in found]
        assert [each["range"] for each in found] == ranges, (marked, found)
        assert len(told) == len(expected) and all(map(str.startswith, told, expected)), (text, told)
        assert {each["source"] for each in found} <= {"mmq"}


def check_told(client):
    for method, name, cursored, expected, piece in TOLD:
        text = cursored.replace("¦", "")
        client.open("file:///" + name, text)
        answer = client.ask("textDocument/" + method.rstrip(":"),
                            textDocument={"uri": "file:///" + name},
                            position=position(text, cursored.index("¦")),
                            context={"triggerCharacter": method[-1]})
        if method.startswith("completion"):
            edits = [item["textEdit"] for item in answer["items"] if item["label"] == piece]
            made = [edited(text, {"range": e["range"], "text": e["newText"]}) for e in edits]
            assert made == ([expected] if expected else []), (cursored, made)
        elif expected is None:
            assert answer is None, (cursored, answer)
        else:
            assert [answer["range"]] == unmarked(expected)[1], (cursored, answer)
            assert piece in json.dumps(answer, ensure_ascii=False), (cursored, answer)


def check_edits(client):
    """Every character of these texts that is no white space is an error at its place."""
    draw = random.Random(7)
    text = ""
    client.open("file:///edited.mmq", text)
    for _ in range(300):
        edits = []
        for _ in range(draw.randrange(1, 4)):
            places = [{"line": draw.randrange(4), "character": draw.randrange(6)} for _ in "ab"]
            edits.append({"range": dict(zip(("start", "end"), places)),
                          "text": "".join(draw.choices(["é", "𝒳", "#", "\n", "\r\n", "\r"], k=2))})
            if draw.random() < 0.05:
                del edits[-1]["range"]
            text = edited(text, edits[-1])
        changed = client.diagnostics("textDocument/didChange", contentChanges=edits,
                                     textDocument={"uri": "file:///edited.mmq"})
        assert changed == client.open("file:///whole.mmq", text), (edits, text)


def check_memory(mmq):
    """A text in which every name is unknown takes little more than one that is right."""
    client = Client(mmq, *MODEL)
    peaks = []
    for operand, count in ("$name", 0), ("x", 100):
        assert len(client.open("file:///a.mmq", " + ".join([operand] * 20000))) == count
        with open(f"/proc/{client.server.pid}/status", encoding="ascii") as status:
            peaks.append(int(re.search(r"VmHWM:\s+(\d+)", status.read())[1]))
    assert peaks[1] < 3 * peaks[0], peaks
    client.leave()


def check_agreement(mmq):
    """Positions in bytes, Markdown, and a model that the client names."""
    client = Client(mmq, "--stdio", rootUri="file:///nowhere",
                    initializationOptions={"model": "a%20b"},
                    capabilities={"general": {"positionEncodings": ["utf-32", "utf-8"]},
                                  "textDocument": {"hover": {"contentFormat": ["markdown"]}}})
    assert "/nowhere/a%20b: There is no such file." in client.seen[0]["params"]["message"]
    assert client.capabilities["positionEncoding"] == "utf-8"
    text = '"é𝒳" + #'
    found = client.open("file:///a.mmq", text)
    assert found[0]["range"]["start"] == position(text, text.index("#"), "utf-8"), found
    client.open("file:///a.mmq", "1 + 2")
    place = {"textDocument": {"uri": "file:///a.mmq"}, "position": {"line": 0, "character": 2}}
    assert client.ask("textDocument/hover", **place)["contents"]["kind"] == "markdown"
    client.send(request(None, "textDocument/didClose", **place))
    assert client.read()["params"] == {"uri": "file:///a.mmq", "diagnostics": []}
    assert client.ask("textDocument/hover", **place) is None
    client.leave()
    client = Client(mmq, initializationOptions={"model": 5})
    assert '"model" is no text' in client.seen[0]["params"]["message"]
    client.leave()
    client = Client(mmq, initializationOptions={"model": "examples/webshop.uml", "on": "Package"})
    assert "A Package has no" in client.open("a.mmq", "$isAbstract")[0]["message"]
    client.leave()


def check_conversations(mmq):
    for sent, expected, status in CONVERSATIONS:
        done = subprocess.run([mmq, "lsp"], input=sent, capture_output=True, check=False)
        said = [json.loads(each) for each in re.split(rb"Content-Length: \d+\r\n\r\n", done.stdout)
                if each]
        answers = [(each.get("id", each.get("method")), each.get("error", {}).get("code", 0))
                   for each in said]
        assert (answers, done.returncode, done.stderr) == (expected, status, b""), (sent[:99], done)


def main():
    mmq = sys.argv[1]
    client = Client(mmq, *MODEL)
    check_wrong(client)
    check_told(client)
    check_edits(client)
    client.leave()
    check_memory(mmq)
    check_agreement(mmq)
    check_conversations(mmq)


main()
