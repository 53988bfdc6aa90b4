// Code generation: the last walk, from the checked tree to the target expressions.
#pragma once

#include <string_view>
#include <utility>

#include "ast/ASTVisitor.h"
#include "codegen/FunctionCodeGenerator.h"
#include "codegen/MMCachedExpr.h"
#include "codegen/SourceMap.h"
#include "codegen/Target.h"
#include "codegen/TargetTable.h"
#include "fliodram/MMAbsExpr.h"
#include "fliodram/MMAssociationExpr.h"
#include "foundation/OrvSimplePtr.h"
#include "foundation/SmallArray.h"
#include "namespace/NameSpace.h"
#include "typecheck/LetVariableUsage.h"

/// Builds the target graph of a tree that the type checker accepted.
///
/// Each visit of an expression pushes one result; a parent pops what its child pushed. Calls and
/// comparisons are built by the generator of the function symbol that the checker chose, variables
/// by that of the variable symbol: all uses of a symbol share one target, which is how variables
/// are bound. Steps with a label are known before what is below them is generated, so that
/// references make the graph cyclic; a step with several parents is generated once. What reads the
/// same attribute of the same variable is mostly one target, too, where no map asks for each.
///
/// Reports nothing: what can fail is an internal inconsistency, and an OrvAssertion. Made on the
/// stack for one walk; what it built survives it through the results that the driver takes.
class CodeGenVisitor final : public ASTVisitor {
public:
    /// Notes in `map`, where there is one, what was made of which node.
    CodeGenVisitor(const OrvCountedPtr<NameSpace>& nameSpace, const LetVariableUsage& usage,
                   SourceMap* map = nullptr);

    /// The variable that stands for the object of evaluation, and the body; set when the root has
    /// been visited.
    const OrvCyclicPtr<MMObjectVarExpr>& getThisVariable() const { return thisVariable_; }
    const TargetPtr& getResult() const { return result_; }

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
    class Retriever;

    static constexpr std::size_t mostReads = 4;

    /// A read of an attribute of a variable, and the target that it became.
    struct Read {
        std::string_view attribute;
        const VariableSymbol* variable = nullptr;
        TargetPtr target;
    };

    void push(TargetPtr&& target) { stack_.append(std::move(target)); }
    TargetPtr pop();
    template <class Target>
    OrvCyclicPtr<Target> generate(ASTNode& node) {
        return narrow<Target>(generateTarget(node));
    }
    TargetPtr generateTarget(ASTNode& node);
    void visitOperands(ExpressionNode& node);
    void pushText(std::string_view text);
    void visitAndNote(ASTNode& node);
    void note(const ASTNode& node, const SourceSpan& span, OrvCyclicPtrBody& target) {
        if (map_ != nullptr) {
            map_->add(node, span, target);
        }
    }
    template <class Binder, class Target>
    OrvCyclicPtr<Target> boundVariable(const Binder& binder, OrvCyclicPtr<Target> variable);
    OrvCyclicPtr<MMObjectVarExpr> currentVariable(const ASTNode& node);

    const TargetPtr& targetOf(const OrvCountedPtr<VariableSymbol>& symbol);
    OrvCyclicPtr<MMObjectVarExpr> objectVariable(const OrvCountedPtr<VariableSymbol>& symbol);
    OrvCyclicPtr<MMObjectVarExpr> objectVariable(std::string_view name, const ASTNode& node);
    OrvCyclicPtr<MMValueAbsExpr> valueFunction(ASTNode& body,
                                               const OrvCyclicPtr<MMObjectVarExpr>& variable);

    template <class Quantifier>
    void generateQuantifier(const QuantifierNode& node);
    void generateCall(const ResolvedFunctionNode& node, std::size_t first);
    Read* placeOfRead(const ApplicationExpressionNode& node);
    Read& addRead(std::string_view attribute, const VariableSymbol& variable);
    template <class If, class Branch>
    void generateIf(const OrvCyclicPtr<MMValueExpr>& test, const TargetPtr& thenBranch,
                    const TargetPtr& elseBranch);
    OrvSimplePtr<MMCachedExpr> fillBinding(const TypePtr& type, const TargetPtr& binding,
                                           const TargetPtr& source);
    void generateLet(const TypePtr& type, OrvSimplePtr<MMCachedExpr> binding,
                     const TargetPtr& body);
    void fillStep(DefinitionAssociationNode& node,
                  const OrvCyclicPtr<MMAssociationTraversal>& traversal);

    OrvCountedPtr<NameSpace> nameSpace_;
    const LetVariableUsage& usage_;
    SourceMap* map_;
    TargetTable<ASTNode, MMAssociationTraversal> steps_;
    TargetTable<VariableSymbol, OrvCyclicPtrBody> variables_;
    bool sharesReads_;                   // no map asks for each, and there is room for two
    SmallArray<Read, mostReads> reads_;  // the last ones
    std::size_t nextRead_ = 0;           // the place of the oldest, when all are taken
    SmallArray<TargetPtr, 16> stack_;
    OrvCyclicPtr<MMObjectVarExpr> thisVariable_;
    TargetPtr result_;
};
