// A rules file is read anew for each question: editors ask seldom beside what reading one costs.
// While somebody types, it is often no YAML at all; then the line tells where its expression is.
#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "lint/CaseRun.h"
#include "lint/CompiledRules.h"
#include "lint/RuleNames.h"
#include "lint/RuleReader.h"
#include "lsp/Language.h"

namespace mmq {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view yamlBlanks = " \t\r\n";

// The offsets of a file count from behind its byte order mark.
std::size_t shiftOf(const std::string& text) {
    return text.rfind(utf8Mark, 0) == 0 ? utf8Mark.size() : 0;
}

RuleFile readRules(const std::string& name, const std::string& text, MessageSink& sink) {
    FileErrors errors(std::make_shared<const SourceFile>(name, text), sink);
    return readRuleFile(errors);
}

// Of what does not compile, nothing is to be asked any more.
void dropWrong(CompiledRule& rule) {
    if (!rule.expression) {
        rule.expression = CompiledExpression();
    }
    for (CompiledExpression& piece : rule.message) {
        if (!piece) {
            piece = CompiledExpression();
        }
    }
}

// What cannot be read for another reason than its text is no error of the text.
void checkModel(const RuleCase& ruleCase, const ServerModel& model, FileErrors& errors) {
    if (ruleCase.model.origin.file == nullptr) {
        return;
    }
    try {
        readModel(ruleCase, model.reading());
    } catch (const ModelError& error) {
        const std::string what = error.what();
        if (error.getFile() == errors.file()->name()) {
            errors.add(errors.file()->offset(error.getPlace()), what.substr(what.find(": ") + 2));
        }
    }
}

// Whether a line begins with a key that only rules files have. There is other YAML in the world,
// and editors send it all.
bool isRulesText(const std::string& text) {
    for (const std::string_view key : {"rules:", "cases:"}) {
        for (std::size_t at = text.find(key); at != std::string::npos;
             at = text.find(key, at + 1)) {
            if (at == shiftOf(text) || (at > 0 && text[at - 1] == '\n')) {
                return true;
            }
        }
    }
    return false;
}

/// Finds the expression at one place of a rules file.
class PartSearch {
public:
    PartSearch(const std::string& text, std::size_t offset, const ServerModel& model)
        : text_(text),
          offset_(offset),
          shift_(shiftOf(text)),
          lineBegin_(offset == 0 ? 0 : text.rfind('\n', offset - 1) + 1),
          model_(model) {}

    std::optional<ExpressionPart> run() {
        DiagnosticList unused;
        const RuleFile file = readRules("", text_, unused);
        NameSource names = model_.sourceOn({});
        for (const Rule& rule : file.rules) {
            if (file.source->offset(rule.place) + shift_ <= offset_) {
                names = namesOf(rule);
                lookAt(rule, names);
            }
        }
        if (!part_) {
            lookAtLine(names);
        }
        if (part_) {
            part_->isInYaml = true;
        }
        return std::move(part_);
    }

private:
    NameSource namesOf(const Rule& rule) const {
        std::vector<std::string> classes;
        for (const LocatedText& name : rule.classes) {
            classes.push_back(name.text);
        }
        return model_.sourceOn(classes);
    }

    // Of a rule that finds, the message is about objects whose classes are not known here.
    void lookAt(const Rule& rule, const NameSource& names) {
        for (const LocatedText& name : rule.classes) {
            take(name.text, name.origin, names, true);
        }
        if (rule.expression) {
            take(rule.expression->text(), rule.expression->origin(), names, false);
            takeWithBlanks(*rule.expression, rule.place.column, names);
        }
        for (const MessagePiece& piece : rule.message) {
            if (piece.expression) {
                take(piece.expression->text(), piece.expression->origin(),
                     rule.isFinding ? model_.sourceOn({}) : names, false);
            }
        }
    }

