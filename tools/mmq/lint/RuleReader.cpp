// One reader a file goes through its YAML with a table of keys for each thing that a file holds; an
// entry whose keys are wrong is still read to its end, so that all errors show at once. What is
// known only when all is read (ids given twice, names of rules in cases) is checked last.
#include "lint/RuleReader.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "TextFile.h"
#include "lint/ErrorLimit.h"
#include "lint/MessageTemplate.h"
#include "lint/YamlDocument.h"

namespace mmq {

namespace {

bool isId(const std::string& text) {
    constexpr std::string_view inside =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-/";
    return text.find_first_not_of(inside) == std::string::npos;
}

bool hasWebScheme(const std::string& text) {
    return text.rfind("https://", 0) == 0 || text.rfind("http://", 0) == 0;
}

// The first byte that no web address holds, or the end.
std::size_t findForbiddenInLink(const std::string& text) {
    const auto isForbidden = [](char byte) {
        constexpr std::string_view printable = "\"<>\\^`{|}";
        const auto code = static_cast<unsigned char>(byte);
        return code <= 0x20U || code == 0x7FU || printable.find(byte) != std::string_view::npos;
    };
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isForbidden) -
                                    text.begin());
}

// "%3C" for "<".
std::string percentEncoded(char byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto code = static_cast<unsigned char>(byte);
    return {'%', digits[code >> 4U], digits[code & 0xFU]};
}

/// Reads one rules file.
class RuleFileReader {
public:
    explicit RuleFileReader(FileErrors& errors) : tree_(errors), document_(errors) {}

    RuleFile read() {
        file_.source = document_.errors().file();
        const YamlNode* const root = tree_.root();
        if (root != nullptr) {
            document_.readMapping(
                *root, "A rules file",
                {{"rules", false, [this](const auto& node) { readRules(node); }},
                 {"cases", false, [this](const auto& node) { readCases(node); }}});
            if (root->isMapping() && root->children.empty()) {
                document_.fail(*root, "A rules file has rules, cases, or both.");
            }
        }
        return std::move(file_);
    }

private:
    using Node = YamlNode;

    void fail(const Node& node, const std::string& sentence) { document_.fail(node, sentence); }
    TextPlace place(const Node& node) const { return file_.source->place(node.offset); }

    // What a key does that is a text.
    std::function<void(const Node&)> textInto(std::string& variable, const char* what) {
        return [this, &variable, what](const Node& node) {
            if (const auto text = document_.readText(node, what)) {
                variable = text->text;
            }
        };
    }

    void readRules(const Node& node) {
        document_.readList(node, "The value of rules",
                           [this](const Node& rule) { file_.rules.push_back(readRule(rule)); });
    }

    Rule readRule(const Node& node) {
        Rule rule;
        rule.file = file_.source;
        rule.place = place(node);
        int expressions = 0;
        const auto expression = [&](bool isFinding) {
            return [this, &rule, &expressions, isFinding](const Node& value) {
                ++expressions;
                rule.isFinding = isFinding;
                readExpression(value, rule);
            };
        };
        document_.readMapping(
            node, "A rule",
            {{"id", true, [&](const Node& value) { readId(value, rule.id); }},
             {"severity", true, [&](const Node& value) { readSeverity(value, rule.severity); }},
             {"for", true, [&](const Node& value) { readClasses(value, rule.classes); }},
             {"require", false, expression(false)},
             {"find", false, expression(true)},
             {"message", true, [&](const Node& value) { readMessage(value, rule.message); }},
             {"reason", true, textInto(rule.reason, "The reason of a rule")},
             {"link", false, [&](const Node& value) { readLink(value, rule.link); }},
             {"may-be-absent", false,
              [&](const Node& value) { readFlag(value, rule.mayBeAbsent); }},
             {"suppress", false, [&](const Node& value) { readSuppressions(value, rule); }}});
        if (node.isMapping() && expressions != 1) {
            fail(node, "A rule has one of the keys \"require\" and \"find\".");
        }
        return rule;
    }

