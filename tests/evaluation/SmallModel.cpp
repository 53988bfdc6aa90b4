#include "evaluation/SmallModel.h"

#include <sstream>
#include <string>

namespace {

using std::string_view_literals::operator""sv;

/// An object; what has no data is absent. The links are "association targets" each.
struct ObjectRow {
    std::string_view kind, id, parent, name, type, v, w;
    std::vector<std::string> links;
};

const std::vector<ObjectRow>& rows() {
    static const std::vector<ObjectRow> table = {
        {"Node", "r1", {}, "root", {}, "7", "x y", {"a n1 n2 n1", "b r1", "c o1"}},
        {"Node", "n1", "r1", "one", {}, "-5", "true", {"a n2 r1", "b l1 l2"}},
        {"Node", "n2", "r1", "two", {}, "12", "\xc3\xa9\t\"q\"", {"a n2 l1", "b n1"}},
        {"Node", "n3", "r2", "three", {}, "1e3", "a\\b\nc", {"a l2 l3 l2", "b r1 n3"}},
        {"Leaf", "l1", "n1", "leaf", {}, "2.5", "", {"b r1"}},
        {"Leaf", "l2", "n3", "leaf", {}, "", "\v  pad \t\f\r\n", {"c l3"}},
        {"Leaf", "l3", "n3", {}, {}, "2147483647", "FALSE", {"a l3"}},
        {"Leaf", "l4", "l3", "\xc3\x9cnder_1", {}, "-2147483648", "-0", {"b n1 n2 n3"}},
        {"Node", "r2", {}, "", {}, "0", "false", {"a n3", "b r1 r2", "c l4"}},
        {"Operation", "o1", "r1", "open", "", "3", "1.5e-3", {"a p1", "parameter p1 p2"}},
        {"Parameter", "p1", "o1", "mode", "Mode", "-0.5", "+9", {"a p2"}},
        {"Parameter", "p2", "o1", "flags", {}, "99999999999", "a1b22c", {"b o1"}},
        {"Operation", "o2", "r2", "close", "Status", "abc", "a\0b"sv, {}},
    };
    return table;
}

}  // namespace

SmallModel::SmallModel() : view_(things_) {
    for (const ObjectRow& row : rows()) {
        Thing& thing = things_.emplace_back();
        thing.kind = row.kind;
        thing.id = row.id;
        for (const auto& [name, value] :
             {std::pair("name", row.name), {"type", row.type}, {"v", row.v}, {"w", row.w}}) {
            if (value.data() != nullptr) {
                thing.attributes[name] = value;
            }
        }
    }
    for (std::size_t i = 0; i < things_.size(); ++i) {
        const ObjectRow& row = rows()[i];
        things_[i].parent = row.parent.empty() ? nullptr : &things_[indexOf(row.parent)];
        for (const std::string& link : row.links) {
            std::istringstream parts(link);
            std::string association;
            parts >> association;
            for (std::string target; parts >> target;) {
                things_[i].associations[association].push_back(at(target).handle());
            }
        }
    }
}

std::size_t SmallModel::indexOf(std::string_view id) const {
    std::size_t index = 0;
    while (things_.at(index).id != id) {
        ++index;
    }
    return index;
}
