#include "names/SymbolHints.h"

#include <array>
#include <map>
#include <sstream>
#include <string_view>
#include <vector>

#include "Messages.h"
#include "names/NearestNames.h"
#include "names/VisibleSymbols.h"
#include "namespace/CreateNameSpaceVisitor.h"
#include "namespace/TopLevelEnvironment.h"
#include "parser/SyntaxParser.h"
#include "support/ParseException.h"

namespace mmq {

namespace {

/// A message that a symbol is not there: what stands round its name, and how the name is written.
struct UnknownSymbol {
    std::string_view before;
    std::string_view after;
    SymbolKind kind;
    std::string_view written;
};

constexpr std::array<UnknownSymbol, 3> unknownSymbols{{
    {"Function ", " is not defined.", SymbolKind::function, ""},
    {"Variable ", " doesn't exist.", SymbolKind::variable, ""},
    {"Label ", " doesn't exist.", SymbolKind::label, "@"},
}};

// The name in a message of this kind; empty in any other.
std::string nameIn(std::string_view message, const UnknownSymbol& unknown) {
    const bool isMeant = message.size() > unknown.before.size() + unknown.after.size() &&
                         message.substr(0, unknown.before.size()) == unknown.before &&
                         message.substr(message.size() - unknown.after.size()) == unknown.after;
    return isMeant ? std::string(message.substr(
                         unknown.before.size(),
                         message.size() - unknown.before.size() - unknown.after.size()))
                   : std::string();
}

// The names of one kind that are known at a place of the text.
std::vector<std::string> namesAt(const std::string& text, int line, int column, SymbolKind kind) {
    std::vector<std::string> names;
    SilentDialogs silent;
    std::ostringstream dropped;
    const auto root = SyntaxParser::parse(silent, text.c_str(), dropped);
    if (!root) {
        return names;
    }
    CreateNameSpaceVisitor visitor(TopLevelEnvironment::instance()->getScope());
    root->accept(visitor);
    const NameSpace& nameSpace = *visitor.getNameSpace();
    for (const NameSpace::Entry& entry : nameSpace.entries()) {
        if (entry.node->getLine() == line && entry.node->getColumn() == column) {
            for (const Scope::Entry& visible : visibleSymbols(nameSpace, *entry.node, kind)) {
                names.emplace_back(visible.name);
            }
        }
    }
    return names;
}

/// What may stand where a variable does, by its name: a variable and a constant as they are, and
/// the names of a model as they are written there.
class WrittenNames {
public:
    explicit WrittenNames(const std::vector<std::string>& variables) {
        for (const std::string& name : variables) {
            written_.emplace(name, name);
        }
        written_.insert({{"true", "true"}, {"false", "false"}});
    }

    void add(const NameVocabulary& vocabulary) {
        for (const ReadAs kind : {ReadAs::association, ReadAs::attribute}) {
            for (const std::string& name : vocabulary.names(vocabulary.allClasses(), kind)) {
                written_.emplace(name, kind == ReadAs::association ? "[" + name + "]" : "$" + name);
            }
        }
    }

    std::string hintFor(const std::string& name) const {
        std::vector<std::string> names;
        for (const auto& [known, written] : written_) {
            names.push_back(known);
        }
        names = written_.count(name) > 0 ? std::vector{name} : nearestNames(name, names);
        for (std::string& found : names) {
            found = written_.at(found);
        }
        return didYouMean(names, "", "");
    }

private:
    std::map<std::string, std::string> written_;
};

std::string adviceForVariable(const std::string& name, const std::vector<std::string>& variables,
                              const NamesAtHand& names, bool isForPeople) {
    WrittenNames written(variables);
    const NameVocabulary* const vocabulary = names ? names() : nullptr;
    if (vocabulary != nullptr) {
        written.add(*vocabulary);
    }
    const std::string hint = written.hintFor(name);
    return hint.empty() && isForPeople && vocabulary == nullptr
               ? "An attribute is written $" + name + ", an association [" + name + "]."
               : hint;
}

}  // namespace

std::string hintForUnknownSymbol(const std::string& message, int line, int column,
                                 const std::string& text, const NamesAtHand& names,
                                 bool isForPeople) {
    for (const UnknownSymbol& unknown : unknownSymbols) {
        const std::string name = nameIn(message, unknown);
        if (name.empty()) {
            continue;
        }
        try {
            const std::vector<std::string> known = namesAt(text, line, column, unknown.kind);
            return unknown.kind == SymbolKind::variable
                       ? adviceForVariable(name, known, names, isForPeople)
                       : didYouMean(nearestNames(name, known), unknown.written, "");
        } catch (const ParseException&) {
            return {};  // less of the stack is left than when the text was first parsed
        }
    }
    return {};
}

}  // namespace mmq
