#include "names/SymbolHints.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <sstream>
#include <string_view>

#include "Messages.h"
#include "foundation/OrvMemoryRegion.h"
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

std::pair<int, int> placeOf(const NameSpace::Entry& entry) {
    return {entry.node->getLine(), entry.node->getColumn()};
}

bool isBefore(const NameSpace::Entry& left, const NameSpace::Entry& right) {
    return placeOf(left) < placeOf(right);
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

// The nodes and scopes go with the messages, not with the compilation that these are about.
void SymbolHints::parse() {
    const OrvCompilationMemory memory;
    SilentDialogs silent;
    std::ostringstream dropped;
    root_ = SyntaxParser::parse(silent, text_.c_str(), dropped);
    if (root_) {
        CreateNameSpaceVisitor visitor(TopLevelEnvironment::instance()->getScope());
        root_->accept(visitor);
        nameSpace_ = visitor.getNameSpace();
        nodes_.assign(nameSpace_->entries().begin(), nameSpace_->entries().end());
        std::stable_sort(nodes_.begin(), nodes_.end(), isBefore);
    }
}

// The names of one kind that are known at a place of the text; of all nodes of a long chain, the
// scope is the same.
std::vector<std::string> SymbolHints::namesAt(int line, int column, SymbolKind kind) {
    if (!std::exchange(isParsed_, true)) {
        parse();
    }
    std::vector<std::string> names;
    std::set<NameSpace::ScopeNumber> scopes;
    const std::pair<int, int> place{line, column};
    const auto first =
        std::partition_point(nodes_.begin(), nodes_.end(),
                             [&place](const auto& entry) { return placeOf(entry) < place; });
    for (auto entry = first; entry != nodes_.end() && placeOf(*entry) == place; ++entry) {
        if (scopes.insert(entry->scope).second) {
            for (const Scope::Entry& visible : visibleSymbols(*nameSpace_, *entry->node, kind)) {
                names.emplace_back(visible.name);
            }
        }
    }
    return names;
}

std::string SymbolHints::hintFor(const std::string& message, int line, int column,
                                 bool isForPeople) {
    for (const UnknownSymbol& unknown : unknownSymbols) {
        const std::string name = nameIn(message, unknown);
        if (name.empty()) {
            continue;
        }
        try {
            const std::vector<std::string> known = namesAt(line, column, unknown.kind);
            return unknown.kind == SymbolKind::variable
                       ? adviceForVariable(name, known, names_, isForPeople)
                       : didYouMean(nearestNames(name, known), unknown.written, "");
        } catch (const ParseException&) {
            return {};  // less of the stack is left than when the text was first parsed
        }
    }
    return {};
}

}  // namespace mmq
