// XPath 1.0 over the XMI document. What it cannot say in one expression, the host adds: it joins
// texts and looks ids up. It has neither sorting nor closures.
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include "QueryEngine.h"
#include "SyntheticDocuments.h"

namespace {

constexpr const char* isClass = "@xmi:type='uml:Class'";

std::string valueQuery(const std::string& query) {
    const std::string classes = std::string("//packagedElement[") + isClass + "]";
    if (query == "count") {
        return "count(" + classes + ")";
    }
    if (query == "prefix") {
        return "count(//ownedOperation[starts-with(@name,'get') and @visibility='public'])";
    }
    if (query == "every") {
        return "not(" + classes + "[not(ownedOperation[count(ownedParameter) > 2])])";
    }
    return {};
}

std::string nodeQuery(const std::string& query) {
    if (query == "pattern") {
        return "//ownedOperation[(starts-with(@name,'get') or starts-with(@name,'set')) and "
               "substring(@name,string-length(@name)-4)='Total']";
    }
    if (query == "path") {
        return std::string("/uml:Model/packagedElement/packagedElement[") + isClass +
               " and @isAbstract='true']/ownedOperation[@visibility='public']"
               "/ownedParameter[@direction='return']";
    }
    return {};
}

/// Keeps the document and the compiled expressions.
class PugixmlEngine final : public QueryEngine {
public:
    explicit PugixmlEngine(const synthetic::Model& model) {
        const std::string text = synthetic::xmiDocument(model);
        if (!document_.load_buffer(text.data(), text.size())) {
            throw std::runtime_error("pugixml cannot parse the document.");
        }
        for (const pugi::xpath_node node : document_.select_nodes("//packagedElement")) {
            names_[node.node().attribute("xmi:id").value()] = node.node().attribute("name").value();
        }
        operations_ = document_.select_nodes("//ownedOperation");
    }

    PreparedQuery prepare(const std::string& query) override {
        if (query == "signature") {
            return {[this] { return writeSignatures().size(); },
                    [this] {
                        std::string lines;
                        for (const std::string& text : writeSignatures()) {
                            lines.append(text).append("\n");
                        }
                        return lines;
                    }};
        }
        if (const std::string text = valueQuery(query); !text.empty()) {
            return prepareValue(std::make_shared<pugi::xpath_query>(text.c_str()));
        }
        if (const std::string text = nodeQuery(query); !text.empty()) {
            return prepareNodes(std::make_shared<pugi::xpath_query>(text.c_str()));
        }
        return {};
    }

    std::function<bool(std::size_t)> condition() override {
        return [this, query = std::make_shared<pugi::xpath_query>("@visibility='public'")](
                   std::size_t number) { return query->evaluate_boolean(operations_[number]); };
    }

private:
    PreparedQuery prepareValue(const std::shared_ptr<pugi::xpath_query>& query) {
        return {[this, query] { return writeValue(*query).empty() ? 0 : 1; },
                [this, query] { return writeValue(*query) + "\n"; }};
    }

    std::string writeValue(const pugi::xpath_query& query) const {
        return query.evaluate_string(document_);
    }

    PreparedQuery prepareNodes(const std::shared_ptr<pugi::xpath_query>& query) {
        return {[this, query] { return query->evaluate_node_set(document_).size(); },
                [this, query] {
                    std::string names;
                    for (const pugi::xpath_node node : query->evaluate_node_set(document_)) {
                        names.append(node.node().attribute("name").value()).append("\n");
                    }
                    return names;
                }};
    }

    std::vector<std::string> writeSignatures() {
        std::vector<std::string> texts;
        for (const pugi::xpath_node operation : operationsQuery_.evaluate_node_set(document_)) {
            texts.push_back(signature(operation));
        }
        return texts;
    }

    std::string signature(const pugi::xpath_node& operation) {
        std::string text = operation.node().attribute("name").value();
        text.append("(");
        const char* joint = "";
        for (const pugi::xpath_node parameter : parametersQuery_.evaluate_node_set(operation)) {
            text.append(joint).append(parameter.node().attribute("name").value());
            text.append(": ").append(names_.at(parameter.node().attribute("type").value()));
            joint = ", ";
        }
        return text.append(")");
    }

    pugi::xml_document document_;
    pugi::xpath_node_set operations_;
    pugi::xpath_query operationsQuery_{"//ownedOperation"};
    pugi::xpath_query parametersQuery_{"ownedParameter"};
    std::unordered_map<std::string_view, std::string_view> names_;
};

}  // namespace

std::unique_ptr<QueryEngine> makePugixmlEngine(const synthetic::Model& model) {
    return std::make_unique<PugixmlEngine>(model);
}
