#include "repository/MemoryUses.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>

#include "repository/Metamodel.h"
#include "repository/ModelDump.h"
#include "repository/ModelReader.h"

namespace {

const char* const xmiDocument =
    R"(<x:XMI xmlns:x="http://www.omg.org/XMI"><P x:id="p"><c x:id="c" n="1" r="d c f#x">
        <t>1</t><t>2</t></c><c x:id="d" r="c" s="//@c.1"/><c n="3"><l href="#d"/></c></P></x:XMI>)";
const char* const jsonDocument =
    R"({"objects":[{"id":"a","class":"A","attributes":{"x":1.5},"associations":{"y":["a"]}}]})";
const char* const latinDocument = "<?xml version='1.0' encoding='ISO-8859-1'?><a n='\xE4'/>";
const char* const shortDocument = "<P id='p'><c/></P>";
const char* const metamodelDocument =
    R"(<e:EPackage xmlns:e="http://www.eclipse.org/emf/2002/Ecore" name="p"
        xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
        <eClassifiers xsi:type="e:EClass" name="P" eSuperTypes="#//C">
        <eStructuralFeatures xsi:type="e:EReference" name="c" eType="#//C" containment="true"/>
        </eClassifiers><eClassifiers xsi:type="e:EClass" name="C">
        <eStructuralFeatures xsi:type="e:EAttribute" name="n" defaultValueLiteral="none"/>
        </eClassifiers></e:EPackage>)";

// The use of a model that each run has for itself.
MemoryUse onModel(const char* name, const std::function<std::string(const RepositoryModel&)>& use) {
    return {name, [use] {
                const std::shared_ptr<const RepositoryModel> model =
                    readModelText(xmiDocument, "doc");
                return [use, model] { return use(*model); };
            }};
}

MemoryUse onDocument(const char* document) {
    return {document,
            [document] { return [document] { return dump(*readModelText(document, "doc")); }; }};
}

/// A file that is there as long as the object.
class TemporaryFile {
public:
    TemporaryFile(const std::string& name, std::string_view content)
        : path_(std::filesystem::temp_directory_path() /
                ("memory_uses_" + name + std::to_string(getpid()))) {
        std::ofstream(path_) << content;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::filesystem::remove(path_); }

    const std::string& path() const { return path_.native(); }

private:
    std::filesystem::path path_;
};

MemoryUse onFile(const char* name, const char* document,
                 const std::function<std::string(const std::string&)>& use) {
    const auto file = std::make_shared<const TemporaryFile>(name, document);
    return {name, [use, file] { return [use, file] { return use(file->path()); }; }};
}

std::string described(const Metamodel& metamodel) {
    std::string result;
    for (const MetamodelFeature* const feature : metamodel.features("P")) {
        result.append(feature->name).append(" ").append(feature->defaultText).append(";");
    }
    return result;
}

std::string readWithMetamodel() {
    ReadOptions options;
    options.metamodel = Metamodel::readText(metamodelDocument, "metamodel");
    return ask(*readModelText(shortDocument, "doc", options), "//@c", "$n");
}

}  // namespace

std::vector<MemoryUse> memoryUses() {
    return {
        onDocument(xmiDocument),
        onDocument(jsonDocument),
        onDocument(latinDocument),
        onFile("model", jsonDocument,
               [](const std::string& path) { return dump(*readModel(path)); }),
        onFile("metamodel", metamodelDocument,
               [](const std::string& path) { return described(*Metamodel::readFile(path)); }),
        {"model with a metamodel", [] { return readWithMetamodel; }},
        onModel("path", [](const RepositoryModel& model) { return ask(model, "//@c.2", "$n"); }),
        onModel("inverse",
                [](const RepositoryModel& model) { return ask(model, "c", "[inverse:r]"); }),
        onModel("list", [](const RepositoryModel& model) { return ask(model, "p", "$c"); }),
    };
}
