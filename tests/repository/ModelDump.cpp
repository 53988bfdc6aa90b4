#include "repository/ModelDump.h"

#include <vector>

#include "repository/ModelReader.h"
#include "repository/XmiReader.h"

namespace {

std::string line(const RepositoryModel& model, MMObject object, const ClassSummary& summary) {
    std::string buffer;
    std::vector<MMObject> objects;
    std::string result = std::string(summary.name) + ' ' + std::string(model.uid(object, buffer));
    for (const std::string_view name : summary.attributes) {
        buffer.clear();
        const std::string_view value = model.attribute(object, model.attributeKey(name), buffer);
        if (!value.empty()) {
            result.append(" ").append(name).append("=").append(value);
        }
    }
    for (const std::string_view name : summary.associations) {
        const auto range = model.targets(object, model.associationKey(name), objects);
        if (range.size() != 0) {
            result.append(" ").append(name).append("->").append(uids(model, range));
        }
    }
    return result;
}

}  // namespace

std::string xmi(const std::string& roots) {
    return "<xmi:XMI xmlns:xmi=\"http://www.omg.org/spec/XMI/20131001\" "
           "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:uml=\"uml\">" +
           roots + "</xmi:XMI>";
}

std::string dump(const RepositoryModel& model) {
    std::string result;
    const std::vector<ClassSummary> classes = model.classes();
    for (const MMObject object : model.objects()) {
        for (const ClassSummary& summary : classes) {
            if (summary.name == model.className(object)) {
                result += (result.empty() ? "" : " | ") + line(model, object, summary);
            }
        }
    }
    return result;
}

std::string ask(const RepositoryModel& model, std::string_view uid, std::string_view question) {
    const MMObject object = model.find(uid);
    const bool isAttribute = question[0] == '$';
    const std::string_view name =
        isAttribute ? question.substr(1) : question.substr(1, question.size() - 2);
    const MMKey key = isAttribute ? model.attributeKey(name) : model.associationKey(name);
    if (key == mmUnknownKey) {
        return "unknown";
    }
    std::string buffer;
    std::vector<MMObject> objects;
    return isAttribute ? std::string(model.attribute(object, key, buffer))
                       : uids(model, model.targets(object, key, objects));
}

std::string uids(const RepositoryModel& model, const MMObjectRange& objects) {
    std::string result;
    for (const MMObject object : objects) {
        std::string buffer;
        result.append(result.empty() ? "" : ",").append(model.uid(object, buffer));
    }
    return result;
}

std::unique_ptr<RepositoryModel> readInPieces(std::string_view document) {
    return XmiReader::read(SourceText::copyOf(document, "doc"), {}, 1);
}

std::string errorOf(std::string_view document) {
    try {
        readModelText(document, "doc");
        return "";
    } catch (const ModelError& error) {
        return error.what();
    }
}
