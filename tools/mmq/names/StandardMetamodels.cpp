#include "names/StandardMetamodels.h"

#include <array>
#include <string_view>

namespace mmq {

namespace {

/// A class as the table has it. Names are separated by blanks. A feature is
/// [^|/]name[>Type|<>Type]: "^" is the container and "/" derived, ">" a reference and "<>" a
/// containment.
struct StandardClass {
    std::string_view name;
    std::string_view supertypes;
    std::string_view features;
};

#include "names/StandardMetamodels.inc"

// Calls `take` for each of the words.
template <class Take>
void forEachWord(std::string_view words, const Take& take) {
    while (!words.empty()) {
        const std::size_t length = std::min(words.find(' '), words.size());
        take(words.substr(0, length));
        words.remove_prefix(std::min(length + 1, words.size()));
    }
}

MetamodelFeature featureOf(std::string_view text) {
    MetamodelFeature feature;
    feature.isContainer = text.front() == '^';
    feature.isStored = !feature.isContainer && text.front() != '/';
    text.remove_prefix(feature.isStored ? 0 : 1);
    const std::size_t end = std::min(text.find_first_of("<>"), text.size());
    feature.name = text.substr(0, end);
    if (end < text.size()) {
        feature.kind = text[end] == '<' ? MetamodelFeature::Kind::containment
                                        : MetamodelFeature::Kind::reference;
        feature.type = text.substr(text.find('>') + 1);
    }
    return feature;
}

MetamodelClass classOf(const StandardClass& row) {
    MetamodelClass result;
    result.name = row.name;
    forEachWord(row.supertypes,
                [&](std::string_view name) { result.supertypes.emplace_back(name); });
    forEachWord(row.features,
                [&](std::string_view text) { result.features.push_back(featureOf(text)); });
    return result;
}

template <class Rows>
std::vector<MetamodelClass> classesOf(const Rows& rows) {
    std::vector<MetamodelClass> classes;
    classes.reserve(rows.size());
    for (const StandardClass& row : rows) {
        classes.push_back(classOf(row));
    }
    return classes;
}

}  // namespace

std::vector<MetamodelClass> standardClasses(StandardMetamodel metamodel) {
    return metamodel == StandardMetamodel::uml ? classesOf(umlClasses) : classesOf(ecoreClasses);
}

}  // namespace mmq
