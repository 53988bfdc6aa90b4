// A UML model of any size, the same one every time, as plain structs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace synthetic {

enum class Visibility { publicKind, protectedKind, privateKind, packageKind };
enum class Direction { in, inout, out, returnKind };

/// The words of documents.
std::string_view text(Visibility visibility);
std::string_view text(Direction direction);

struct Element;

struct Parameter {
    std::string id;
    std::string name;
    Direction direction = Direction::in;
    const Element* type = nullptr;
};

struct Operation {
    std::string id;
    std::string name;
    Visibility visibility = Visibility::publicKind;
    bool isQuery = false;
    std::vector<Parameter> parameters;
};

/// A class, or a data type, which has neither operations nor general classes.
struct Element {
    enum class Kind { classKind, dataType };

    Kind kind = Kind::classKind;
    std::string id;
    std::string name;
    bool isAbstract = false;
    std::vector<const Element*> generals;
    std::vector<Operation> operations;
};

struct Package {
    std::string id;
    std::string name;
    std::vector<Element> elements;
};

/// Packages of 100 classes and one data type. A class has 5 operations and these have 3 parameters
/// in the mean, 1 to 5 each; it specialises one earlier class, or two. Holds pointers into itself.
class Model {
public:
    explicit Model(std::uint32_t classCount);
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    const std::vector<Package>& packages() const { return packages_; }
    /// All operations, in document order.
    std::vector<const Operation*> operations() const;

    /// An id as tools make them: an underscore and 22 characters that depend on a number alone.
    static std::string id(std::uint64_t number);

private:
    std::uint32_t random(std::uint32_t bound);
    std::string nextId() { return id(nextId_++); }
    std::string pick(const std::vector<std::string_view>& words);
    const Element& anyClass(std::uint32_t bound);

    void addPackages(std::uint32_t classCount);
    void fillClass(std::uint32_t number, Element& element);
    Operation makeOperation(std::uint32_t parameterCount);
    Parameter makeParameter();

    std::vector<Package> packages_;
    std::vector<Element*> classes_;
    std::uint64_t state_ = 1;
    std::uint64_t nextId_ = 0;
};

}  // namespace synthetic
