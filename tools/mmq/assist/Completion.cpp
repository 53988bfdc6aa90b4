// Three things are found out one after the other. The tokens before the cursor tell what kind of
// word is begun there. The grammar tells which words it takes. And a text in which a name stands at
// the cursor, with what is missing at its end, is analysed for what is in scope there, and for the
// classes of the objects that the name is applied to.
#include "assist/Completion.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "Compilation.h"
#include "assist/CursorContext.h"
#include "assist/NodeSearch.h"
#include "assist/PartialText.h"
#include "names/NameCheck.h"
#include "names/VisibleSymbols.h"
#include "namespace/TopLevelEnvironment.h"
#include "parser/KeywordTable.h"
#include "parser/TokenNumber.h"
#include "types/TypeExprPrintVisitor.h"

namespace mmq {

namespace {

// A name as it is written between quotes.
std::string escapedName(const std::string& name, char closing) {
    std::string result;
    for (const char byte : name) {
        if (byte == '\\' || byte == closing) {
            result += '\\';
        }
        result += byte;
    }
    return result;
}

/// Finds what may stand at one place of one text.
class Completer {
public:
    Completer(const std::string& text, std::size_t cursor, const NameSource& names)
        : text_(text), cursor_(cursor), names_(names), context_(text, cursor) {}

    Completion run();

private:
    void analyzeWith(const std::string& filler, std::size_t fillerOffset, std::size_t rest);
    std::size_t restBehindWord() const;
    std::size_t restBehindQuote(char closing) const;
    ClassSet classesOfName() const;

    void addWords();
    void addFunctions();
    void addNamesInScope(SymbolKind kind);
    void addNamesInText(SymbolKind kind);
    void addFeatures(ReadAs kind);
    void addClasses();
    void add(const std::vector<std::string>& names, CompletionKind kind);
    bool hasMatch() const { return !completion_.matching(context_.written()).empty(); }
    void finish();