    ExpressionPart partOf(const std::string& text, const TextOrigin& origin,
                          const NameSource& names) const {
        ExpressionPart part{text, origin.offsets, names};
        part.offsets.resize(text.size() + 1);
        for (std::size_t& offset : part.offsets) {
            offset += shift_;
        }
        return part;
    }

    // Takes a text that the place is in.
    void take(const std::string& text, const TextOrigin& origin, const NameSource& names,
              bool isClassName) {
        if (!part_ && origin.offsets.front() + shift_ <= offset_ &&
            offset_ <= origin.offsets.back() + shift_) {
            part_ = partOf(text, origin, names);
            part_->isClassName = isClassName;
        }
    }

    // Takes an expression behind which the place is, with nothing but white space between, on its
    // last line or on a line that is indented as those are that belong to it.
    void takeWithBlanks(const ExpressionText& text, std::size_t ruleColumn,
                        const NameSource& names) {
        const std::size_t end = text.origin().offsets.back() + shift_;
        const bool isBehind = end < offset_ && text_.find_first_not_of(yamlBlanks, end) >= offset_;
        if (part_ || !isBehind || (lineBegin_ > end && offset_ - lineBegin_ < ruleColumn)) {
            return;
        }
        part_ = partOf(text.text(), text.origin(), names);
        for (std::size_t at = end; at < offset_; ++at) {
            part_->text.push_back(text_[at]);
            part_->offsets.push_back(at + 1);
        }
    }

    // Takes what stands behind the key of an expression on the same line.
    void lookAtLine(const NameSource& names) {
        const std::string_view line =
            std::string_view(text_).substr(lineBegin_, text_.find('\n', offset_) - lineBegin_);
        const std::size_t keyBegin = std::min(line.size(), line.find_first_not_of(" -"));
        for (const std::string_view key : {"require:", "find:"}) {
            const std::size_t keyEnd = keyBegin + key.size();
            if (line.substr(keyBegin, key.size()) == key && lineBegin_ + keyEnd < offset_) {
                takeValue(line, std::min(line.size(), line.find_first_not_of(" \t", keyEnd)),
                          names);
            }
        }
    }

    // The value may stand in quotes, which are not closed perhaps.
    void takeValue(std::string_view line, std::size_t begin, const NameSource& names) {
        std::size_t end = line.size();
        const char quote = begin < end ? line[begin] : '\0';
        if (quote == '\'' || quote == '"') {
            ++begin;
            end -= end > begin && line.back() == quote ? 1 : 0;
        }
        const bool isBlock = quote == '|' || quote == '>';
        const std::size_t cursor = offset_ - lineBegin_;
        if (!isBlock && cursor <= end) {
            begin = std::min(begin, cursor);
            part_ = ExpressionPart::cut(text_, lineBegin_ + begin, lineBegin_ + end, names);
        }
    }

    const std::string& text_;
    std::size_t offset_;
    std::size_t shift_;
    std::size_t lineBegin_;
    const ServerModel& model_;
    std::optional<ExpressionPart> part_;
};

class RulesLanguage : public Language {
public:
    std::vector<Diagnostic> diagnose(const std::string& name, const std::string& text,
                                     const ServerModel& model) const override {
        if (!isRulesText(text)) {
            return {};
        }
        DiagnosticList list(shiftOf(text));
        const RuleFile file = readRules(name, text, list);
        for (const Rule& rule : file.rules) {
            CompiledRule compiled;
            compiled.compile(rule, list);
            dropWrong(compiled);
            if (model.checksNames()) {
                checkNames(compiled, *model.vocabulary(), list);
            }
        }
        FileErrors errors(file.source, list);
        for (const RuleCase& ruleCase : file.cases) {
            checkModel(ruleCase, model, errors);
        }
        return list.take();
    }

    std::optional<ExpressionPart> partAt(const std::string& text, std::size_t offset,
                                         const ServerModel& model) const override {
        return isRulesText(text) ? PartSearch(text, offset, model).run() : std::nullopt;
    }
};

}  // namespace

const Language& rulesLanguage() {
    static const RulesLanguage language;
    return language;
}

}  // namespace mmq
