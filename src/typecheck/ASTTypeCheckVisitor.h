// The type checker: the walk that types every expression and binds every name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "api/ExprParserDialogs.h"
#include "api/TypeRequirement.h"
#include "ast/ASTVisitor.h"
#include "namespace/NameSpace.h"
#include "namespace/TopLevelEnvironment.h"
#include "typecheck/LetVariableUsage.h"

/// Computes the type of every expression from the bottom up, checks the operands of every
/// construct, chooses the overload of every operator and application, and binds anchors and labels
/// to their symbols.
///
/// Each violation is a message of source "TypeChecker" at the node that it is about; all are
/// counted, the first hundred are shown. A part that failed has the error type, about which no
/// rule complains again, so that one mistake gives one message. Every node is visited whatever was
/// found, but for the elements of a tuple behind a failed one; a step that follows a group is
/// visited once. Made on the stack for one walk; borrows everything it is given.
class ASTTypeCheckVisitor final : public ASTVisitor {
public:
    /// How many errors are shown.
    static constexpr std::int32_t maximumShown = 100;

    ASTTypeCheckVisitor(ExprParserDialogs& dialogs, const OrvCountedPtr<NameSpace>& nameSpace,
                        const TypeRequirement& requirement);

    std::int32_t getErrorCount() const { return errorCount_; }
    const LetVariableUsage& getLetVariableUsage() const { return letVariableUsage_; }
    /// The type of the node that accepted this visitor, or an empty pointer before.
    TypePtr getResult() const { return result_ != nullptr ? *result_ : TypePtr(); }

    void visitSpecification(SpecificationNode& node) override;
    void visitUniversalQuantifier(UniversalQuantifierNode& node) override;
    void visitExistentialQuantifier(ExistentialQuantifierNode& node) override;
    void visitBinaryExpression(BinaryExpressionNode& node) override;
    void visitUnaryExpression(UnaryExpressionNode& node) override;
    void visitRelationalExpression(RelationalExpressionNode& node) override;
    void visitApplicationExpression(ApplicationExpressionNode& node) override;
    void visitMapExpression(MapExpressionNode& node) override;
    void visitFilterExpression(FilterExpressionNode& node) override;
    void visitTraverseExpression(TraverseExpressionNode& node) override;
    void visitSortExpression(SortExpressionNode& node) override;
    void visitLetExpression(LetExpressionNode& node) override;
    void visitIfExpression(IfExpressionNode& node) override;
    void visitTupleExpression(TupleExpressionNode& node) override;
    void visitUnitExpression(UnitExpressionNode& node) override;
    void visitRegExpConstant(RegExpConstantNode& node) override;
    void visitStringConstant(StringConstantNode& node) override;
    void visitIntegerConstant(IntegerConstantNode& node) override;
    void visitRealConstant(RealConstantNode& node) override;
    void visitBooleanConstant(BooleanConstantNode& node) override;
    void visitPath(PathNode& node) override;
    void visitReferenceAssociation(ReferenceAssociationNode& node) override;
    void visitDefinitionAssociation(DefinitionAssociationNode& node) override;

private:
    using TypeTest = bool (*)(const TypePtr&);
    /// The types of the arguments of a call.
    using Arguments = std::span<const TypePtr* const>;
    /// The functions of a name that was looked up; the name is a node's.
    struct FoundFunctions {
        std::string_view name;
        SymbolView functions;
    };
    /// The one variable of a name that was looked up from a scope; the name is a node's.
    struct FoundVariable {
        const Scope* scope = nullptr;
        std::string_view name;
        OrvCountedPtr<VariableSymbol> variable;
    };

    template <class BuildMessage>
    void report(const ASTNode& node, const BuildMessage& buildMessage);
    void reportError(const ASTNode& node, const std::string& message);
    void reportType(const ASTNode& node, const std::string& message, const TypePtr& found);
    void reportDisagreement(const ASTNode& node, const char* message, const char* firstName,
                            const TypePtr& first, const char* secondName, const TypePtr& second);

    /// Gives the node that is visited its type. The type stays where it is: with the canonical
    /// ones, in a symbol, or with those of tuples.
    void give(const TypePtr& type) { result_ = &type; }
    void give(TypePtr&& type) = delete;
    const TypePtr& typeOf(ASTNode& node);
    const TypePtr& typeOf(ExpressionNode& node);
    /// Visits a node and reports `message` at it unless its type passes the test or is the error
    /// type; returns the type.
    template <class Node>
    const TypePtr& check(Node& node, TypeTest test, const char* message);
    bool demand(const ASTNode& node, const TypePtr& type, TypeTest test, const char* message);

    void checkQuantifier(QuantifierNode& node);
    const TypePtr& applyBinary(const BinaryExpressionNode& node, const TypePtr& left,
                               const TypePtr& right);
    void checkLogical(const BinaryExpressionNode& node, const TypePtr& left, const TypePtr& right);
    const TypePtr& checkArithmetic(const BinaryExpressionNode& node, const TypePtr& left,
                                   const TypePtr& right);
    void checkLabel(DefinitionAssociationNode& node);
    const OrvCountedPtr<VariableSymbol>& variableOf(const PathNode& node);
    OrvCountedPtr<VariableSymbol> findVariable(const PathNode& node, const Scope* scope);
    const TypePtr& checkAnchor(PathNode& node);
    bool checkPatternWeight(const ExpressionNode& node, std::string_view pattern);
    bool isFirstVisit(const DefinitionAssociationNode& node);

    bool pushArguments(ExpressionNode& argument);
    bool pushElements(TupleExpressionNode& tuple);
    Arguments argumentsFrom(std::size_t first) const;
    const SymbolView& functionsNamed(std::string_view name);
    static bool resolve(ResolvedFunctionNode& node, const SymbolView& candidates,
                        Arguments arguments);
    void reportNoOverload(const ApplicationExpressionNode& node, const SymbolView& candidates,
                          Arguments arguments);
    void reportNoOverload(const RelationalExpressionNode& node, const SymbolView& candidates,
                          const TypePtr& left, const TypePtr& right);
    static TypePtr product(Arguments types);

    ExprParserDialogs& dialogs_;
    OrvCountedPtr<NameSpace> nameSpace_;
    const TopLevelEnvironment& builtIns_;  // no other scope declares functions
    const TypeRequirement& requirement_;
    LetVariableUsage letVariableUsage_;
    std::int32_t errorCount_ = 0;
    const TypePtr* result_ = nullptr;
    SmallArray<const TypePtr*, 16> arguments_;  // of the calls that are visited, inner ones last
    std::forward_list<TypePtr> tupleTypes_;
    std::vector<bool> checkedSteps_;  // by their entries in the name space
    FoundVariable foundVariable_;
    FoundFunctions foundFunctions_;
    std::size_t patternExcess_ = 0;  // what constant patterns weigh above their bytes
};
