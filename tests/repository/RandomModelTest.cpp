// Random models, written as XMI and as JSON: what the reader makes of them is compared with what
// plain loops over the objects themselves give.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "repository/ModelDump.h"
#include "repository/ModelReader.h"

namespace {

struct NaiveObject {
    std::string className;
    std::string id;  // may be empty
    int parent = -1;
    std::string feature;  // of the parent
    std::map<std::string, std::string> attributes;
    std::vector<std::string> elements;  // ids that child elements <s href="#id"/> name
};

// A tree of objects, and the answers to all questions about it.
class NaiveModel {
public:
    explicit NaiveModel(std::uint32_t seed) : state_(seed) {
        addObject(-1);
        fill();
        for (const NaiveObject& object : objects_) {
            for (const auto& [name, value] : object.attributes) {
                if (looksLikeReference(object.className, name)) {
                    references_.emplace(object.className, name);
                }
            }
        }
    }

    std::string asXmi() const { return xmi(element(0, "uml:" + objects_[0].className)); }
    std::string asJson() const;
    std::size_t size() const { return objects_.size(); }

    std::string uid(std::size_t object) const {
        const NaiveObject& self = objects_[object];
        return self.id.empty() ? path(object) : self.id;
    }
    std::string text(std::size_t object, const std::string& name) const;
    std::string targets(std::size_t object, const std::string& name) const {
        return join(reach(object, name), false);
    }

private:
    using Objects = std::vector<std::size_t>;

    std::size_t random(std::size_t bound) {
        state_ = state_ * 1664525U + 1013904223U;
        return (state_ >> 8U) % bound;
    }
    template <std::size_t count>
    std::string choose(const char* const (&words)[count]) {
        return words[random(count)];
    }

    void addObject(int parent);
    void fill();
    std::string element(std::size_t object, const std::string& tag) const;
    std::string path(std::size_t object) const;
    Objects contained(std::size_t object, const std::string& feature) const;
    Objects tokens(const std::string& text, bool& areAllIds) const;
    bool looksLikeReference(const std::string& className, const std::string& name) const;
    bool isReference(const std::string& className, const std::string& name) const {
        return references_.count({className, name}) != 0;
    }
    bool has(std::size_t object, const std::string& name) const;
    Objects own(std::size_t object, const std::string& name) const;
    Objects reach(std::size_t object, const std::string& name) const;
    std::string join(const Objects& objects, bool asNames) const;

    std::uint32_t state_;
    std::vector<NaiveObject> objects_;  // in document order
    std::set<std::pair<std::string, std::string>> references_;
};

// Adds an object and all that it contains.
void NaiveModel::addObject(int parent) {
    const auto number = static_cast<int>(objects_.size());
    NaiveObject added;
    added.className = choose({"A", "B", "C"});
    added.id = random(4) == 0 ? "" : "o" + std::to_string(number);
    added.parent = parent;
    added.feature = choose({"x", "y", "ownedW"});
    objects_.push_back(added);
    for (std::size_t i = random(parent < 0 ? 12 : 4); i > 0 && objects_.size() < 60; --i) {
        addObject(number);
    }
}

// Gives the objects attributes and references to each other.
void NaiveModel::fill() {
    const auto anyId = [this] { return objects_[random(objects_.size())].id; };
    for (NaiveObject& object : objects_) {
        if (random(2) == 0) {
            object.attributes["name"] = choose({"one", "two words", "o1", ""});
        }
        if (random(3) == 0) {
            object.attributes["k"] = choose({"1", "o1 o2", "x"});
        }
        if (random(9) == 0) {
            object.attributes["w"] = "known";
        }
        for (std::size_t i = random(4); i > 0; --i) {
            object.attributes["r"] += anyId() + (random(80) == 0 ? " stranger" : " ");
        }
        for (std::size_t i = random(3); i > 0; --i) {
            object.elements.push_back(anyId());
        }
        const auto isEmpty = [](const std::string& id) { return id.empty(); };
        object.elements.erase(
            std::remove_if(object.elements.begin(), object.elements.end(), isEmpty),
            object.elements.end());
    }
}

std::string NaiveModel::element(std::size_t object, const std::string& tag) const {
    const NaiveObject& self = objects_[object];
    std::string result = '<' + tag + " xmi:type=\"uml:" + self.className + '"';
    result += self.id.empty() ? "" : " xmi:id=\"" + self.id + '"';
    for (const auto& [name, value] : self.attributes) {
        result += ' ' + name + "=\"" + value + '"';
    }
    result += '>';
    for (const std::string& id : self.elements) {
        result += "<s href=\"#" + id + "\"/>";
    }
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        result += objects_[i].parent == static_cast<int>(object) ? element(i, objects_[i].feature)
                                                                 : std::string();
    }
    return result + "</" + tag.substr(0, tag.find(' ')) + '>';
}

