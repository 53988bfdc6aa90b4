// The tree of the compiled expression is walked; each visit of an expression leaves the classes of
// the objects that it yields. Variables have the classes of what they are bound to. A path is
// followed with sets of classes in place of objects, round its cycles until no step is reached by a
// new class; then each step is judged once. What is not in the target expression, such as the value
// of a let that is not used, is not looked at.
#include "names/NameCheck.h"

#include <unordered_map>
#include <utility>

#include "ast/ASTVisitor.h"
#include "ast/LeftSpine.h"
#include "names/PossibleTexts.h"
#include "names/VariableClasses.h"
#include "namespace/Symbol.h"
#include "support/ParseException.h"

namespace mmq {

namespace {

/// Walks over one expression and tells of its names.
class NameVisitor : public ASTVisitor {
public:
    NameVisitor(const SourceMap* map, const NameVocabulary& vocabulary,
                const ClassSet& classesOfThis, NameReceiver& receiver)
        : map_(map),
          vocabulary_(vocabulary),
          receiver_(receiver),
          variables_(vocabulary, classesOfThis) {}

    /// Tells of the names below a node. The classes of the objects that it yields; all where it
    /// yields none.
    ClassSet visit(ASTNode& node) {
        checkVisitDepth(node);
        result_ = vocabulary_.allClasses();
        node.accept(*this);
        return std::move(result_);
    }

    void visitSpecification(SpecificationNode& node) override { visit(node.getExpr()); }
    void visitUniversalQuantifier(UniversalQuantifierNode& node) override { visitQuantifier(node); }
    void visitExistentialQuantifier(ExistentialQuantifierNode& node) override {
        visitQuantifier(node);
    }
    void visitBinaryExpression(BinaryExpressionNode& node) override;
    void visitUnaryExpression(UnaryExpressionNode& node) override { visit(node.getExpr()); }
    void visitRelationalExpression(RelationalExpressionNode& node) override;
    void visitApplicationExpression(ApplicationExpressionNode& node) override;
    void visitMapExpression(MapExpressionNode& node) override {
        visitWithCurrent(*node.getFunction(), visit(node.getSource()));
    }
    void visitFilterExpression(FilterExpressionNode& node) override {
        result_ = filtered(*node.getPredicate(), visit(node.getSource()));
    }
    void visitTraverseExpression(TraverseExpressionNode& node) override {
        visitWithCurrent(*node.getPath(), visit(node.getSource()));
    }
    void visitSortExpression(SortExpressionNode& node) override;
    void visitLetExpression(LetExpressionNode& node) override;
    void visitIfExpression(IfExpressionNode& node) override;
    void visitTupleExpression(TupleExpressionNode& node) override;
    void visitUnitExpression(UnitExpressionNode& /*node*/) override {}
    void visitRegExpConstant(RegExpConstantNode& /*node*/) override {}
    void visitStringConstant(StringConstantNode& /*node*/) override {}
    void visitIntegerConstant(IntegerConstantNode& /*node*/) override {}
    void visitRealConstant(RealConstantNode& /*node*/) override {}
    void visitBooleanConstant(BooleanConstantNode& /*node*/) override {}
    void visitPath(PathNode& node) override;
    // Steps are followed by followPath().
    void visitReferenceAssociation(ReferenceAssociationNode& /*node*/) override {}
    void visitDefinitionAssociation(DefinitionAssociationNode& /*node*/) override {}

private:
    using Outcomes = std::vector<ConditionOutcome>;  // by number of the variable
    using Steps = std::unordered_map<DefinitionAssociationNode*, ClassSet>;

    ClassSet visit(const ExpressionPtr& node) { return visit(*node); }

    void visitQuantifier(QuantifierNode& node);
    void visitWithCurrent(ExpressionNode& body, const ClassSet& classes);
    ClassSet filtered(ExpressionNode& condition, const ClassSet& classes);
    Outcomes judgeAll(ExpressionNode& condition) const;
    void narrow(const Outcomes& outcomes, bool isTrue);
    void takeClassNames(const PossibleTexts& texts, const PossibleTexts& other);
    ClassSet visitAll(const ExpressionNode& name);
    void visitAttribute(const TupleExpressionNode& arguments);
    ClassSet followPath(AssociationNode& first, const ClassSet& classes);
    ClassSet reached(DefinitionAssociationNode& step, const ClassSet& classes);

