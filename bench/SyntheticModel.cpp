#include "SyntheticModel.h"

#include <algorithm>
#include <array>

namespace synthetic {

namespace {

constexpr std::uint32_t classesInPackage = 100;

const std::vector<std::string_view> verbs = {"get",  "set", "is",     "compute",
                                             "find", "add", "remove", "update"};
const std::vector<std::string_view> nouns = {
    "Account", "Address", "Branch",   "Catalogue", "Category", "Contract", "Customer", "Delivery",
    "Invoice", "Item",    "Location", "Message",   "Offer",    "Order",    "Payment",  "Person",
    "Price",   "Product", "Project",  "Report",    "Schedule", "Shipment", "Supplier", "Voucher"};
const std::vector<std::string_view> aspects = {"Date",   "Identifier", "Limit", "Name",
                                               "Number", "Status",     "Total", "Version"};

}  // namespace

std::string_view text(Visibility visibility) {
    constexpr std::array<std::string_view, 4> words = {"public", "protected", "private", "package"};
    return words[static_cast<std::size_t>(visibility)];
}

std::string_view text(Direction direction) {
    constexpr std::array<std::string_view, 4> words = {"in", "inout", "out", "return"};
    return words[static_cast<std::size_t>(direction)];
}

Model::Model(std::uint32_t classCount) {
    addPackages(classCount);
    for (std::uint32_t number = 0; number < classCount; ++number) {
        fillClass(number, *classes_[number]);
    }
}

std::vector<const Operation*> Model::operations() const {
    std::vector<const Operation*> result;
    for (const Element* const element : classes_) {
        for (const Operation& operation : element->operations) {
            result.push_back(&operation);
        }
    }
    return result;
}

std::string Model::id(std::uint64_t number) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    std::string result = "_";
    std::uint64_t bits = number * 0x9E3779B97F4A7C15U + 1;
    for (int i = 0; i < 22; ++i) {
        bits ^= bits >> 29U;
        bits *= 0xBF58476D1CE4E5B9U;
        result += digits[bits >> 58U];
    }
    return result;
}

std::uint32_t Model::random(std::uint32_t bound) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>((state_ >> 33U) % bound);
}

std::string Model::pick(const std::vector<std::string_view>& words) {
    return std::string(words[random(static_cast<std::uint32_t>(words.size()))]);
}

const Element& Model::anyClass(std::uint32_t bound) { return *classes_[random(bound)]; }

// The classes are there, empty, before anything refers to them.
void Model::addPackages(std::uint32_t classCount) {
    for (std::uint32_t first = 0; first < classCount; first += classesInPackage) {
        const std::uint32_t count = std::min(classesInPackage, classCount - first);
        Package& package = packages_.emplace_back();
        package.id = nextId();
        package.name = "package" + std::to_string(packages_.size());
        package.elements.resize(count + 1);
        Element& dataType = package.elements.back();
        dataType.kind = Element::Kind::dataType;
        dataType.id = nextId();
        dataType.name = "DataType" + std::to_string(packages_.size());
    }
    for (Package& package : packages_) {
        for (std::size_t i = 0; i + 1 < package.elements.size(); ++i) {
            classes_.push_back(&package.elements[i]);
            classes_.back()->id = nextId();
            classes_.back()->name = pick(nouns) + pick(nouns) + std::to_string(classes_.size());
        }
    }
}

void Model::fillClass(std::uint32_t number, Element& element) {
    element.isAbstract = random(10) == 0;
    if (number > 0) {
        element.generals.push_back(&anyClass(number));
    }
    if (number > 0 && random(10) == 0) {
        const Element* const second = &anyClass(number);
        if (second != element.generals.front()) {
            element.generals.push_back(second);
        }
    }
    std::array<std::uint32_t, 5> parameterCounts = {1, 2, 3, 4, 5};
    for (std::uint32_t i = 4; i > 0; --i) {
        std::swap(parameterCounts[i], parameterCounts[random(i + 1)]);
    }
    for (const std::uint32_t count : parameterCounts) {
        element.operations.push_back(makeOperation(count));
    }
}

Operation Model::makeOperation(std::uint32_t parameterCount) {
    Operation operation;
    operation.id = nextId();
    operation.name = pick(verbs) + pick(nouns) + pick(nouns) + pick(aspects);
    operation.visibility = static_cast<Visibility>(random(4));
    operation.isQuery = random(2) == 0;
    operation.parameters.reserve(parameterCount);
    for (std::uint32_t i = 0; i < parameterCount; ++i) {
        operation.parameters.push_back(makeParameter());
    }
    return operation;
}

Parameter Model::makeParameter() {
    Parameter parameter;
    parameter.id = nextId();
    parameter.name = "the" + pick(nouns) + pick(nouns) + pick(aspects);
    parameter.direction = static_cast<Direction>(random(4));
    parameter.type =
        random(4) == 0
            ? &packages_[random(static_cast<std::uint32_t>(packages_.size()))].elements.back()
            : &anyClass(static_cast<std::uint32_t>(classes_.size()));
    return parameter;
}

}  // namespace synthetic
