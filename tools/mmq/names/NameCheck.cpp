// The tree of the compiled expression is walked; each visit of an expression leaves the classes of
// the objects that it yields. Variables have the classes of what they are bound to. A path is
// followed with sets of classes in place of objects, round its cycles until no step is reached by a
// new class. Conditions may lead to steps that were followed, and even to their own: the condition
// of such a step is visited again only where a class reaches it that did not before, so that there
// is an end, and soon. What is not in the target expression, such as the value of a let that is not
// used, is not looked at.
//
// Each place of a name is told of once, in the end, with all classes that came to it on whatever
// way: a name is right there if one of them has it. So is a label in a condition, which stands for
// the name of its step: what comes to the label alone counts, not what else comes to the step.
#include "names/NameCheck.h"

#include <compare>
#include <map>
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

    /// Tells of the names in an expression, up to where it is nested too deeply for this walk.
    /// The classes of the objects that it yields; all where it yields none.
    ClassSet visitRoot(SpecificationNode& root) {
        ClassSet yielded = vocabulary_.allClasses();
        try {
            yielded = visit(*root.getExpr());
        } catch (const ParseException&) {
            // What was visited is told of all the same.
        }
        tellUses();
        return yielded;
    }

    /// Tells of the names below a node, and the same.
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
    /// The classes of a variable before a condition that tests it, and what this says of them.
    struct Narrowing {
        ClassSet outside;
        ConditionOutcome outcome;
    };

    using Narrowings = std::map<std::size_t, Narrowing>;  // by number of the variable
    using Steps = std::unordered_map<DefinitionAssociationNode*, ClassSet>;  // and what arrives

    /// A text as the name of an attribute at one place; let leads a text to several.
    struct AttributeUse {
        const StringConstantNode* name;
        const TupleExpressionNode* place;
        auto operator<=>(const AttributeUse&) const = default;
    };

    /// What comes to places, in the order in which they were visited first.
    template <class Place>
    class Arrivals {
    public:
        void add(const Place& place, const ClassSet& classes) {
            const auto [number, isNew] = numbers_.try_emplace(place, all_.size());
            if (isNew) {
                all_.emplace_back(place, ClassSet());
            }
            all_[number->second].second.insert(classes);
        }
        const std::vector<std::pair<Place, ClassSet>>& all() const { return all_; }

    private:
        std::map<Place, std::size_t> numbers_;
        std::vector<std::pair<Place, ClassSet>> all_;
    };

    /// The steps that are followed from one of a path, in order; of them, what the path yields.
    struct Walk {
        Steps steps;
        std::vector<DefinitionAssociationNode*> order;
        ClassSet result;
    };

    ClassSet visit(const ExpressionPtr& node) { return visit(*node); }

    void visitQuantifier(QuantifierNode& node);
    void visitWithCurrent(ExpressionNode& body, const ClassSet& classes);
    ClassSet filtered(ExpressionNode& condition, const ClassSet& classes);
    Narrowings judgeTested(ExpressionNode& whole, ExpressionNode& condition) const;
    void combine(BinaryOperator op, ExpressionNode& right, Narrowings& narrowings) const;
    void narrow(const Narrowings& narrowings, bool isTrue);
    void widen(const Narrowings& narrowings);
    void takeClassNames(const PossibleTexts& texts, const PossibleTexts& other);
    ClassSet visitAll(const ExpressionNode& name);
    void visitAttribute(const TupleExpressionNode& arguments);
    ClassSet followPath(DefinitionAssociationNode& first, const ClassSet& classes);
    ClassSet followLabel(AssociationNode& reference, const ClassSet& classes);
    Walk walk(DefinitionAssociationNode& first, const ClassSet& classes);
    ClassSet reached(DefinitionAssociationNode& step, const ClassSet& classes);
    static bool addTo(Steps& steps, DefinitionAssociationNode* step, const ClassSet& arriving);
    void visitConditions(const Walk& walk);
    bool has(const DefinitionAssociationNode& step, const ClassSet& classes) const;
    void tellUses();

    const SourceMap* map_;
    const NameVocabulary& vocabulary_;
    NameReceiver& receiver_;
    VariableClasses variables_;
    TextFollower texts_;
    Arrivals<AttributeUse> attributes_;
    Arrivals<AssociationNode*> references_;
    Steps visited_;
    std::unordered_map<const DefinitionAssociationNode*, const DefinitionAssociationNode*>
        paths_;  // the first step of the path that a step is in
    std::map<std::pair<const DefinitionAssociationNode*, ClassSet>, ClassSet> followed_;
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

