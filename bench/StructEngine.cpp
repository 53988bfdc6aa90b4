// Loops over structs, as a programmer writes them for one question.
#include <re2/re2.h>

#include <algorithm>
#include <stdexcept>
#include <unordered_set>

#include "QueryEngine.h"

namespace {

using synthetic::Element;
using synthetic::Model;
using synthetic::Operation;
using synthetic::Package;
using synthetic::Parameter;

template <class T>
std::size_t sizeOf(const std::vector<T>& elements) {
    return elements.size();
}
template <class Scalar>
std::size_t sizeOf(Scalar /*value*/) {
    return 1;
}

std::string textOf(bool value) { return value ? "true\n" : "false\n"; }
std::string textOf(std::size_t number) { return std::to_string(number) + "\n"; }
const std::string& nameOf(const std::string& text) { return text; }
template <class T>
const std::string& nameOf(const T* object) {
    return object->name;
}
template <class T>
std::string textOf(const std::vector<T>& elements) {
    std::string lines;
    for (const T& element : elements) {
        lines.append(nameOf(element)).append("\n");
    }
    return lines;
}

std::size_t countClasses(const Model& model) {
    std::size_t count = 0;
    for (const Package& package : model.packages()) {
        for (const Element& element : package.elements) {
            count += element.kind == Element::Kind::classKind ? 1 : 0;
        }
    }
    return count;
}

std::vector<const Operation*> findPattern(const Model& model) {
    static const re2::RE2 pattern("^[gs]et.*Total$");
    std::vector<const Operation*> found;
    for (const Package& package : model.packages()) {
        for (const Element& element : package.elements) {
            for (const Operation& operation : element.operations) {
                if (re2::RE2::PartialMatch(operation.name, pattern)) {
                    found.push_back(&operation);
                }
            }
        }
    }
    return found;
}

std::size_t countPrefix(const Model& model) {
    std::size_t count = 0;
    for (const Package& package : model.packages()) {
        for (const Element& element : package.elements) {
            for (const Operation& operation : element.operations) {
                if (operation.visibility == synthetic::Visibility::publicKind &&
                    operation.name.starts_with("get")) {
                    ++count;
                }
            }
        }
    }
    return count;
}

bool everyClassHasLongOperation(const Model& model) {
    for (const Package& package : model.packages()) {
        for (const Element& element : package.elements) {
            if (element.kind == Element::Kind::classKind &&
                std::none_of(
                    element.operations.begin(), element.operations.end(),
                    [](const Operation& operation) { return operation.parameters.size() > 2; })) {
                return false;
            }
        }
    }
    return true;
}

// Made in one allocation.
std::string signature(const Operation& operation) {
    std::size_t size = operation.name.size() + 2;
    for (const Parameter& parameter : operation.parameters) {
        size += parameter.name.size() + parameter.type->name.size() + 4;
    }
    std::string text;
    text.reserve(size);
    text.append(operation.name).append("(");
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        const Parameter& parameter = operation.parameters[i];
        text.append(i == 0 ? "" : ", ").append(parameter.name).append(": ");
        text.append(parameter.type->name);
    }
    return text.append(")");
}

std::vector<std::string> writeSignatures(const Model& model) {
    std::vector<std::string> texts;
    for (const Package& package : model.packages()) {
        for (const Element& element : package.elements) {
            for (const Operation& operation : element.operations) {
                texts.push_back(signature(operation));
            }
        }
    }
    return texts;
}

template <class Action>
void forEachClass(const Model& model, const Action& action) {
    for (const Package& package : model.packages()) {
        for (const Element& element : package.elements) {
            if (element.kind == Element::Kind::classKind) {
                action(element);
            }
        }
    }
}

std::vector<const Element*> sortClasses(const Model& model) {
    std::vector<const Element*> classes;
    forEachClass(model, [&](const Element& element) { classes.push_back(&element); });
    std::stable_sort(classes.begin(), classes.end(), [](const Element* left, const Element* right) {
        return left->name < right->name;
    });
    return classes;
}

// The few classes of one closure are looked through one by one.
void appendClosure(const Element& element, std::vector<const Element*>& reached) {
    const auto begin = static_cast<std::ptrdiff_t>(reached.size());
    std::size_t next = reached.size();
    for (const Element* from = &element; from != nullptr;
         from = next < reached.size() ? reached[next++] : nullptr) {
        for (const Element* const general : from->generals) {
            if (std::find(reached.begin() + begin, reached.end(), general) == reached.end()) {
                reached.push_back(general);
            }
        }
    }
}

std::vector<const Element*> closeGeneralizations(const Model& model) {
    std::vector<const Element*> reached;
    forEachClass(model, [&](const Element& element) { appendClosure(element, reached); });
    return reached;
}

void appendReturned(const Element& element, std::vector<const Parameter*>& found) {
    for (const Operation& operation : element.operations) {
        if (operation.visibility == synthetic::Visibility::publicKind) {
            for (const Parameter& parameter : operation.parameters) {
                if (parameter.direction == synthetic::Direction::returnKind) {
                    found.push_back(&parameter);
                }
            }
        }
    }
}

std::vector<const Parameter*> followPath(const Model& model) {
    std::vector<const Parameter*> found;
    forEachClass(model, [&](const Element& element) {
        if (element.isAbstract) {
            appendReturned(element, found);
        }
    });
    return found;
}

/// Asks the generator's own structs.
class StructEngine final : public QueryEngine {
public:
    explicit StructEngine(const Model& model) : model_(model), operations_(model.operations()) {}

    PreparedQuery prepare(const std::string& query) override {
        if (query == "count")
            return prepared(countClasses);
        if (query == "pattern")
            return prepared(findPattern);
        if (query == "prefix")
            return prepared(countPrefix);
        if (query == "every")
            return prepared(everyClassHasLongOperation);
        if (query == "signature")
            return prepared(writeSignatures);
        if (query == "sorted")
            return prepared(sortClasses);
        if (query == "closure")
            return prepared(closeGeneralizations);
        if (query == "path")
            return prepared(followPath);
        throw std::out_of_range(query);
    }

    std::function<bool(std::size_t)> condition() override {
        return [this](std::size_t number) {
            return operations_[number]->visibility == synthetic::Visibility::publicKind;
        };
    }

private:
    template <class Query>
    PreparedQuery prepared(Query query) {
        return {[this, query] { return sizeOf(query(model_)); },
                [this, query] { return textOf(query(model_)); }};
    }

    const Model& model_;
    std::vector<const Operation*> operations_;
};

}  // namespace

std::unique_ptr<QueryEngine> makeStructEngine(const synthetic::Model& model) {
    return std::make_unique<StructEngine>(model);
}