// Containments and child elements become associations; an object without an id gets its path.
std::string NaiveModel::asJson() const {
    std::string result;
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        std::string attributes;
        std::string associations;
        for (const char* const name : {"name", "k", "w", "r"}) {
            const auto found = objects_[i].attributes.find(name);
            if (found != objects_[i].attributes.end() &&
                !isReference(objects_[i].className, name)) {
                attributes += (attributes.empty() ? "\"" : ",\"") + std::string(name) + "\":\"" +
                              found->second + '"';
            }
        }
        for (const char* const name : {"k", "r", "s", "x", "y", "ownedW"}) {
            std::string ids;
            for (const std::size_t target : own(i, name)) {
                ids += (ids.empty() ? "\"" : ",\"") + uid(target) + '"';
            }
            associations += ids.empty() ? ""
                                        : (associations.empty() ? "\"" : ",\"") +
                                              std::string(name) + "\":[" + ids + ']';
        }
        result += (result.empty() ? "" : ",\n") + std::string("{\"id\":\"") + uid(i) +
                  "\",\"class\":\"" + objects_[i].className + "\",\"attributes\":{" + attributes +
                  "},\"associations\":{" + associations + "}}";
    }
    return "{\"objects\":[" + result + "]}";
}

std::string NaiveModel::path(std::size_t object) const {
    const NaiveObject& self = objects_[object];
    if (self.parent < 0) {
        return "/";
    }
    const auto parent = static_cast<std::size_t>(self.parent);
    const Objects siblings = contained(parent, self.feature);
    const auto place = std::find(siblings.begin(), siblings.end(), object) - siblings.begin();
    return path(parent) + "/@" + self.feature + '.' + std::to_string(place);
}

NaiveModel::Objects NaiveModel::contained(std::size_t object, const std::string& feature) const {
    Objects result;
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        if (objects_[i].parent == static_cast<int>(object) &&
            (feature.empty() || objects_[i].feature == feature)) {
            result.push_back(i);
        }
    }
    return result;
}

NaiveModel::Objects NaiveModel::tokens(const std::string& text, bool& areAllIds) const {
    Objects result;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(' ', start), text.size());
        const std::string token = text.substr(start, end - start);
        const auto found = std::find_if(
            objects_.begin(), objects_.end(),
            [&token](const NaiveObject& other) { return !token.empty() && other.id == token; });
        if (found != objects_.end()) {
            result.push_back(static_cast<std::size_t>(found - objects_.begin()));
        }
        areAllIds = areAllIds && (token.empty() || found != objects_.end());
        start = end + 1;
    }
    return result;
}

bool NaiveModel::looksLikeReference(const std::string& className, const std::string& name) const {
    bool areAllIds = true;
    bool isAny = false;
    for (const NaiveObject& object : objects_) {
        const auto found = object.attributes.find(name);
        if (object.className == className && found != object.attributes.end()) {
            isAny = !tokens(found->second, areAllIds).empty() || isAny;
        }
    }
    return name != "name" && areAllIds && isAny;
}

bool NaiveModel::has(std::size_t object, const std::string& name) const {
    const NaiveObject& self = objects_[object];
    return (self.attributes.count(name) != 0 && !isReference(self.className, name)) ||
           !own(object, name).empty();
}

