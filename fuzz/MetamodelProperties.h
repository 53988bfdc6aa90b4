// What must hold for every Ecore document: classes whose features can all be found, or a sentence
// with a place.
#pragma once

#include <string>

#include "FuzzText.h"
#include "repository/Metamodel.h"
#include "repository/ModelError.h"

inline void checkClass(const Metamodel& metamodel, const MetamodelClass& metamodelClass) {
    failIf(metamodel.findClass(metamodelClass.name) == nullptr);
    for (const MetamodelFeature* const feature : metamodel.features(metamodelClass.name)) {
        failIf(metamodel.findFeature(metamodelClass.name, feature->name) != feature);
    }
}

inline void readAndCheckMetamodel(const std::string& text) {
    try {
        const auto metamodel = Metamodel::readText(text, "document");
        failIf(metamodel->classes().empty());
        for (const MetamodelClass& metamodelClass : metamodel->classes()) {
            checkClass(*metamodel, metamodelClass);
        }
    } catch (const ModelError& error) {
        failIf(std::string(error.what()).rfind("document", 0) != 0);
    }
}
