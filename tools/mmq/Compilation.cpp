#include "Compilation.h"

#include <sstream>

#include "UnfollowedSteps.h"
#include "assist/TokenList.h"
#include "namespace/CreateNameSpaceVisitor.h"
#include "namespace/TopLevelEnvironment.h"
#include "parser/SyntaxParser.h"
#include "support/ParseException.h"
#include "typecheck/ASTTypeCheckVisitor.h"

namespace mmq {

namespace {

/// Accepts every type.
class AnyTypeRequirement : public TypeRequirement {
public:
    bool check(const TypePtr& /*type*/) const override { return true; }
    std::string text() const override { return "{any}"; }
};

void buildNameSpace(Analysis& analysis) {
    CreateNameSpaceVisitor visitor(TopLevelEnvironment::instance()->getScope());
    analysis.root->accept(visitor);
    analysis.nameSpace = visitor.getNameSpace();
}

void findType(Analysis& analysis, ExprParserDialogs& dialogs) {
    const AnyTypeRequirement requirement;
    ASTTypeCheckVisitor checker(dialogs, analysis.nameSpace, requirement);
    analysis.root->accept(checker);
    analysis.type = checker.getResult();
}

// Runs the stages up to the type, or up to the scopes. Exceptions about the text are shown as the
// compiler shows them.
Analysis runStages(const std::string& text, ExprParserDialogs& dialogs, bool wantsType) {
    Analysis analysis;
    std::ostringstream dropped;
    try {
        analysis.root = SyntaxParser::parse(dialogs, text.c_str(), dropped);
        dialogs.showMessage(0, 0, "ExprParser",
                            analysis.root ? "Parse succeeded." : "Parse failed.",
                            ExprParserDialogs::Info, false);
        if (analysis.root) {
            buildNameSpace(analysis);
        }
        if (analysis.root && wantsType) {
            findType(analysis, dialogs);
        }
    } catch (const ParseException& exception) {
        dialogs.showMessage(exception.getLine(), exception.getColumn(), "ExprParser",
                            exception.what(), ExprParserDialogs::Error, false);
        return {};
    }
    return analysis;
}

std::vector<const ASTNode*> unfollowedSteps(const Analysis& analysis) {
    return analysis.root ? findUnfollowedSteps(*analysis.root) : std::vector<const ASTNode*>();
}

As kindOf(const ExpressionText& text) {
    const TypePtr type = analyzeSilently(text.text()).type;
    return type && TypeExpression::isObjectCollection(type) ? As::association : As::attribute;
}

// The second token of "$map".
OrvCountedPtr<StringConstantNode> keywordIn(const std::string& text) {
    const TokenList tokens(text);
    const PlacedToken& name = tokens.tokens().at(1);
    OrvCountedPtr<StringConstantNode> node(
        new StringConstantNode(text.substr(name.offset, name.endOffset - name.offset)));
    node->setSpan({name.place.first, name.place.second, static_cast<std::uint32_t>(name.offset),
                   static_cast<std::uint32_t>(name.endOffset)});
    return node;
}

}  // namespace

Analysis analyze(const ExpressionText& text, Messages& messages) {
    return runStages(text.text(), messages, false);
}

Analysis analyzeType(const ExpressionText& text, Messages& messages) {
    return runStages(text.text(), messages, true);
}

Analysis analyzeSilently(const std::string& text) {
    SilentDialogs silent;
    return runStages(text, silent, true);
}

TypePtr typeOf(const Analysis& analysis, ASTNode& part) {
    SilentDialogs silent;
    const AnyTypeRequirement requirement;
    ASTTypeCheckVisitor checker(silent, analysis.nameSpace, requirement);
    try {
        part.accept(checker);
    } catch (const ParseException&) {
        return {};  // less of the stack is left than when the whole was checked
    }
    return checker.getResult();
}

bool checkStrictly(const ExpressionText& text, Messages& messages) {
    std::vector<TextError> errors = text.droppedTexts();
    // Only behind a reference to a label are there steps that are never followed.
    if (errors.empty() && text.text().find('@') != std::string::npos) {
        const Analysis analysis = analyzeSilently(text.text());
        for (const ASTNode* step : unfollowedSteps(analysis)) {
            errors.push_back(
                {step->getLine(), step->getColumn(),
                 "This step is never followed: a reference to a label ends its chain, and of "
                 "several in a group only the first is followed."});
        }
    }
    messages.showErrors(errors);
    return errors.empty();
}

CompiledExpression compile(const ExpressionText& text, As as, Messages& messages) {
    CompiledExpression compiled;
    if (!checkStrictly(text, messages)) {
        return compiled;
    }
    switch (as == As::automatic ? kindOf(text) : as) {
        case As::condition:
            compiled.value = ExprParser::parseMappedCondition(messages, text.text(), *compiled.map);
            break;
        case As::association:
            compiled.collection =
                ExprParser::parseMappedComplexAssociation(messages, text.text(), *compiled.map);
            break;
        default:
            compiled.value =
                ExprParser::parseMappedAssociatedAttribute(messages, text.text(), *compiled.map);
    }
    if (compiled.value && !compiled.map->getRoot()) {
        compiled.keywordName = keywordIn(text.text());
    }
    return compiled;
}

CompiledExpression compileAgain(const ExpressionText& text, As as) {
    SilentSink silent;
    Messages messages(text, silent);
    return compile(text, as, messages);
}

}  // namespace mmq
