#include "names/NameJudge.h"

#include <algorithm>

#include "Messages.h"
#include "names/NearestNames.h"

namespace mmq {

namespace {

constexpr std::size_t mostListed = 3;
constexpr std::size_t shortestTelling = 5;  // of names that are like few others
constexpr const char* manyHave = "other classes have";

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

}  // namespace

std::string sentenceForClass(const std::string& name, const NameVocabulary& vocabulary) {
    return "There is no class " + inQuotes(name) + " in " + vocabulary.subject() +
           (vocabulary.hasModel() ? ", UML or Ecore." : ".");
}

std::string hintForClass(const std::string& name, const NameVocabulary& vocabulary,
                         Letters letters) {
    std::vector<std::string> names = vocabulary.classNames();
    if (letters != Letters::asTheyAre) {
        for (std::string& known : names) {
            known = letters == Letters::small ? lowerCase(known) : upperCase(known);
        }
    }
    return didYouMean(nearestNames(name, names), "\"", "\"");
}

// ---------------------------------------------------------------- judging

void NameJudge::takeAttribute(const StringConstantNode& name, const ClassSet& classes) {
    judge({std::string(name.getText()), name.getSpan(), Kind::attribute, !isBare(name), classes});
}

void NameJudge::takeAssociation(const DefinitionAssociationNode& step, const ClassSet& classes) {
    judge({std::string(step.getName()), step.getNameSpan(), Kind::association, false, classes});
}

void NameJudge::takeReference(const AssociationNode& reference,
                              const DefinitionAssociationNode& step, const ClassSet& classes) {
    judge({std::string(step.getName()), reference.getSpan(), Kind::association, false, classes});
}

void NameJudge::takeClass(const StringConstantNode& name, Letters letters) {
    const bool isKnown = letters == Letters::asTheyAre
                             ? vocabulary_.findClass(std::string(name.getText())).has_value()
                             : vocabulary_.hasClassInAnyCase(std::string(name.getText()));
    if (!isKnown) {
        wrong_.push_back(
            {std::string(name.getText()), name.getSpan(), Kind::classOfObjects, true, {}, letters});
    }
}

void NameJudge::judge(const Use& use) {
    if (!vocabulary_.has(use.classes, use.name, use.readAs())) {
        const bool mayBe = vocabulary_.mayHave(use.classes, use.name, use.readAs());
        (mayBe ? notHeld_ : wrong_).push_back(use);
        return;
    }
    const LeftOut leftOut =
        vocabulary_.hasModel() ? vocabulary_.findLeftOut(use.classes, use.name) : LeftOut::no;
    if (leftOut != LeftOut::no) {
        notHeld_.push_back(use);
        notHeld_.back().leftOut = leftOut;
    }
}

NameFindings NameJudge::findings() {
    return {explain(wrong_, &NameJudge::errorFor), explain(notHeld_, &NameJudge::noteFor)};
}

// Explanations take their time; there may be as many uses as the text has words.
std::vector<TextError> NameJudge::explain(std::vector<Use>& uses,
                                          TextError (NameJudge::*explanation)(const Use&)
                                              const) const {
    std::stable_sort(uses.begin(), uses.end(), [](const Use& a, const Use& b) {
        return a.span.line != b.span.line ? a.span.line < b.span.line
                                          : a.span.column < b.span.column;
    });
    std::vector<TextError> result;
    result.reserve(uses.size());
    for (const Use& use : uses) {
        TextError error = result.size() < mostErrorsShown
                              ? (this->*explanation)(use)
                              : TextError{use.span.line, use.span.column, {}};
        const bool isSaid = !result.empty() && result.back().line == error.line &&
                            result.back().column == error.column &&
                            result.back().sentence == error.sentence;
        if (!isSaid) {  // of a name that a variable leads to several places
            result.push_back(std::move(error));
        }
    }
    return result;
}

// ---------------------------------------------------------------- explaining

// A name that objects have, but only as an attribute.
bool NameJudge::isOnlyAttribute(const Use& use) const {
    return use.kind == Kind::association &&
           vocabulary_.has(use.classes, use.name, ReadAs::attribute);
}

TextError NameJudge::errorFor(const Use& use) const {
    TextError error{use.span.line, use.span.column, {}};
    if (use.kind == Kind::classOfObjects) {
        error.sentence = sentenceForClass(use.name, vocabulary_);
        error.hint = hintForClass(use.name, vocabulary_, use.letters);
    } else if (isOnlyAttribute(use)) {
        error.sentence = inQuotes(use.name) + " is an attribute here, not an association.";
        error.hint = "Its value is $" + use.name + ".";
    } else {
        error.sentence = denial(use) + " " + inQuotes(use.name) + ".";
        error.hint = hintFor(use);
    }
    return error;
}

// That objects of the classes have no such name, up to the name.
std::string NameJudge::denial(const Use& use) const {
    const std::string kind = use.kind == Kind::attribute ? "attribute" : "association";
    if (use.classes.contains(vocabulary_.allClasses())) {
        return (vocabulary_.hasModel() ? "No object of " : "No class of ") + vocabulary_.subject() +
               " has an " + kind;
    }
    std::vector<std::string> names;
    use.classes.forEach(
        [&](ClassNumber number) { names.push_back(vocabulary_.className(number)); });
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

// What may have been meant, and whose name it is as it stands.
std::string NameJudge::hintFor(const Use& use) const {
    const std::string meant = suggestion(use);
    const std::string others = elsewhere(use);
    return meant + (meant.empty() || others.empty() ? "" : " ") + others;
}

// Where other classes have the name, it is not the beginning of one that was meant.
std::string NameJudge::suggestion(const Use& use) const {
    const bool isFunction = use.name == "class" || use.name == "uid";
    if (use.kind == Kind::attribute && isFunction) {
        return "The " + use.name + " of an object is " + use.name + " this.";
    }
    std::vector<std::string> names = nearest(use, use.classes);
    if (!vocabulary_.classesWith(use.name, use.readAs()).empty()) {
        names.erase(std::remove_if(
                        names.begin(), names.end(),
                        [&use](const std::string& name) { return name.rfind(use.name, 0) == 0; }),
                    names.end());
    }
    return didYouMean(names, use.before(), use.after());
}

// "A and B have $x.": the other classes that have the name, or else the nearest one of all, if it
// may be misspelt besides.
std::string NameJudge::elsewhere(const Use& use) const {
    std::string name = use.name;
    std::string others = havers(name, use.readAs());
    const bool isTelling = name.size() >= shortestTelling;
    if (others.empty() && isTelling && nearest(use, use.classes).empty()) {
        const std::vector<std::string> names = nearest(use, vocabulary_.allClasses());
        name = names.empty() ? std::string() : names.front();
        others = havers(name, use.readAs());
    }
    others = others == manyHave ? "Other classes have" : others;
    return others.empty() ? others : others + " " + use.before() + name + use.after() + ".";
}

// The names of the classes that the use may mean; of what leads back, by what leads forth.
std::vector<std::string> NameJudge::nearest(const Use& use, const ClassSet& classes) const {
    constexpr std::size_t farthest = 2;  // of letters in which the prefix may differ
    const std::size_t colon = use.name.find(':');
    const bool isInverse = colon != std::string::npos &&
                           editDistance(use.name.substr(0, colon + 1), inversePrefix) <= farthest;
    if (!isInverse) {
        return nearestNames(use.name, vocabulary_.names(classes, use.readAs()));
    }
    const std::string name = use.name.substr(colon + 1);
    const std::vector<std::string> inverses = vocabulary_.inverses(classes);
    const bool isThere = std::find(inverses.begin(), inverses.end(), name) != inverses.end();
    std::vector<std::string> names = isThere ? std::vector{name} : nearestNames(name, inverses);
    for (std::string& found : names) {
        found.insert(0, inversePrefix);
    }
    return names;
}

// "A and B have": the classes that have a name; empty where there are none.
std::string NameJudge::havers(const std::string& name, ReadAs readAs) const {
    const std::vector<std::string> classes = vocabulary_.classesWith(name, readAs);
    return classes.empty() ? std::string()
           : classes.size() > mostListed
               ? manyHave
               : joined(classes, " and ") + (classes.size() == 1 ? " has" : " have");
}

TextError NameJudge::noteFor(const Use& use) const {
    const bool isAttribute = use.kind == Kind::attribute;
    TextError note{use.span.line, use.span.column, inQuotes(use.name)};
    switch (use.leftOut) {
        case LeftOut::container:
            note.sentence += " is the container, which " + vocabulary_.subject() +
                             " does not name: write " + (isAttribute ? "$parent." : "[parent].");
            break;
        case LeftOut::derived:
            note.sentence += " is derived, and " + vocabulary_.subject() +
                             " does not hold it: it " +
                             (isAttribute ? "reads as the empty text." : "reaches nothing.");
            break;
        case LeftOut::no: {
            const std::string others = havers(use.name, use.readAs());
            note.sentence = denial(use) + " " + note.sentence + " in " + vocabulary_.subject() +
                            "; " + (others.empty() ? manyHave : others) + " it.";
        }
    }
    return note;
}

}  // namespace mmq
