#include "names/NameJudge.h"

#include <algorithm>

#include "Messages.h"
#include "names/NearestNames.h"

namespace mmq {

namespace {

constexpr std::size_t mostListed = 3;

std::string kindOf(ReadAs readAs) {
    return readAs == ReadAs::attribute ? "attribute" : "association";
}

bool beginsWithVowel(std::string_view word) { return word.find_first_of("AEIOUaeiou") == 0; }

std::string withArticle(const std::string& word) {
    return (beginsWithVowel(word) ? "an " : "a ") + word;
}

std::string joined(const std::vector<std::string>& words, const char* lastSeparator) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += i == 0 ? "" : i + 1 < words.size() ? ", " : lastSeparator;
        text += words[i];
    }
    return text;
}

// The name behind "$" stands there as it is, other texts between quotes.
bool isBare(const StringConstantNode& name) {
    return name.getSpan().endOffset - name.getSpan().offset == name.getText().size();
}

bool isBefore(const TextError& a, const TextError& b) {
    return a.line != b.line ? a.line < b.line : a.column < b.column;
}

}  // namespace

void NameJudge::judgeAttribute(const StringConstantNode& name, const ClassSet& classes) {
    const bool isBareName = isBare(name);
    judge({name.getText(), name.getSpan(), ReadAs::attribute, isBareName ? "$" : "\"",
           isBareName ? "" : "\""},
          classes);
}

void NameJudge::judgeAssociation(const DefinitionAssociationNode& step, const ClassSet& classes) {
    judge({step.getName(), step.getNameSpan(), ReadAs::association, "[", "]"}, classes);
}

void NameJudge::judge(const Use& use, const ClassSet& classes) {
    if (!vocabulary_.has(classes, use.name, use.readAs)) {
        findings_.errors.push_back(
            {use.span.line, use.span.column, sentenceFor(use, classes), hintFor(use, classes)});
        return;
    }
    const LeftOut leftOut =
        vocabulary_.hasModel() ? vocabulary_.findLeftOut(classes, use.name) : LeftOut::no;
    if (leftOut != LeftOut::no) {
        findings_.notes.push_back({use.span.line, use.span.column, noteFor(use, leftOut), {}});
    }
}

// That objects of some classes have none of the kind.
std::string NameJudge::denial(const ClassSet& classes, const std::string& kind) const {
    if (classes.contains(vocabulary_.allClasses())) {
        return (vocabulary_.hasModel() ? "No object of " : "No class of ") + vocabulary_.subject() +
               " has an " + kind;
    }
    std::vector<std::string> names;
    classes.forEach([&](ClassNumber number) { names.push_back(vocabulary_.className(number)); });
    std::sort(names.begin(), names.end());
    if (names.size() == 1) {
        return (beginsWithVowel(names[0]) ? "An " : "A ") + names[0] + " has no " + kind;
    }
    if (names.size() == 2) {
        return "Neither " + withArticle(names[0]) + " nor " + withArticle(names[1]) + " has an " +
               kind;
    }
    return (names.size() <= mostListed ? "None of " + joined(names, " and ")
                                       : "None of the " + std::to_string(names.size()) +
                                             " classes that objects can have here") +
           " has an " + kind;
}

std::string NameJudge::sentenceFor(const Use& use, const ClassSet& classes) const {
    return isOnlyAttribute(use, classes)
               ? quoted(use.name) + " is an attribute here, not an association."
               : denial(classes, kindOf(use.readAs)) + " " + quoted(use.name) + ".";
}

bool NameJudge::isOnlyAttribute(const Use& use, const ClassSet& classes) const {
    return use.readAs == ReadAs::association &&
           vocabulary_.has(classes, use.name, ReadAs::attribute);
}

std::string NameJudge::hintFor(const Use& use, const ClassSet& classes) const {
    if (isOnlyAttribute(use, classes)) {
        return "Its value is $" + use.name + ".";
    }
    const std::size_t colon = use.name.find(':');
    std::string hint =
        colon == std::string::npos
            ? didYouMean(nearestNames(use.name, vocabulary_.names(classes, use.readAs)), use.before,
                         use.after)
            : didYouMean(nearestNames(use.name.substr(colon + 1), vocabulary_.inverses(classes)),
                         use.before + "inverse:", use.after);
    const std::vector<std::string> others = vocabulary_.classesWith(use.name, use.readAs);
    if (!others.empty() && others.size() <= mostListed) {
        hint.append(hint.empty() ? "" : " ").append(joined(others, " and "));
        hint.append(others.size() == 1 ? " has it." : " have it.");
    }
    return hint;
}

std::string NameJudge::noteFor(const Use& use, LeftOut leftOut) const {
    const bool isAttribute = use.readAs == ReadAs::attribute;
    if (leftOut == LeftOut::container) {
        return quoted(use.name) + " is the container, which " + vocabulary_.subject() +
               " does not name: write " + (isAttribute ? "$parent." : "[parent].");
    }
    return quoted(use.name) + " is derived, and " + vocabulary_.subject() +
           " does not hold it: it " +
           (isAttribute ? "reads as the empty text." : "reaches nothing.");
}

std::string sentenceForClass(const std::string& name, const NameVocabulary& vocabulary) {
    return "There is no class " + quoted(name) + " in " + vocabulary.subject() +
           (vocabulary.hasModel() ? ", UML or Ecore." : ".");
}

std::string hintForClass(const std::string& name, const NameVocabulary& vocabulary) {
    return didYouMean(nearestNames(name, vocabulary.classNames()), "\"", "\"");
}

void NameJudge::judgeClass(const StringConstantNode& name) {
    if (!vocabulary_.findClass(name.getText())) {
        findings_.errors.push_back({name.getLine(), name.getColumn(),
                                    sentenceForClass(name.getText(), vocabulary_),
                                    hintForClass(name.getText(), vocabulary_)});
    }
}

NameFindings NameJudge::takeFindings() {
    std::stable_sort(findings_.errors.begin(), findings_.errors.end(), isBefore);
    std::stable_sort(findings_.notes.begin(), findings_.notes.end(), isBefore);
    return std::move(findings_);
}

}  // namespace mmq
