// What must hold for every document: a model in which all that is listed can be read, or a
// sentence.
#pragma once

#include <string>

#include "FuzzText.h"
#include "repository/ModelReader.h"

/// Reads every feature of an object.
inline void readObject(const RepositoryModel& model, const ClassSummary& summary, MMObject object) {
    std::string buffer;
    std::vector<MMObject> targets;
    const std::string uid(model.uid(object, buffer));
    failIf(uid.empty() || model.find(model.path(object)) == mmNoObject);
    failIf(model.className(object) != summary.name || model.place(object).line == 0);
    for (const std::string_view name : summary.attributes) {
        (void)model.attribute(object, model.attributeKey(name), buffer);
    }
    for (const char* const name : {"parent", "children", "inverse:type"}) {
        const MMKey key = model.associationKey(name);
        (void)(key != mmUnknownKey ? model.targets(object, key, targets) : MMObjectRange());
        targets.clear();
    }
    for (const std::string_view name : summary.associations) {
        for (const MMObject target : model.targets(object, model.associationKey(name), targets)) {
            failIf(target == mmNoObject || model.className(target).empty());
        }
        targets.clear();
    }
    std::size_t level = 0;
    for (MMObject outer = object; outer != mmNoObject; outer = model.container(outer)) {
        failIf(++level > 2001);
    }
}

/// Reads a document and, where it is a model, everything that is in it.
inline void readAndCheck(const std::string& text) {
    try {
        const auto model = readModelText(text, "document");
        std::size_t count = 0;
        for (const ClassSummary& summary : model->classes()) {
            for (const MMObject object : model->instances(summary.name)) {
                if (++count < 1000) {
                    readObject(*model, summary, object);
                }
            }
        }
        failIf(count != model->objectCount());
    } catch (const ModelError& error) {
        failIf(std::string(error.what()).rfind("document:", 0) != 0);
    }
}