// The targets of a feature that the object has under exactly this name.
NaiveModel::Objects NaiveModel::own(std::size_t object, const std::string& name) const {
    const NaiveObject& self = objects_[object];
    Objects result;
    bool areAllIds = true;
    if (self.attributes.count(name) != 0 && isReference(self.className, name)) {
        result = tokens(self.attributes.at(name), areAllIds);
    }
    for (const std::string& id : self.elements) {
        const Objects target = name == "s" ? tokens(id, areAllIds) : Objects();
        result.insert(result.end(), target.begin(), target.end());
    }
    const Objects parts = contained(object, name);
    result.insert(result.end(), parts.begin(), parts.end());
    return result;
}

NaiveModel::Objects NaiveModel::reach(std::size_t object, const std::string& name) const {
    if (name == "parent") {
        const int parent = objects_[object].parent;
        return parent < 0 ? Objects() : Objects{static_cast<std::size_t>(parent)};
    }
    if (name == "children") {
        return contained(object, "");
    }
    if (name.substr(0, 8) == "inverse:") {
        Objects result;
        for (std::size_t i = 0; i < objects_.size(); ++i) {
            const Objects there = own(i, name.substr(8));
            if (std::find(there.begin(), there.end(), object) != there.end()) {
                result.push_back(i);
            }
        }
        return result;
    }
    return has(object, name) || name != "w" ? own(object, name) : own(object, "ownedW");
}

std::string NaiveModel::text(std::size_t object, const std::string& name) const {
    const NaiveObject& self = objects_[object];
    const bool isAttribute = self.attributes.count(name) != 0 && !isReference(self.className, name);
    return isAttribute ? self.attributes.at(name) : join(reach(object, name), true);
}

std::string NaiveModel::join(const Objects& objects, bool asNames) const {
    std::string result;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const auto name = objects_[objects[i]].attributes.find("name");
        const bool isNamed =
            asNames && name != objects_[objects[i]].attributes.end() && !name->second.empty();
        result += i == 0 ? "" : asNames ? ", " : ",";
        result += isNamed ? name->second : uid(objects[i]);
    }
    return result;
}

const std::vector<std::string> commonNames{"name", "k", "w", "r", "s", "x", "y", "ownedW"};
const std::vector<std::string> xmiNames{"parent",    "children",       "inverse:r",
                                        "inverse:s", "inverse:ownedW", "inverse:x"};

// Compares all that expressions may ask; names that the model does not know have no answer.
void compare(const NaiveModel& naive, const RepositoryModel& model,
             const std::vector<std::string>& names) {
    ASSERT_EQ(model.objectCount(), naive.size());
    for (std::size_t i = 0; i < naive.size(); ++i) {
        const std::string uid = naive.uid(i);
        std::string buffer;
        ASSERT_EQ(model.uid(model.objects().first[i], buffer), uid);
        ASSERT_EQ(model.find(uid), model.objects().first[i]);
        for (const std::string& name : names) {
            const std::string text = ask(model, uid, '$' + name);
            EXPECT_EQ(text == "unknown" ? "" : text, naive.text(i, name)) << uid << " $" << name;
            const std::string reached = ask(model, uid, '[' + name + ']');
            EXPECT_EQ(reached == "unknown" ? "" : reached, naive.targets(i, name))
                << uid << " [" << name << ']';
        }
    }
}

TEST(RandomModel, AnswersAsPlainLoopsDo) {
    for (std::uint32_t seed = 1; seed <= 100 && !HasFailure(); ++seed) {
        const NaiveModel naive(seed);
        std::vector<std::string> names = commonNames;
        names.insert(names.end(), xmiNames.begin(), xmiNames.end());
        compare(naive, *readModelText(naive.asXmi(), "doc"), names);
        compare(naive, *readInPieces(naive.asXmi()), names);
        EXPECT_FALSE(HasFailure()) << "seed " << seed << '\n' << naive.asXmi();
    }
}

TEST(RandomModel, AnswersAlikeFromJson) {
    for (std::uint32_t seed = 1; seed <= 100 && !HasFailure(); ++seed) {
        const NaiveModel naive(seed);
        compare(naive, *readModelText(naive.asJson(), "doc"), commonNames);
        EXPECT_FALSE(HasFailure()) << "seed " << seed << '\n' << naive.asJson();
    }
}

}  // namespace
