#include "repl/ModelDescription.h"

#include <algorithm>
#include <set>
#include <vector>

#include "Counted.h"

namespace mmq {

namespace {

void sortOnce(std::vector<std::string>& names) {
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
}

std::string commaSeparated(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text.append(text.empty() ? "" : ", ").append(name);
    }
    return text;
}

// Each name with the classes that it reaches in the model.
std::vector<std::string> withReach(std::vector<std::string> associations, const ClassSet& classes,
                                   const NameVocabulary& vocabulary) {
    for (std::string& association : associations) {
        std::vector<std::string> reached;
        vocabulary.shownReach(classes, association).forEach([&](ClassNumber number) {
            reached.push_back(vocabulary.className(number));
        });
        std::sort(reached.begin(), reached.end());
        association += reached.empty() ? "" : " -> " + commaSeparated(reached);
    }
    return associations;
}

// A heading and the names behind it: in a row, or one below the other.
std::string section(const std::string& heading, const std::vector<std::string>& names,
                    const std::string& separator) {
    std::string text;
    for (const std::string& name : names) {
        text += text.empty() ? "    " + heading : separator;
        text += name;
    }
    return text.empty() ? text : text + "\n";
}

// What objects of a class may have that has none in the model.
std::string describeDeclared(const ClassSet& classes, const NameVocabulary& vocabulary) {
    std::vector<std::string> associations = vocabulary.names(classes, ReadAs::association);
    std::vector<std::string> attributes = vocabulary.names(classes, ReadAs::attribute);
    sortOnce(associations);
    sortOnce(attributes);
    std::vector<std::string> others;
    std::set_difference(attributes.begin(), attributes.end(), associations.begin(),
                        associations.end(), std::back_inserter(others));
    return section("attributes:   ", others, ", ") + section("associations: ", associations, ", ");
}

}  // namespace

std::string listClasses(const ModelNames& names) {
    std::string text;
    if (names.model() == nullptr) {
        std::vector<std::string> classes = names.vocabulary()->classNames();
        sortOnce(classes);
        for (const std::string& name : classes) {
            text += name + "\n";
        }
        return text;
    }
    constexpr std::size_t countWidth = 6;
    for (const ClassSummary& summary : names.model()->classes()) {
        const std::string count = std::to_string(summary.count);
        text.append(countWidth - std::min(countWidth, count.size()), ' ');
        text.append(count).append("  ").append(summary.name).append("\n");
    }
    return text;
}

std::string describeClass(const std::string& name, const ModelNames& names) {
    const NameVocabulary& vocabulary = *names.vocabulary();
    const ClassSet classes = vocabulary.findClasses({name});
    if (!vocabulary.shownClasses().meets(classes)) {
        return name +
               (names.model() != nullptr ? ": no object here; objects of it may have\n" : "\n") +
               describeDeclared(classes, vocabulary);
    }
    const std::size_t count = names.model()->instances(name).size();
    const std::string below = "\n                  ";
    return name + ": " + counted(count, "object") + "\n" +
           section("attributes:   ", vocabulary.shownNames(classes, ReadAs::attribute), ", ") +
           section(
               "associations: ",
               withReach(vocabulary.shownNames(classes, ReadAs::association), classes, vocabulary),
               below);
}

}  // namespace mmq
