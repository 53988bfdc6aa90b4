"""Reads the reports of mmq lint as those read them for whom they are written, and holds them
against their schemas: check_reports.py MMQ. The model has names that try to break out."""

import csv
import html.parser
import io
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import urllib.parse
import xml.etree.ElementTree

import jsonschema

TESTS = pathlib.Path(__file__).resolve().parent.parent
RULES = TESTS / "mmq/lint/hostile.yaml"
FILE_NAME = "a model, 100% #1: ü.json"

objects = json.loads((TESTS / "mmq/lint/hostile.json").read_text())["objects"]
# What the first rule says, in the order of the document; the object with the id 7 is suppressed.
messages = ["Named %s, <b>{100%%}</b>" % each["attributes"]["name"] for each in objects]
fresh = [text for text, each in zip(messages, objects) if each["id"] != "7"]
failure = f'{RULES}:22:14: The text "x" is not an integer.'
# All that counts, in order: the failure is of the sixth object, the half character of the last.
told = fresh[:6] + [failure] + fresh[6:] + ["Half a character: \ufffd."]


def lint(mmq, folder, form, *options):
    command = [mmq, "lint", "--model", folder / FILE_NAME, RULES, "--format", form, *options]
    done = subprocess.run(command, capture_output=True, cwd=folder, check=False)
    assert (done.returncode, done.stderr) == (5, b""), (form, done.returncode, done.stderr)
    return done.stdout.decode("utf-8")


def without_controls(text):
    return re.sub("[\x00-\x08\x0b\x0c\x0e-\x1f\x7f\ufffe\uffff]", "\ufffd", text)


def on_one_line(text):
    """A text as reports of a line a finding show it."""
    shown = {"\n": r"\n", "\t": r"\t"}
    return re.sub("[\x00-\x1f\x7f-\x9f]",
                  lambda found: shown.get(found[0], f"\\x{ord(found[0]):02x}"), text)


def check_sarif(mmq, folder):
    log = json.loads(lint(mmq, folder, "sarif"))
    schema = json.loads((TESTS / "schemas/sarif-2.1.0-rtm.5.json").read_text())
    jsonschema.Draft4Validator(schema).validate(log)
    run = log["runs"][0]
    results = run["results"]
    assert [each["message"]["text"] for each in results if "suppressions" not in each] == [
        text for text in told if text != failure]
    assert [each["message"]["text"] for each in results if "suppressions" in each] == [messages[6]]
    notifications = run["invocations"][0]["toolExecutionNotifications"]
    assert [each["message"]["text"] for each in notifications] == [failure]
    assert run["invocations"][0]["executionSuccessful"] is False
    uri = results[0]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"]
    assert urllib.parse.unquote(urllib.parse.urlparse(uri).path) == str(folder / FILE_NAME), uri
    for each in results:
        assert run["tool"]["driver"]["rules"][each["ruleIndex"]]["id"] == each["ruleId"]


def check_junit(mmq, folder):
    text = lint(mmq, folder, "junit")
    (folder / "report.xml").write_text(text)
    subprocess.run(["xmllint", "--noout", "--schema", TESTS / "schemas/jenkins-junit.xsd",
                    folder / "report.xml"], check=True, capture_output=True)
    suites = xml.etree.ElementTree.fromstring(text)
    failed = [each.get("message") for each in suites.iter("failure")]
    assert failed == [without_controls(each) for each in fresh], failed
    assert [each.get("message") for each in suites.iter("error")] == [failure]
    assert len(list(suites.iter("skipped"))) == 1
    assert len(list(suites.iter("testcase"))) == int(suites.get("tests"))
    for name, count in (("failures", len(failed)), ("errors", 1)):
        assert suites.get(name) == str(count)
        assert sum(int(each.get(name)) for each in suites.iter("testsuite")) == count


class Page(html.parser.HTMLParser):
    """Notes the tags of a page, their attributes and the headings of findings."""

    def __init__(self):
        super().__init__()
        self.tags, self.attributes, self.headings, self.links = set(), set(), [], set()
        self.is_heading = False

    def handle_starttag(self, tag, attributes):
        self.tags.add(tag)
        self.attributes |= {name for name, _ in attributes}
        self.links |= {value for name, value in attributes if name in ("href", "src")}
        self.is_heading = tag == "h3"
        self.headings += [""] if self.is_heading else []

    def handle_endtag(self, tag):
        self.is_heading = False

    def handle_data(self, data):
        if self.is_heading:
            self.headings[-1] += data


def check_html(mmq, folder):
    text = lint(mmq, folder, "html")
    page = Page()
    page.feed(text)
    expected = [without_controls(each) for each in told[:7] + [messages[6]] + told[7:]]
    assert page.headings == expected, page.headings
    assert text.count("<script>") == 1 and text.count("</script>") == 1
    assert page.links == {"https://example.org/?a=1&b=2%20'"}, page.links
    assert not {"b", "i", "img"} & page.tags, page.tags
    assert not {name for name in page.attributes if name.startswith("on")}, page.attributes


def check_github(mmq, folder):
    lines = lint(mmq, folder, "github").split("\n")
    assert len(lines) == len(told) + 2 and lines[-1] == "", lines
    for line, message in zip(lines, told):
        properties, data = re.fullmatch(r"::(?:error|warning) ([^:]*)::(.*)", line).groups()
        fields = dict(each.split("=", 1) for each in properties.split(","))
        # The escapes are %25, %0A, %0D, %3A and %2C.
        assert urllib.parse.unquote(fields["file"]) == str(folder / FILE_NAME), line
        assert urllib.parse.unquote(data).startswith(on_one_line(message) + "\n"), line


def check_csv(mmq, folder):
    rows = list(csv.DictReader(io.StringIO(lint(mmq, folder, "csv"), newline="")))
    for state, expected in (("new", told), ("suppressed", [messages[6]])):
        found = [row["message"] for row in rows if row["state"] == state]
        assert found == [on_one_line(each) for each in expected], found


def check_json(mmq, folder):
    lines = [json.loads(line) for line in lint(mmq, folder, "json").rstrip("\n").split("\n")]
    assert [each["message"] for each in lines if each["state"] == "new"] == told
    assert [each["uid"] for each in lines][5] == objects[5]["id"]
    assert lines[6]["kind"] == "failure"


def main():
    mmq = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        shutil.copy(TESTS / "mmq/lint/hostile.json", folder / FILE_NAME)
        for check in (check_sarif, check_junit, check_html, check_github, check_csv, check_json):
            check(mmq, folder)


main()
