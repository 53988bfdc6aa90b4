// The links of object i go to i + 1, 2i, i * i and 7i + 3, so that there are cycles of many
// lengths.
#include "CyclicModel.h"

CyclicModel::CyclicModel() : things_(50), model_(things_) {
    static constexpr const char* classes[] = {"Node", "Leaf", "Operation", "Parameter"};
    static constexpr const char* values[] = {"", "7", "-2147483648", "1e3", "true", "x y", "nan"};
    for (std::size_t i = 0; i < things_.size(); ++i) {
        Thing& thing = things_[i];
        const auto to = [this](std::size_t number) { return object(number); };
        thing.kind = classes[i % std::size(classes)];
        thing.id = std::to_string(i).insert(0, 1, 'o');
        thing.parent = i == 0 ? nullptr : &things_[i / 2];
        thing.attributes = {{"name", "name " + std::to_string(i % 9)},
                            {"type", i % 3 == 0 ? "" : "T"},
                            {"v", values[i % std::size(values)]},
                            {"w", values[i * 3 % std::size(values)]}};
        thing.associations = {{"a", {to(i + 1), to(2 * i), to(i)}},
                              {"b", {to(i * i)}},
                              {"c", {}},
                              {"parameter", {to(7 * i + 3), to(i + 1)}}};
    }
}

// The names and the values hold nothing that must be escaped.
std::string CyclicModel::document() const {
    std::string objects;
    for (const Thing& thing : things_) {
        std::string attributes;
        for (const auto& [name, value] : thing.attributes) {
            attributes += (attributes.empty() ? "\"" : ",\"") + name + "\":\"" + value + '"';
        }
        std::string associations;
        for (const auto& [name, targets] : thing.associations) {
            std::string ids;
            for (const MMObject target : targets) {
                const auto number = reinterpret_cast<const Thing*>(target) - things_.data();
                ids += (ids.empty() ? "\"o" : ",\"o") + std::to_string(number) + '"';
            }
            associations += (associations.empty() ? "\"" : ",\"") + name + "\":[" + ids + ']';
        }
        objects += (objects.empty() ? "{\"id\":\"" : ",{\"id\":\"") + thing.id + "\",\"class\":\"" +
                   thing.kind + "\",\"attributes\":{" + attributes + "},\"associations\":{" +
                   associations + "}}";
    }
    return "{\"root\":\"o0\",\"objects\":[" + objects + "]}";
}

const CyclicModel& CyclicModel::instance() {
    static const CyclicModel model;
    return model;
}

MMEvaluationLimits fuzzLimits() {
    MMEvaluationLimits limits;
    limits.steps = 30'000;
    limits.collectionSize = 10'000;
    limits.textSize = 100'000;
    return limits;
}