// What a condition says of the variables that it tests, or the whole that begins with it.
NameVisitor::Narrowings NameVisitor::judgeTested(ExpressionNode& whole,
                                                 ExpressionNode& condition) const {
    Narrowings narrowings;
    for (const std::size_t variable : variables_.testedBy(whole)) {
        const ClassSet& classes = variables_.classesOf(variable);
        narrowings[variable] = {classes, variables_.judge(condition, variable, classes)};
    }
    return narrowings;
}

// Takes a condition to be true, or false, in what is visited next.
void NameVisitor::narrow(const Narrowings& narrowings, bool isTrue) {
    for (const auto& [variable, narrowing] : narrowings) {
        const ConditionOutcome& outcome = narrowing.outcome;
        variables_.setClasses(variable, isTrue ? outcome.whenTrue : outcome.whenFalse);
    }
}

void NameVisitor::widen(const Narrowings& narrowings) {
    for (const auto& [variable, narrowing] : narrowings) {
        variables_.setClasses(variable, narrowing.outside);
    }
}

// Goes from what left operands say to what they say together with one more.
void NameVisitor::combine(BinaryOperator op, ExpressionNode& right, Narrowings& narrowings) const {
    for (auto& [variable, narrowing] : narrowings) {
        narrowing.outcome =
            variables_.combine(op, narrowing.outcome, right, variable, narrowing.outside);
    }
}

// Right operands are visited with what the left ones say where they do not decide.
void NameVisitor::visitBinaryExpression(BinaryExpressionNode& node) {
    const LeftSpine spine(node);
    visit(spine.innermostOperand());
    Narrowings narrowings = judgeTested(*node.getLhs(), *spine.innermostOperand());
    for (const BinaryExpressionNode& binary : spine) {
        const BinaryOperator op = binary.getOp();
        ExpressionNode& right = *binary.getRhs();
        narrow(narrowings, op != BinaryOperator::OR);
        visit(right);
        if (&binary != &node) {
            combine(op, right, narrowings);
        }
    }
    widen(narrowings);
}

void NameVisitor::visitIfExpression(IfExpressionNode& node) {
    visit(node.getTest());
    const Narrowings narrowings = judgeTested(*node.getTest(), *node.getTest());
    narrow(narrowings, true);
    ClassSet classes = visit(node.getThen());
    narrow(narrowings, false);
    classes.insert(visit(node.getElse()));
    widen(narrowings);
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
        const std::string_view text = constant->getText();
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
            attributes_.add({constant, &arguments}, classes);
        }
    }
}