    const std::string& text_;
    std::size_t cursor_;
    const NameSource& names_;
    CursorContext context_;
    Analysis analysis_;
    std::size_t fillerOffset_ = 0;
    Completion completion_;
};

// ---------------------------------------------------------------- the text around the place

std::size_t Completer::restBehindWord() const {
    std::size_t rest = cursor_;
    while (rest < text_.size() && isNameByte(text_[rest])) {
        ++rest;
    }
    return rest;
}

// Where the text goes on behind a quote that is closed on the same line; else its end.
std::size_t Completer::restBehindQuote(char closing) const {
    const std::size_t end = text_.find_first_of(std::string{closing, '\n', '"', '['}, cursor_);
    return end < text_.size() && text_[end] == closing ? end + 1 : text_.size();
}

// Analyses the text with a name at the cursor, and what stands from `rest` on behind it; or without
// that, if it is no expression so.
void Completer::analyzeWith(const std::string& filler, std::size_t fillerOffset, std::size_t rest) {
    const std::string beginning = text_.substr(0, fillerOffset) + filler;
    fillerOffset_ = fillerOffset;
    analysis_ = analyzeSilently(beginning + text_.substr(rest));
    if (!analysis_.root) {
        const std::optional<std::string> whole = withEnding(beginning);
        analysis_ = whole ? analyzeSilently(*whole) : Analysis();
    }
}

ClassSet Completer::classesOfName() const {
    const std::optional<NameUse> use =
        analysis_.root
            ? findNameUse(*analysis_.root, fillerOffset_, *names_.vocabulary, names_.classesOfThis)
            : std::nullopt;
    return use ? use->classes : names_.vocabulary->allClasses();
}

// ---------------------------------------------------------------- what may stand there

void Completer::add(const std::vector<std::string>& names, CompletionKind kind) {
    for (const std::string& name : names) {
        completion_.items.push_back({name, kind});
    }
}

void Completer::addFunctions() {
    for (const Scope::Entry& entry : TopLevelEnvironment::instance()->getScope()->entries()) {
        const std::string name(entry.name);
        if (isName(name) && !name.starts_with("operator")) {
            completion_.items.push_back(
                {name, CompletionKind::function, printedType(entry.symbol->getType())});
        }
    }
}

void Completer::addNamesInScope(SymbolKind kind) {
    const ASTNode* const node =
        analysis_.root ? findInnermost(*analysis_.nameSpace, fillerOffset_) : nullptr;
    if (node == nullptr) {
        addNamesInText(kind);
        return;
    }
    const bool isVariable = kind == SymbolKind::variable;
    for (const Scope::Entry& entry : visibleSymbols(*analysis_.nameSpace, *node, kind)) {
        const std::string name(entry.name);
        if (isName(name)) {
            completion_.items.push_back(
                {name, isVariable ? CompletionKind::variable : CompletionKind::label,
                 isVariable ? printedType(entry.symbol->getType()) : ""});
        }
    }
}

// Of a text that cannot be parsed: names that are declared before the cursor.
void Completer::addNamesInText(SymbolKind kind) {
    const std::vector<PlacedToken>& tokens = context_.tokens();
    for (std::size_t i = 1; i < tokens.size(); ++i) {
        const int before = tokens[i - 1].number;
        const bool isVariable =
            before == TOKEN_LET || before == TOKEN_FOR_ALL || before == TOKEN_THERE_EXISTS;
        if (kind == SymbolKind::variable && isVariable) {
            completion_.items.push_back({tokens[i].text, CompletionKind::variable});
        } else if (kind == SymbolKind::label && tokens[i].number == TOKEN_COLON) {
            completion_.items.push_back({tokens[i - 1].text, CompletionKind::label});
        }
    }
}

// The words that the grammar takes behind what stands before; all where that is wrong itself. A
// name that is only declared there, of a variable or a label, is the writer's own.
void Completer::addWords() {
    const std::string before = text_.substr(0, context_.offset());
    const Continuation continuation(before);
    const bool isAnyTaken = !continuation.isPossible();
    for (const KeywordTable::Entry& keyword : KeywordTable::instance()->entries()) {
        const std::string word(keyword.word);
        if (isAnyTaken || continuation.accepts(word)) {
            completion_.items.push_back({word, CompletionKind::keyword});
        }
    }
    const bool takesValue = continuation.accepts("x") && Continuation(before + "x").accepts("(");
    if (takesValue || isAnyTaken) {
        addFunctions();
        addNamesInScope(SymbolKind::variable);
    }
}

// Names of what documents show; others only where none of them fits.
void Completer::addFeatures(ReadAs kind) {
    if (names_.vocabulary == nullptr) {
        return;
    }
    const NameVocabulary& vocabulary = *names_.vocabulary;
    const bool isAssociation = kind == ReadAs::association;
    const ClassSet classes = classesOfName();
    const CompletionKind itemKind =
        isAssociation ? CompletionKind::association : CompletionKind::attribute;
    if (isAssociation && context_.written().starts_with(inversePrefix)) {
        for (const std::string& name : vocabulary.inverses(classes)) {
            completion_.items.push_back({std::string(inversePrefix) + name, itemKind});
        }
        return;
    }
    add(vocabulary.shownNames(classes, kind), itemKind);
    if (isAssociation) {
        add({"children", "parent", std::string(inversePrefix)}, itemKind);
    }
    if (!hasMatch()) {
        add(vocabulary.names(classes, kind), itemKind);
    }
}

void Completer::addClasses() {
    if (names_.vocabulary == nullptr) {
        return;
    }
    const NameVocabulary& vocabulary = *names_.vocabulary;
    vocabulary.shownClasses().forEach([&](ClassNumber number) {
        completion_.items.push_back({vocabulary.className(number), CompletionKind::className});
    });
    if (!hasMatch()) {
        add(vocabulary.classNames(), CompletionKind::className);
    }
}

// Drops what cannot be written there, and puts the rest in order, each name once.
void Completer::finish() {
    std::vector<CompletionItem>& items = completion_.items;
    const bool isQuoted = completion_.closing != '\0';
    const auto isUnfit = [isQuoted](const CompletionItem& item) {
        return isQuoted ? item.text.find_first_of("\r\n\t") != std::string::npos
                        : item.kind != CompletionKind::keyword && !isName(item.text);
    };
    items.erase(std::remove_if(items.begin(), items.end(), isUnfit), items.end());
    for (CompletionItem& item : items) {
        item.text = isQuoted ? escapedName(item.text, completion_.closing) : item.text;
    }
    std::stable_sort(items.begin(), items.end(),
                     [](const auto& a, const auto& b) { return a.text < b.text; });
    const auto isSame = [](const auto& a, const auto& b) { return a.text == b.text; };
    items.erase(std::unique(items.begin(), items.end(), isSame), items.end());
}

Completion Completer::run() {
    completion_.offset = context_.offset();
    switch (context_.begun()) {
        case Begun::nothing:
            break;
        case Begun::word:
            analyzeWith("x", context_.offset(), restBehindWord());
            addWords();
            break;
        case Begun::label:
            analyzeWith("x", context_.offset(), restBehindWord());
            addNamesInScope(SymbolKind::label);
            break;
        case Begun::attribute:
            analyzeWith("x", context_.offset(), restBehindWord());
            addFeatures(ReadAs::attribute);
            break;
        case Begun::association:
            completion_.closing = ']';
            analyzeWith("[x]", context_.offset() - 1, restBehindQuote(']'));
            addFeatures(ReadAs::association);
            break;
        case Begun::className:
            completion_.closing = '"';
            addClasses();
    }
    finish();
    return std::move(completion_);
}

}  // namespace

std::vector<CompletionItem> Completion::matching(std::string_view written) const {
    std::vector<CompletionItem> result;
    std::copy_if(items.begin(), items.end(), std::back_inserter(result),
                 [written](const CompletionItem& item) { return item.text.starts_with(written); });
    return result;
}

Completion complete(const std::string& text, std::size_t cursor, const NameSource& names) {
    return Completer(text, std::min(cursor, text.size()), names).run();
}

Completion completeClass(const std::string& written, const NameSource& names) {
    const std::string beginning = "all \"";
    Completion completion = complete(beginning + written, beginning.size() + written.size(), names);
    completion.offset -= beginning.size();
    completion.closing = '\0';
    return completion;
}

}  // namespace mmq
