#include "repository/ReferenceResolver.h"

#include <algorithm>
#include <string>

#include "repository/PathIndex.h"

namespace {

// Takes the next token off the text; empty at the end. No other control character than white
// space can stand in XML.
std::string_view takeToken(std::string_view& text) {
    const char* start = text.data();
    const char* const end = start + text.size();
    while (start != end && static_cast<unsigned char>(*start) <= ' ') {
        ++start;
    }
    const char* stop = start;
    while (stop != end && static_cast<unsigned char>(*stop) > ' ') {
        ++stop;
    }
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return {start, static_cast<std::size_t>(stop - start)};
}

bool isToken(std::string_view text) {
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) <= ' '; });
}

bool hasFragment(std::string_view token) { return token.find('#') != std::string_view::npos; }

// "prefix:Type", as it stands before a reference into another document.
bool isTypeHint(std::string_view token) {
    const std::size_t colon = token.find(':');
    return colon != std::string_view::npos && colon != 0 && colon + 1 != token.size() &&
           token.find_first_of(":/#", colon + 1) == std::string_view::npos &&
           token.find_first_of("/#") == std::string_view::npos;
}

// What a reference without an object reads as: the last step of its path, or the token as it stands
// where it has no path. Never empty.
std::string_view textOf(std::string_view token) {
    const std::size_t last = token.find_last_of("#/");
    const bool hasPath = last != std::string_view::npos && last != 0 && last + 1 != token.size();
    return hasPath ? token.substr(last + 1) : token;
}

}  // namespace

ReferenceResolver::ReferenceResolver(const ModelTables& tables) : tables_(tables) {}

ReferenceResolver::~ReferenceResolver() = default;

bool ReferenceResolver::resolve(std::uint32_t owner, TextRef text, bool isCertain,
                                std::vector<Link>& links) {
    const std::string_view tokens = tables_.texts.view(text);
    const ObjectNumber whole = tables_.ids.find(tokens, tables_.texts);
    if (whole != IdTable::none && isToken(tokens)) {  // as nearly all texts are
        links.push_back({tables_.handles[whole], owner, 0});
        return true;
    }
    return resolveTokens(owner, tokens, isCertain, links);
}

bool ReferenceResolver::resolveTokens(std::uint32_t owner, std::string_view tokens, bool isCertain,
                                      std::vector<Link>& links) {
    std::string_view next;
    for (std::string_view token = takeToken(tokens); !token.empty(); token = next) {
        next = takeToken(tokens);
        if (hasFragment(next) && isTypeHint(token)) {
            continue;
        }
        const MMObject target = find(token);
        if (target == mmNoObject && !isCertain && !hasFragment(token)) {
            return false;
        }
        links.push_back({target, owner, static_cast<std::uint32_t>(outsideTexts_.size())});
        if (target == mmNoObject) {
            outsideTexts_.push_back(tables_.texts.ref(textOf(token)));
        }
    }
    return true;
}

void ReferenceResolver::resolveId(std::uint32_t owner, TextRef id, std::vector<Link>& links) const {
    const std::string_view text = tables_.texts.view(id);
    const MMObject target = findId(text);
    if (target == mmNoObject) {
        tables_.source.fail(id.offset, "The id \"" + std::string(text) + "\" is not known.");
    }
    links.push_back({target, owner, 0});
}

MMObject ReferenceResolver::find(std::string_view token) {
    if (token[0] == '#') {
        token.remove_prefix(1);
    }
    const MMObject object = findId(token);
    return object == mmNoObject && !token.empty() && token[0] == '/' ? findPath(token) : object;
}

MMObject ReferenceResolver::findId(std::string_view id) const {
    const ObjectNumber number = tables_.ids.find(id, tables_.texts);
    return number == IdTable::none ? mmNoObject : tables_.handles[number];
}

MMObject ReferenceResolver::findPath(std::string_view path) {
    if (paths_ == nullptr) {
        paths_ = std::make_unique<PathIndex>(tables_);
    }
    return paths_->find(path);
}
