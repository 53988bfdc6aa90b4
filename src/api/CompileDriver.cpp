#include "api/CompileDriver.h"

#include <iostream>

#include "codegen/CodeGenVisitor.h"
#include "namespace/CreateNameSpaceVisitor.h"
#include "namespace/TopLevelEnvironment.h"
#include "parser/SyntaxParser.h"
#include "support/CSignal2Exception.h"
#include "support/OrvLogBase.h"
#include "support/ParseException.h"
#include "typecheck/ASTTypeCheckVisitor.h"

namespace {

void showProgress(ExprParserDialogs& dialogs, const std::string& message) {
    static const std::string source = "ExprParser";
    dialogs.showMessage(0, 0, source, message, ExprParserDialogs::Info, false);
}

void showSuccess(ExprParserDialogs& dialogs) {
    static const std::string message = "Parse succeeded.";
    showProgress(dialogs, message);
}

void showErrorCount(ExprParserDialogs& dialogs, std::int32_t errors) {
    static const std::string none = "There were 0 errors during type checking.";
    if (errors == 0) {
        showProgress(dialogs, none);
    } else {
        showProgress(dialogs, errors == 1 ? "There was 1 error during type checking."
                                          : "There were " + std::to_string(errors) +
                                                " errors during type checking.");
    }
}

OrvCountedPtr<NameSpace> buildNameSpace(SpecificationNode& root) {
    CreateNameSpaceVisitor visitor(TopLevelEnvironment::instance()->getScope());
    root.accept(visitor);
    return visitor.getNameSpace();
}

OrvCountedPtr<CompileResult> generate(SpecificationNode& root,
                                      const OrvCountedPtr<NameSpace>& nameSpace,
                                      const LetVariableUsage& usage, SourceMap* map) {
    CodeGenVisitor visitor(nameSpace, usage, map);
    root.accept(visitor);
    OrvCountedPtr<CompileResult> result(new CompileResult);
    result->objectVariable =
        OrvConverter<MMObjectVarExpr, MMObjectVarExpr>::toCounted(visitor.getThisVariable());
    result->body = OrvConverter<OrvCyclicPtrBody, OrvCyclicPtrBody>::toCounted(visitor.getResult());
    return result;
}

// The phases, strictly in this order, each only after the one before it succeeded. In the end the
// tree goes with its region, where nobody keeps it.
OrvCountedPtr<CompileResult> runPhases(OrvCompilationMemory& memory, ExprParserDialogs& dialogs,
                                       const std::string& text, const TypeRequirement& requirement,
                                       SourceMap* map) {
    const CSignal2Exception guard;
    OrvCountedPtr<SpecificationNode> root = SyntaxParser::parse(dialogs, text.c_str(), std::cerr);
    if (!root) {
        showProgress(dialogs, "Parse failed.");
        return {};
    }
    showSuccess(dialogs);
    const OrvCountedPtr<NameSpace> nameSpace = buildNameSpace(*root);
    ASTTypeCheckVisitor checker(dialogs, nameSpace, requirement);
    root->accept(checker);
    showErrorCount(dialogs, checker.getErrorCount());
    if (checker.getErrorCount() != 0) {
        showProgress(dialogs, "Expression did not type check.");
        return {};
    }
    if (map != nullptr) {
        map->setRoot(root);
    }
    OrvCountedPtr<CompileResult> result =
        generate(*root, nameSpace, checker.getLetVariableUsage(), map);
    if (map == nullptr && root.abandonInRegion()) {
        nameSpace->abandonScopes();
        memory.endNodesAtOnce();
    }
    return result;
}

void logCatch(const char* message) noexcept {
    OrvException::getLog().writeLine("Catch", {"Exception catch: ", message});
}

// What a host's dialogs throw while they are told of an exception ends here, too.
void reportParseException(ExprParserDialogs& dialogs, const ParseException& exception) noexcept {
    try {
        dialogs.showMessage(exception.getLine(), exception.getColumn(), "ExprParser",
                            exception.what(), ExprParserDialogs::Error, false);
    } catch (const std::exception& second) {
        logCatch(second.what());
    } catch (...) {
        OrvException::getLog().writeLine("Catch", {"Exception catch"});
    }
}

}  // namespace

OrvCountedPtr<CompileResult> CompileDriver::compile(OrvCompilationMemory& memory,
                                                    ExprParserDialogs& dialogs,
                                                    const std::string& text,
                                                    const TypeRequirement& requirement,
                                                    SourceMap* map) noexcept {
    if (map != nullptr) {
        map->clear();
    }
    try {
        return runPhases(memory, dialogs, text, requirement, map);
    } catch (const ParseException& exception) {
        logCatch(exception.what());
        reportParseException(dialogs, exception);
    } catch (const std::exception& exception) {
        logCatch(exception.what());
    } catch (...) {
        OrvException::getLog().writeLine("Catch", {"Exception catch"});
    }
    if (map != nullptr) {
        map->clear();
    }
    return {};
}
