#include "api/AttributeShortcut.h"

#include <algorithm>

#include "fliodram/MMAttrExpr.h"
#include "fliodram/MMConstantExpr.h"
#include "foundation/OrvConverter.h"

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool isLetterOrDigit(char c) { return isLetter(c) || (c >= '0' && c <= '9'); }

std::string_view skipBlanks(std::string_view text) {
    text.remove_prefix(static_cast<std::size_t>(
        std::find_if_not(text.begin(), text.end(), isBlank) - text.begin()));
    return text;
}

}  // namespace

std::string_view findBareAttribute(std::string_view text) {
    std::string_view rest = skipBlanks(text.substr(0, text.find('\0')));
    if (rest.empty() || rest.front() != '$') {
        return {};
    }
    rest = skipBlanks(rest.substr(1));
    if (rest.empty() || !isLetter(rest.front())) {
        return {};
    }
    const auto end = std::find_if_not(rest.begin(), rest.end(), isLetterOrDigit);
    const auto length = static_cast<std::size_t>(end - rest.begin());
    return skipBlanks(rest.substr(length)).empty() ? rest.substr(0, length) : std::string_view();
}

OrvCountedPtr<CompileResult> compileAttributeShortcut(const std::string& text) {
    const std::string_view name = findBareAttribute(text);
    if (name.empty()) {
        return {};
    }
    const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
    const OrvCyclicPtr<MMConstantExpr> constant(new MMConstantExpr(MMValue(std::string(name))));
    const OrvCyclicPtr<MMAttrExpr> body(new MMAttrExpr(constant, variable));
    OrvCountedPtr<CompileResult> result(new CompileResult);
    result->objectVariable = OrvConverter<MMObjectVarExpr, MMObjectVarExpr>::toCounted(variable);
    result->body = OrvConverter<OrvCyclicPtrBody, MMAttrExpr>::toCounted(body);
    return result;
}