    const SourceMap* map_;
    const NameVocabulary& vocabulary_;
    NameReceiver& receiver_;
    VariableClasses variables_;
    TextFollower texts_;
    ClassSet result_;
};

// ---------------------------------------------------------------- variables and conditions

void NameVisitor::visitQuantifier(QuantifierNode& node) {
    const ClassSet classes = visit(node.getSource());
    variables_.push(node.getBoundVariable().get(), true, classes);
    visit(node.getExpr());
    variables_.pop();
}

void NameVisitor::visitWithCurrent(ExpressionNode& body, const ClassSet& classes) {
    variables_.push(nullptr, true, classes);
    result_ = visit(body);
    variables_.pop();
}

// The classes that the objects have for which a condition, which is judged, is true.
ClassSet NameVisitor::filtered(ExpressionNode& condition, const ClassSet& classes) {
    variables_.push(nullptr, true, classes);
    visit(condition);
    ClassSet result = variables_.judgeInnermost(condition).whenTrue;
    variables_.pop();
    return result;
}

NameVisitor::Outcomes NameVisitor::judgeAll(ExpressionNode& condition) const {
    Outcomes outcomes;
    for (const ClassSet& classes : variables_.all()) {
        outcomes.push_back(variables_.judge(condition, outcomes.size(), classes));
    }
    return outcomes;
}

// Takes a condition to be true, or false, in what is visited next.
void NameVisitor::narrow(const Outcomes& outcomes, bool isTrue) {
    std::vector<ClassSet> classes;
    for (const ConditionOutcome& outcome : outcomes) {
        classes.push_back(isTrue ? outcome.whenTrue : outcome.whenFalse);
    }
    variables_.setAll(classes);
}

// Right operands are visited with what the left ones say where they do not decide.
void NameVisitor::visitBinaryExpression(BinaryExpressionNode& node) {
    const LeftSpine spine(node);
    visit(spine.innermostOperand());
    const std::vector<ClassSet> outside = variables_.all();
    Outcomes outcomes = judgeAll(*spine.innermostOperand());
    for (auto binary = spine.rbegin(); binary != spine.rend(); ++binary) {
        const BinaryOperator op = (*binary)->getOp();
        ExpressionNode& right = *(*binary)->getRhs();
        narrow(outcomes, op != BinaryOperator::OR);
        visit(right);
        const bool isLast = *binary == &node;
        for (std::size_t i = 0; i < outcomes.size() && !isLast; ++i) {
            outcomes[i] = variables_.combine(op, outcomes[i], right, i, outside[i]);
        }
    }
    variables_.setAll(outside);
}

void NameVisitor::visitIfExpression(IfExpressionNode& node) {
    visit(node.getTest());
    const Outcomes outcomes = judgeAll(*node.getTest());
    const std::vector<ClassSet> outside = variables_.all();
    narrow(outcomes, true);
    ClassSet classes = visit(node.getThen());
    narrow(outcomes, false);
    classes.insert(visit(node.getElse()));
    variables_.setAll(outside);
    result_ = std::move(classes);
}

// Only where a text is equal to the name of a class, or is not, is it one itself: others order
// classes, or are patterns.
void NameVisitor::visitRelationalExpression(RelationalExpressionNode& node) {
    visit(*node.getLhs());
    visit(*node.getRhs());
    if (node.getOp() == RelationalOperator::EQUAL ||
        node.getOp() == RelationalOperator::NOT_EQUAL) {
        const PossibleTexts left = texts_.follow(*node.getLhs());
        const PossibleTexts right = texts_.follow(*node.getRhs());
        takeClassNames(left, right);
        takeClassNames(right, left);
    }
}

// Tells of the texts that something is compared with, if that is the name of a class. A class of
// the empty name is that of no object, and what the other side may be without a class is none.
void NameVisitor::takeClassNames(const PossibleTexts& texts, const PossibleTexts& other) {
    const Letters letters = texts.letters != Letters::asTheyAre ? texts.letters : other.letters;
    for (const StringConstantNode* constant : texts.constants) {
        const std::string& text = constant->getText();
        if (other.isClassName() && !text.empty() && !other.hasConstant(text)) {
            receiver_.takeClass(*constant, letters);
        }
    }
}

void NameVisitor::visitSortExpression(SortExpressionNode& node) {
    ClassSet classes = visit(node.getSource());
    for (const SortKey& key : node.getKeys()) {
        visitWithCurrent(*key.getExpr(), classes);
    }
    result_ = std::move(classes);
}

void NameVisitor::visitLetExpression(LetExpressionNode& node) {
    const bool isUsed = map_ == nullptr || map_->targetOf(*node.getSource()) != nullptr;
    texts_.enter(node);
    variables_.push(node.getBoundVariable().get(), false,
                    isUsed ? visit(node.getSource()) : vocabulary_.allClasses());
    result_ = visit(node.getExpr());
    variables_.pop();
}

// ---------------------------------------------------------------- functions

void NameVisitor::visitTupleExpression(TupleExpressionNode& node) {
    for (const ExpressionPtr& element : node.getElements()) {
        visit(element);
    }
}

// Names whose letters are changed are not those of attributes.
void NameVisitor::visitAttribute(const TupleExpressionNode& arguments) {
    ExpressionNode& name = *arguments.getElements()[0];
    visit(name);
    const ClassSet classes = visit(arguments.getElements()[1]);
    const PossibleTexts texts = texts_.follow(name);
    for (const StringConstantNode* constant : texts.constants) {
        if (texts.letters == Letters::asTheyAre) {
            receiver_.takeAttribute(*constant, classes);
        }
    }
}

// The classes of which all objects are taken.
ClassSet NameVisitor::visitAll(const ExpressionNode& name) {
    const PossibleTexts texts = texts_.follow(name);
    bool isKnown = !texts.constants.empty() && !texts.hasClassName && !texts.hasOthers;
    ClassSet classes;
    for (const StringConstantNode* constant : texts.constants) {
        const std::optional<ClassNumber> number = vocabulary_.findClass(constant->getText());
        isKnown = isKnown && number && texts.letters == Letters::asTheyAre;
        if (texts.letters == Letters::asTheyAre) {
            receiver_.takeClass(*constant, texts.letters);
        }
        if (number) {
            classes.insert(*number);
        }
    }
    return isKnown ? classes : vocabulary_.allClasses();
}

// All functions that give objects give some of those that they take, but for the one that gives all
// of a class.
void NameVisitor::visitApplicationExpression(ApplicationExpressionNode& node) {
    ExpressionNode& argument = *node.getExpr();
    const bool isAttribute = node.getName() == "attribute" &&
                             argument.getExpressionKind() == ExpressionKind::tupleExpression;
    if (isAttribute) {
        visitAttribute(static_cast<const TupleExpressionNode&>(argument));
        return;
    }
    ClassSet classes = visit(argument);
    result_ = node.getName() == "all" ? visitAll(argument) : std::move(classes);
}

// ---------------------------------------------------------------- paths

void NameVisitor::visitPath(PathNode& node) {
    result_ = variables_.classesOf(node);
    if (node.getAssociation()) {
        const ClassSet classes = std::move(result_);
        result_ = followPath(*node.getAssociation(), classes);
    }
}

// What a step reaches, as far as its condition lets it.
ClassSet NameVisitor::reached(DefinitionAssociationNode& step, const ClassSet& classes) {
    ClassSet result = vocabulary_.reach(classes, step.getName());
    if (step.getCondition()) {
        variables_.push(nullptr, true, result);
        result = variables_.judgeInnermost(*step.getCondition()).whenTrue;
        variables_.pop();
    }
    return result;
}

// The step that a step or a reference stands for; null where a label is not declared.
DefinitionAssociationNode* declaredStep(AssociationNode& node) {
    if (node.getAssociationKind() == AssociationKind::definition) {
        return static_cast<DefinitionAssociationNode*>(&node);
    }
    return node.getLabelSymbol() ? &node.getLabelSymbol()->getDeclaration() : nullptr;
}

ClassSet NameVisitor::followPath(AssociationNode& first, const ClassSet& classes) {
    ClassSet result;
    Steps steps;
    std::vector<DefinitionAssociationNode*> order;
    std::vector<std::pair<AssociationNode*, ClassSet>> pending{{&first, classes}};
    while (!pending.empty()) {
        auto [node, arriving] = std::move(pending.back());
        pending.pop_back();
        DefinitionAssociationNode* const step = declaredStep(*node);
        if (step == nullptr) {
            continue;
        }
        const auto [place, isNew] = steps.try_emplace(step);
        if (!isNew && place->second.contains(arriving)) {
            continue;
        }
        if (isNew) {
            order.push_back(step);
        }
        place->second.insert(arriving);
        const ClassSet targets = reached(*step, place->second);
        if (step->getSibling()) {
            pending.emplace_back(step->getSibling().get(), arriving);
        }
        if (step->getChild()) {
            pending.emplace_back(step->getChild().get(), targets);
        }
        if (!step->getChild() || step->getAddToResult()) {
            result.insert(targets);
        }
    }
    for (DefinitionAssociationNode* step : order) {
        receiver_.takeAssociation(*step, steps[step]);
        if (step->getCondition()) {
            filtered(*step->getCondition(), vocabulary_.reach(steps[step], step->getName()));
        }
    }
    return result;
}

}  // namespace

NameCheckResult checkNames(const CompiledExpression& expression, const NameVocabulary& vocabulary,
                           const ClassSet& classesOfThis) {
    NameJudge judge(vocabulary);
    if (expression.keywordName) {
        judge.takeAttribute(*expression.keywordName,
                            classesOfThis.isEmpty() ? vocabulary.allClasses() : classesOfThis);
    }
    if (!expression.map->getRoot()) {
        return {judge.findings(), vocabulary.allClasses()};
    }
    NameVisitor visitor(expression.map.get(), vocabulary, classesOfThis, judge);
    try {
        ClassSet yielded = visitor.visit(*expression.map->getRoot()->getExpr());
        return {judge.findings(), std::move(yielded)};
    } catch (const ParseException& exception) {  // less of the stack is left than for compiling
        const TextError error{exception.getLine(), exception.getColumn(), exception.what()};
        return {{{error}, {}}, vocabulary.allClasses()};
    }
}

void receiveNames(SpecificationNode& root, const NameVocabulary& vocabulary,
                  const ClassSet& classesOfThis, NameReceiver& receiver) {
    try {
        NameVisitor(nullptr, vocabulary, classesOfThis, receiver).visit(*root.getExpr());
    } catch (const ParseException&) {
        // Of what is nested too deeply, nothing is told.
    }
}

bool showFindings(const NameFindings& findings, Messages& messages) {
    messages.showErrors(findings.errors);
    messages.showNotes(findings.notes);
    return findings.errors.empty();
}

}  // namespace mmq