    void readId(const Node& node, std::string& id) {
        const auto text = document_.readText(node, "The id of a rule");
        if (!text) {
            return;
        }
        if (!isId(text->text)) {
            fail(node, "An id consists of letters, digits and the characters . _ - /.");
        }
        id = text->text;
    }

    void readSeverity(const Node& node, Severity& severity) {
        const auto text = document_.readText(node, "The severity of a rule");
        const auto known = text ? severityOf(text->text) : std::optional<Severity>();
        if (known) {
            severity = *known;
        } else if (text) {
            fail(node, "A severity is error, warning or note.");
        }
    }

    void readClasses(const Node& node, std::vector<LocatedText>& classes) {
        std::set<std::string> seen;
        const auto add = [&](const Node& name) {
            if (auto text = document_.readText(name, "The class of a rule")) {
                if (!seen.insert(text->text).second) {
                    fail(name, "The class " + inQuotes(text->text) + " stands here twice.");
                }
                classes.push_back(*std::move(text));
            }
        };
        if (node.isList()) {
            document_.readList(node, "The value of for", add);
        } else {
            add(node);
        }
    }

    void readExpression(const Node& node, Rule& rule) {
        if (auto text = document_.readText(node, "The expression of a rule")) {
            rule.expression.emplace(std::move(text->text), std::move(text->origin));
        }
    }

    void readMessage(const Node& node, std::vector<MessagePiece>& message) {
        if (const auto text = document_.readText(node, "The message of a rule")) {
            message = parseMessage(*text, document_.errors());
        }
    }

    void readLink(const Node& node, std::string& link) {
        const auto text = document_.readText(node, "The link of a rule");
        if (!text) {
            return;
        }
        const std::size_t forbidden = findForbiddenInLink(text->text);
        if (!hasWebScheme(text->text)) {
            fail(node, "A link begins with https:// or http://.");
        } else if (forbidden < text->text.size()) {
            const char byte = text->text[forbidden];
            document_.errors().add(text->origin.offsets[forbidden],
                                   text->origin.offsets[forbidden + 1],
                                   "A link holds no " + inQuotes({&byte, 1}) + "; it is written " +
                                       percentEncoded(byte) + " there.");
        } else {
            link = text->text;
        }
    }

    void readFlag(const Node& node, bool& flag) {
        const auto text = document_.readText(node, "The value of may-be-absent");
        if (text && text->text != "true" && text->text != "false") {
            fail(node, "This is true or false.");
        }
        flag = text && text->text == "true";
    }

    void readSuppressions(const Node& node, Rule& rule) {
        document_.readList(node, "The value of suppress", [this, &rule](const Node& entry) {
            Suppression suppression;
            suppression.place = place(entry);
            document_.readMapping(
                entry, "A suppression",
                {{"element", true, textInto(suppression.element, "The element of a suppression")},
                 {"reason", true, textInto(suppression.reason, "The reason of a suppression")}});
            rule.suppressions.push_back(std::move(suppression));
        });
    }

    void readCases(const Node& node) {
        document_.readList(node, "The value of cases", [this](const Node& entry) {
            RuleCase ruleCase;
            ruleCase.place = place(entry);
            document_.readMapping(
                entry, "A case",
                {{"name", true, textInto(ruleCase.name, "The name of a case")},
                 {"model", true, [&](const Node& value) { readModel(value, ruleCase.model); }},
                 {"rules", false, [&](const Node& value) { readRuleNames(value, ruleCase); }},
                 {"findings", true, [&](const Node& value) { readFindings(value, ruleCase); }}});
            file_.cases.push_back(std::move(ruleCase));
        });
    }

    void readModel(const Node& node, LocatedText& model) {
        if (auto text = document_.readText(node, "The model of a case")) {
            model = *std::move(text);
        }
    }

    void readRuleNames(const Node& node, RuleCase& ruleCase) {
        document_.readList(node, "The value of rules", [this, &ruleCase](const Node& name) {
            if (const auto text = document_.readText(name, "The id of a rule")) {
                ruleCase.rules.push_back(*text);
            }
        });
    }

