#include "why/Drawing.h"

#include <sstream>

#include "lint/Escaping.h"

namespace mmq {

namespace {

// A text in the quotes of Mermaid, where characters that mean something are written as entities.
std::string mermaidText(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : onOneLine(text)) {
        const bool isSpecial = std::string_view("\"#`&<>;$\\").find(c) != std::string_view::npos;
        if (isSpecial) {
            quoted.append("#").append(std::to_string(static_cast<int>(c))).append(";");
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

// A text in the quotes of Graphviz, where "&" begins an entity of HTML.
std::string dotText(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : onOneLine(text)) {
        quoted.append(c == '"' || c == '\\' ? "\\" : "").append(1, c);
        quoted.append(c == '&' ? "amp;" : "");
    }
    return quoted + "\"";
}

}  // namespace

std::string Drawing::labelOf(MMObject object) const {
    std::string buffer;
    const std::string_view name = model_.name(object);
    std::string label(name.empty() ? model_.uid(object, buffer) : name);
    return label.append(" : ").append(model_.className(object));
}

std::size_t Drawing::nodeOf(MMObject object) {
    const auto [found, isNew] = numbers_.emplace(object, nodes_.size());
    if (isNew) {
        nodes_.push_back({labelOf(object)});
    }
    return found->second;
}

void Drawing::add(const Reach& reach, const std::vector<MMObject>& results) {
    for (const MMObject object : reach.starts) {
        nodeOf(object);
    }
    for (const PathLink& link : reach.links) {
        const std::size_t from = nodeOf(link.from);
        const Arrow arrow{from, link.association, nodeOf(link.to)};
        if (known_.insert(arrow).second) {
            arrows_.push_back(arrow);
        }
    }
    for (const MMObject object : results) {
        nodes_[nodeOf(object)].isResult = true;
    }
}

std::string Drawing::mermaid() const {
    std::ostringstream text;
    text << "flowchart LR\n    classDef result stroke-width:3px\n";
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        text << "    n" << i + 1 << '[' << mermaidText(nodes_[i].label) << ']'
             << (nodes_[i].isResult ? ":::result\n" : "\n");
    }
    for (const Arrow& arrow : arrows_) {
        text << "    n" << arrow.from + 1 << " -->|" << mermaidText(arrow.association) << "| n"
             << arrow.to + 1 << '\n';
    }
    return text.str();
}

std::string Drawing::dot() const {
    std::ostringstream text;
    text << "digraph path {\n    rankdir=LR\n    node [shape=box]\n";
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        text << "    n" << i + 1 << " [label=" << dotText(nodes_[i].label)
             << (nodes_[i].isResult ? ", penwidth=3]\n" : "]\n");
    }
    for (const Arrow& arrow : arrows_) {
        text << "    n" << arrow.from + 1 << " -> n" << arrow.to + 1
             << " [label=" << dotText(arrow.association) << "]\n";
    }
    text << "}\n";
    return text.str();
}

}  // namespace mmq