// The classes of which all objects are taken.
ClassSet NameVisitor::visitAll(const ExpressionNode& name) {
    const PossibleTexts texts = texts_.follow(name);
    bool isKnown = !texts.constants.empty() && !texts.hasClassName && !texts.hasOthers;
    ClassSet classes;
    for (const StringConstantNode* constant : texts.constants) {
        const std::optional<ClassNumber> number =
            vocabulary_.findClass(std::string(constant->getText()));
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

// The step that a step or a reference stands for; null where a label is not declared.
DefinitionAssociationNode* declaredStep(AssociationNode& node) {
    if (node.getAssociationKind() == AssociationKind::definition) {
        return static_cast<DefinitionAssociationNode*>(&node);
    }
    return node.getLabelSymbol() ? &node.getLabelSymbol()->getDeclaration() : nullptr;
}

void NameVisitor::visitPath(PathNode& node) {
    result_ = variables_.classesOf(node);
    if (node.getAssociation()) {
        const ClassSet classes = std::move(result_);
        AssociationNode& first = *node.getAssociation();
        DefinitionAssociationNode* const step = declaredStep(first);
        result_ = step == nullptr  ? vocabulary_.allClasses()
                  : step == &first ? followPath(*step, classes)
                                   : followLabel(first, classes);
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

// Adds what reaches a step. Returns false where all of it did before.
bool NameVisitor::addTo(Steps& steps, DefinitionAssociationNode* step, const ClassSet& arriving) {
    const auto [place, isNew] = steps.try_emplace(step);
    if (!isNew && place->second.contains(arriving)) {
        return false;
    }
    place->second.insert(arriving);
    return true;
}

ClassSet NameVisitor::followPath(DefinitionAssociationNode& first, const ClassSet& classes) {
    const Walk walk = this->walk(first, classes);
    visitConditions(walk);
    return walk.result;
}

// What a label of a path leads to from within the conditions of that path, which is asked often.
// Where nothing has the name of its step, it is not followed: that is told of at the label.
ClassSet NameVisitor::followLabel(AssociationNode& reference, const ClassSet& classes) {
    DefinitionAssociationNode& step = *declaredStep(reference);
    references_.add(&reference, classes);
    if (!step.getSibling() && !has(step, classes)) {
        return vocabulary_.allClasses();
    }
    const auto [place, isNew] = followed_.try_emplace({&step, classes});
    ClassSet& result = place->second;
    if (isNew) {
        const Walk walk = this->walk(step, classes);
        result = walk.result;
        visitConditions(walk);
    }
    return result;
}

NameVisitor::Walk NameVisitor::walk(DefinitionAssociationNode& first, const ClassSet& classes) {
    const auto* const path = paths_.try_emplace(&first, &first).first->second;
    Walk walk;
    std::vector<std::pair<AssociationNode*, ClassSet>> pending{{&first, classes}};
    while (!pending.empty()) {
        auto [node, arriving] = std::move(pending.back());
        pending.pop_back();
        DefinitionAssociationNode* const step = declaredStep(*node);
        if (step == nullptr) {
            continue;
        }
        if (paths_.try_emplace(step, path).first->second != path) {
            walk.result.insert(followLabel(*node, arriving));
        } else if (addTo(walk.steps, step, arriving)) {
            walk.order.push_back(step);
            const ClassSet targets = reached(*step, walk.steps[step]);
            if (step->getSibling()) {
                pending.emplace_back(step->getSibling().get(), arriving);
            }
            if (step->getChild()) {
                pending.emplace_back(step->getChild().get(), targets);
            }
            if (!step->getChild() || step->getAddToResult()) {
                walk.result.insert(targets);
            }
        }
    }
    return walk;
}

// The conditions come last: where they lead to one of these steps, it has been visited.
void NameVisitor::visitConditions(const Walk& walk) {
    std::vector<DefinitionAssociationNode*> reached;
    for (DefinitionAssociationNode* step : walk.order) {
        if (addTo(visited_, step, walk.steps.at(step))) {
            reached.push_back(step);
        }
    }
    for (DefinitionAssociationNode* step : reached) {
        if (step->getCondition()) {
            visitWithCurrent(*step->getCondition(),
                             vocabulary_.reach(visited_[step], step->getName()));
        }
    }
}

// ---------------------------------------------------------------- telling

bool NameVisitor::has(const DefinitionAssociationNode& step, const ClassSet& classes) const {
    return vocabulary_.has(classes, step.getName(), ReadAs::association);
}

// A label stands for the later alternatives of its step, too, and is not told of where there are
// some; nor where the name of the step is wrong, which is told of there.
void NameVisitor::tellUses() {
    for (const auto& [use, classes] : attributes_.all()) {
        receiver_.takeAttribute(*use.name, classes);
    }
    for (const auto& [step, classes] : visited_) {
        receiver_.takeAssociation(*step, classes);
    }
    for (const auto& [reference, classes] : references_.all()) {
        DefinitionAssociationNode& step = *declaredStep(*reference);
        if (!step.getSibling() && !has(step, classes) && has(step, visited_[&step])) {
            receiver_.takeReference(*reference, step, classes);
        }
    }
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
    ClassSet yielded = visitor.visitRoot(*expression.map->getRoot());
    return {judge.findings(), std::move(yielded)};
}

void receiveNames(SpecificationNode& root, const NameVocabulary& vocabulary,
                  const ClassSet& classesOfThis, NameReceiver& receiver) {
    NameVisitor(nullptr, vocabulary, classesOfThis, receiver).visitRoot(root);
}

bool showFindings(const NameFindings& findings, Messages& messages) {
    messages.showErrors(findings.errors);
    messages.showNotes(findings.notes);
    return findings.errors.empty();
}

}  // namespace mmq
