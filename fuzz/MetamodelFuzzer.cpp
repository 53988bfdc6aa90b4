// Any bytes as an Ecore document: classes whose features can all be found, or a sentence with a
// place.
#include "FuzzText.h"
#include "repository/Metamodel.h"
#include "repository/ModelError.h"

namespace {

void checkClass(const Metamodel& metamodel, const MetamodelClass& metamodelClass) {
    failIf(metamodel.findClass(metamodelClass.name) == nullptr);
    for (const MetamodelFeature* const feature : metamodel.features(metamodelClass.name)) {
        failIf(metamodel.findFeature(metamodelClass.name, feature->name) != feature);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const auto metamodel = Metamodel::readText(textOf(data, size), "document");
        failIf(metamodel->classes().empty());
        for (const MetamodelClass& metamodelClass : metamodel->classes()) {
            checkClass(*metamodel, metamodelClass);
        }
    } catch (const ModelError& error) {
        failIf(std::string(error.what()).rfind("document", 0) != 0);
    }
    return 0;
}