    // Of each rule the elements, each perhaps with its message; "{}" is no finding.
    void readFindings(const Node& node, RuleCase& ruleCase) {
        document_.readPairs(
            node, "The value of findings", [&](const LocatedText& rule, const Node& elements) {
                document_.readList(
                    elements, "What is expected of a rule",
                    [&](const Node& element) { readFinding(element, rule, ruleCase.findings); });
            });
    }

    void readFinding(const Node& node, const LocatedText& rule,
                     std::vector<ExpectedFinding>& findings) {
        ExpectedFinding finding;
        finding.rule = rule;
        finding.place = place(node);
        if (!node.isMapping()) {
            textInto(finding.element, "The element of a finding")(node);
            findings.push_back(std::move(finding));
            return;
        }
        document_.readPairs(node, "A finding", [&](const LocatedText& key, const Node& value) {
            finding.element = key.text;
            textInto(finding.message.emplace(), "The message of a finding")(value);
            findings.push_back(finding);
        });
    }

    YamlTree tree_;
    YamlDocument document_;
    RuleFile file_;
};

using RulesById = std::map<std::string, const Rule*>;

// Adds an error for each rule that the cases of a file speak of and that is not there.
void checkCases(const RuleFile& file, const RulesById& rules, FileErrors& errors) {
    const auto check = [&](const LocatedText& id) {
        if (rules.count(id.text) == 0) {
            errors.add(id, "There is no rule " + inQuotes(id.text) + ".");
        }
    };
    for (const RuleCase& ruleCase : file.cases) {
        std::for_each(ruleCase.rules.begin(), ruleCase.rules.end(), check);
        for (const ExpectedFinding& finding : ruleCase.findings) {
            check(finding.rule);
        }
    }
}

// Adds the rules of a file to those that are known, with an error for an id that is.
void addRules(const RuleFile& file, RulesById& known, FileErrors& errors) {
    for (const Rule& rule : file.rules) {
        const auto [other, isNew] = known.emplace(rule.id, &rule);
        if (!isNew) {
            const Rule& first = *other->second;
            errors.add(file.source->offset(rule.place),
                       "The id " + inQuotes(rule.id) + " is already that of the rule at " +
                           first.file->name() + ":" + std::to_string(first.place.line) + ".");
        }
    }
}

// Whether no id stands twice, in whichever files.
bool checkIds(const std::vector<RuleFile>& files, RulesById& known, MessageSink& sink) {
    bool isRight = true;
    for (const RuleFile& file : files) {
        FileErrors errors(file.source, sink);
        addRules(file, known, errors);
        isRight = isRight && errors.isEmpty();
    }
    return isRight;
}

}  // namespace

RuleFile readRuleFile(FileErrors& errors) {
    RuleFile file = RuleFileReader(errors).read();
    RulesById rules;
    addRules(file, rules, errors);
    if (!rules.empty()) {
        checkCases(file, rules, errors);
    }
    return file;
}

std::vector<RuleFile> readRuleFiles(const std::vector<std::string>& paths, const Options& options) {
    MessageWriter writer(options);
    ErrorLimit limit(writer);
    std::vector<RuleFile> files;
    bool isRight = true;
    for (const std::string& path : paths) {
        const auto source = std::make_shared<const SourceFile>(
            path == "-" ? "<stdin>" : path, readTextFile(path, "The rules file"));
        FileErrors errors(source, limit);
        files.push_back(RuleFileReader(errors).read());
        isRight = isRight && errors.isEmpty();
    }
    RulesById rules;
    isRight = isRight && checkIds(files, rules, limit);
    for (const RuleFile& file : files) {
        FileErrors errors(file.source, limit);
        if (isRight) {
            checkCases(file, rules, errors);
        }
        isRight = isRight && errors.isEmpty();
    }
    if (isRight && rules.empty()) {
        FileErrors(files.front().source, limit).add(0, "There is no rule.");
    }
    limit.finish();
    isRight = isRight && !rules.empty();
    return isRight ? std::move(files) : std::vector<RuleFile>();
}

}  // namespace mmq
