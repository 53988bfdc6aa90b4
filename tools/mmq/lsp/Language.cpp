#include "lsp/Language.h"

#include <algorithm>
#include <numeric>
#include <string_view>

namespace mmq {

namespace {

bool hasEnding(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

}  // namespace

ExpressionPart ExpressionPart::cut(const std::string& document, std::size_t begin, std::size_t end,
                                   const NameSource& names) {
    ExpressionPart part;
    part.text = document.substr(begin, end - begin);
    part.offsets.resize(part.text.size() + 1);
    std::iota(part.offsets.begin(), part.offsets.end(), begin);
    part.names = names;
    return part;
}

std::size_t ExpressionPart::offsetInText(std::size_t offset) const {
    const auto found = std::lower_bound(offsets.begin(), offsets.end(), offset);
    return std::min(text.size(), static_cast<std::size_t>(found - offsets.begin()));
}

const Language& findLanguage(const std::string& languageId, const std::string& uri) {
    const bool isYaml = languageId == "yaml" || hasEnding(uri, ".yaml") || hasEnding(uri, ".yml");
    return isYaml ? rulesLanguage() : expressionLanguage();
}

}  // namespace mmq
