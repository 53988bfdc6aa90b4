// Walks the tree and computes with plain loops. Names are looked up in a chain of frames, innermost
// first; overloads are told apart by the values. Every visit leaves its value in result_. A frame
// is an object on the stack of the visit that opens it; collections are computed as far as they can
// be before a visit ends (see NaiveCollection), so no frame is needed after that.
//
// A path is followed with a queue of (step, object): see Walk. A step is its definition together
// with the frame of the path that declares it, in which its condition is evaluated and the labels
// behind it are looked up; a reference is resolved to that before anything is done with it.
#include "evaluation/NaiveEvaluator.h"

#include <algorithm>
#include <deque>
#include <map>
#include <set>
#include <span>
#include <utility>

#include "ast/ASTVisitor.h"

namespace {

/// A variable, whose value is there or to be had from its source in the outer frame; or, without a
/// name, the labels of a path.
struct Frame {
    const Frame* outer;
    std::string name;
    mutable std::optional<NaiveValue> value;
    ExpressionNode* source = nullptr;
    std::map<std::string, DefinitionAssociationNode*> labels = {};
};

/// A step of a path, found.
struct Step {
    DefinitionAssociationNode* node;
    const Frame* frame;
};

Step resolve(AssociationNode& node, const Frame* frame) {
    if (node.getAssociationKind() == AssociationKind::definition) {
        return {&dynamic_cast<DefinitionAssociationNode&>(node), frame};
    }
    const std::string label(dynamic_cast<ReferenceAssociationNode&>(node).getName());
    while (frame->labels.count(label) == 0) {
        frame = frame->outer;
    }
    return {frame->labels.at(label), frame};
}

/// A step and its siblings, up to one that was met before.
std::vector<Step> alternatives(AssociationNode* node, const Frame* frame) {
    std::vector<Step> steps;
    std::set<AssociationNode*> met;
    while (node != nullptr) {
        const Step step = resolve(*node, frame);
        if (!met.insert(step.node).second) {
            break;
        }
        steps.push_back(step);
        node = step.node->getSibling().get();
        frame = step.frame;
    }
    return steps;
}

void collectLabels(AssociationNode* node, std::set<AssociationNode*>& met, Frame& frame) {
    if (node != nullptr && met.insert(node).second) {
        auto* definition = dynamic_cast<DefinitionAssociationNode*>(node);
        if (definition != nullptr && !definition->getLabel().empty()) {
            frame.labels[std::string(definition->getLabel())] = definition;
        }
        collectLabels(node->getChild().get(), met, frame);
        collectLabels(node->getSibling().get(), met, frame);
    }
}

/// The collection that `add` fills with what each element of `source` gives, as far as both can be
/// computed.
template <class Element, class Add>
NaiveCollection<Element> collect(const NaiveObjects& source, const Add& add) {
    NaiveCollection<Element> result;
    try {
        for (const Thing* object : source.elements) {
            add(object, result.elements);
        }
        result.failure = source.failure;
    } catch (const NaiveFailure& failure) {
        result.failure = failure;
    }
    return result;
}

/// A value that was computed to its end; throws what a collection meets there.
const NaiveValue& complete(const NaiveValue& value) {
    if (const auto* objects = std::get_if<NaiveObjects>(&value)) {
        (void)objects->all();
    } else if (const auto* texts = std::get_if<NaiveTexts>(&value)) {
        (void)texts->all();
    }
    return value;
}

/// The evaluator of one tree for one object.
class NaiveEvaluator : private ASTVisitor {
public:
    explicit NaiveEvaluator(const std::vector<Thing>& things) : things_(things) {}

    NaiveValue evaluateIn(ExpressionNode& node, const Frame* frame) {
        constexpr int maximumSteps = 100'000;
        constexpr int maximumDepth = 300;
        if (++steps_ > maximumSteps || depth_ > maximumDepth) {
            throw NaiveRefusal();
        }
        ++depth_;
        const Frame* outer = std::exchange(frame_, frame);
        try {
            node.accept(*this);
        } catch (const NaiveFailure&) {  // which a collection may keep
            frame_ = outer;
            --depth_;
            throw;
        }
        frame_ = outer;
        --depth_;
        return std::move(result_);
    }

private:
    /// One evaluation of a path.
    class Walk {
    public:
        explicit Walk(NaiveEvaluator& evaluator) : evaluator_(evaluator) {}

        NaiveObjects from(AssociationNode& first, const Frame* frame, const Thing* object) {
            try {
                for (const Step& step : alternatives(&first, frame)) {
                    waiting_.emplace_back(step, object);
                }
                for (; !waiting_.empty(); waiting_.pop_front()) {
                    follow(waiting_.front().first, waiting_.front().second, false);
                }
            } catch (const NaiveFailure& failure) {
                result_.failure = failure;
            }
            return result_;
        }

    private:
        void follow(const Step& step, const Thing* object, bool isDepthFirst) {
            if (!followed_.emplace(step.node, object).second) {
                return;
            }
            const ExpressionPtr& condition = step.node->getCondition();
            for (const Thing* target : naive::targets(object, std::string(step.node->getName()))) {
                if (condition && !evaluator_.getFor<bool>(target, condition, step.frame)) {
                    continue;
                }
                const bool isResult = !step.node->getChild() || step.node->getAddToResult();
                if (isResult && reached_.insert(target).second) {
                    result_.elements.push_back(target);
                }
                for (const Step& next : alternatives(step.node->getChild().get(), step.frame)) {
                    if (isDepthFirst || step.node->getDepthFirstEvaluation()) {
                        follow(next, target, true);
                    } else {
                        waiting_.emplace_back(next, target);
                    }
                }
            }
        }

        NaiveEvaluator& evaluator_;
        NaiveObjects result_;
        std::set<const Thing*> reached_;
        std::set<std::pair<const AssociationNode*, const Thing*>> followed_;
        std::deque<std::pair<Step, const Thing*>> waiting_;
    };

    template <class Type>
    Type get(const ExpressionPtr& expression) {
        return std::get<Type>(evaluateIn(*expression, frame_));
    }

    NaiveValue valueFor(const Thing* current, const ExpressionPtr& expression, const Frame* frame) {
        const Frame binding{frame, "current", current};
        return evaluateIn(*expression, &binding);
    }

    template <class Type>
    Type getFor(const Thing* current, const ExpressionPtr& expression, const Frame* frame) {
        return std::get<Type>(valueFor(current, expression, frame));
    }

    NaiveValue variable(const std::string& name) {
        const Frame* frame = frame_;
        while (frame->name != name) {
            frame = frame->outer;
        }
        if (!frame->value) {
            frame->value = complete(evaluateIn(*frame->source, frame->outer));
        }
        return *frame->value;
    }

    void visitPath(PathNode& node) override {
        const bool isModel = node.isAnchor(AnchorKind::MODEL);
        NaiveValue anchor = variable(isModel ? "this" : std::string(node.getAnchor()));
        if (isModel) {
            const auto*& object = std::get<const Thing*>(anchor);
            while (object->parent != nullptr) {
                object = object->parent;
            }
        }
        if (!node.getAssociation()) {
            result_ = anchor;
            return;
        }
        Frame frame{frame_, "", std::nullopt};
        std::set<AssociationNode*> met;
        collectLabels(node.getAssociation().get(), met, frame);
        result_ = Walk(*this).from(*node.getAssociation(), &frame, std::get<const Thing*>(anchor));
    }

    bool isDecided(const QuantifierNode& node, bool decisive) {
        const auto source = get<NaiveObjects>(node.getSource());
        for (const Thing* object : source.elements) {
            const Frame named{frame_, std::string(node.getName()), object};
            if (getFor<bool>(object, node.getExpr(), &named) == decisive) {
                return true;
            }
        }
        (void)source.all();
        return false;
    }

    void visitUniversalQuantifier(UniversalQuantifierNode& node) override {
        result_ = !isDecided(node, false);
    }
    void visitExistentialQuantifier(ExistentialQuantifierNode& node) override {
        result_ = isDecided(node, true);
    }

    void visitBinaryExpression(BinaryExpressionNode& node) override {
        if (node.getOp() > BinaryOperator::OR) {
            const NaiveValue left = evaluateIn(*node.getLhs(), frame_);
            result_ = naive::arithmetic(node.getOp(), left, evaluateIn(*node.getRhs(), frame_));
            return;
        }
        const bool left = get<bool>(node.getLhs());
        const bool isOpen = left != (node.getOp() == BinaryOperator::OR);
        result_ = isOpen ? get<bool>(node.getRhs()) : node.getOp() != BinaryOperator::AND;
    }

    void visitUnaryExpression(UnaryExpressionNode& node) override {
        const NaiveValue operand = evaluateIn(*node.getExpr(), frame_);
        result_ = node.getOp() == UnaryOperator::NOT ? NaiveValue(!std::get<bool>(operand))
                                                     : naive::negated(operand);
    }

    void visitRelationalExpression(RelationalExpressionNode& node) override {
        const NaiveValue left = evaluateIn(*node.getLhs(), frame_);
        result_ = naive::holds(node.getOp(), left, evaluateIn(*node.getRhs(), frame_));
    }

    void visitApplicationExpression(ApplicationExpressionNode& node) override {
        const auto* tuple = dynamic_cast<const TupleExpressionNode*>(node.getExpr().get());
        const std::span<const ExpressionPtr> arguments =
            tuple != nullptr ? tuple->getElements() : std::span(&node.getExpr(), 1);
        if (node.getName() == "alternation") {
            const auto left = get<std::string>(arguments[0]);
            result_ = !left.empty() ? left : get<std::string>(arguments[1]);
            return;
        }
        NaiveArguments values = {evaluateIn(*arguments.back(), frame_)};
        const auto* objects = std::get_if<NaiveObjects>(&values[0]);
        if (node.getName() == "all") {
            result_ = instances(std::get<std::string>(values[0]));
        } else if (node.getName() == "attribute" && objects != nullptr) {
            result_ = attributes(arguments[0], *objects);
        } else {
            for (std::size_t i = arguments.size() - 1; i-- > 0;) {
                values.insert(values.begin(), evaluateIn(*arguments[i], frame_));
            }
            result_ = naive::apply(std::string(node.getName()), values);
        }
    }

    NaiveObjects instances(const std::string& kind) const {
        NaiveObjects result;
        for (const Thing& thing : things_) {
            if (thing.kind == kind) {
                result.elements.push_back(&thing);
            }
        }
        return result;
    }

    /// An attribute of each object; its name is evaluated for each.
    NaiveValue attributes(const ExpressionPtr& name, const NaiveObjects& objects) {
        const auto add = [this, &name](const Thing* object, std::vector<std::string>& texts) {
            texts.push_back(naive::attribute(object, get<std::string>(name)));
        };
        return naive::apply("comma", {collect<std::string>(objects, add)});
    }

    void visitMapExpression(MapExpressionNode& node) override {
        const auto add = [&](const Thing* object, std::vector<std::string>& texts) {
            texts.push_back(getFor<std::string>(object, node.getFunction(), frame_));
        };
        result_ = collect<std::string>(get<NaiveObjects>(node.getSource()), add);
    }

    void visitFilterExpression(FilterExpressionNode& node) override {
        const auto add = [&](const Thing* object, std::vector<const Thing*>& objects) {
            if (getFor<bool>(object, node.getPredicate(), frame_)) {
                objects.push_back(object);
            }
        };
        result_ = collect<const Thing*>(get<NaiveObjects>(node.getSource()), add);
    }

    void visitTraverseExpression(TraverseExpressionNode& node) override {
        const auto add = [&](const Thing* object, std::vector<const Thing*>& objects) {
            const auto reached = getFor<NaiveObjects>(object, node.getPath(), frame_);
            objects.insert(objects.end(), reached.elements.begin(), reached.elements.end());
            (void)reached.all();
        };
        result_ = collect<const Thing*>(get<NaiveObjects>(node.getSource()), add);
    }

    void visitSortExpression(SortExpressionNode& node) override {
        using Row = std::pair<std::vector<NaiveValue>, const Thing*>;
        std::vector<Row> rows;
        const auto source = get<NaiveObjects>(node.getSource());
        for (const Thing* object : source.all()) {
            rows.push_back({{}, object});
            for (const SortKey& key : node.getKeys()) {
                rows.back().first.push_back(valueFor(object, key.getExpr(), frame_));
            }
        }
        const auto isBefore = [&node](const Row& left, const Row& right) {
            for (std::size_t i = 0; i < node.getKeys().size(); ++i) {
                const bool isAscending = node.getKeys()[i].isAscending();
                const NaiveValue& lower = (isAscending ? left : right).first[i];
                const NaiveValue& upper = (isAscending ? right : left).first[i];
                if (naive::isKeyBefore(lower, upper) || naive::isKeyBefore(upper, lower)) {
                    return naive::isKeyBefore(lower, upper);
                }
            }
            return false;
        };
        std::stable_sort(rows.begin(), rows.end(), isBefore);
        NaiveObjects sorted;
        for (const Row& row : rows) {
            sorted.elements.push_back(row.second);
        }
        result_ = sorted;
    }

    void visitLetExpression(LetExpressionNode& node) override {
        const Frame binding{frame_, std::string(node.getName()), std::nullopt,
                            node.getSource().get()};
        result_ = evaluateIn(*node.getExpr(), &binding);
    }

    void visitIfExpression(IfExpressionNode& node) override {
        result_ = evaluateIn(get<bool>(node.getTest()) ? *node.getThen() : *node.getElse(), frame_);
    }

    void visitRegExpConstant(RegExpConstantNode& node) override {
        result_ = std::string(node.getText());
    }
    void visitStringConstant(StringConstantNode& node) override {
        result_ = std::string(node.getText());
    }
    void visitIntegerConstant(IntegerConstantNode& node) override { result_ = node.getValue(); }
    void visitRealConstant(RealConstantNode& node) override { result_ = node.getValue(); }
    void visitBooleanConstant(BooleanConstantNode& node) override { result_ = node.getValue(); }

    // The root, tuples and steps are taken apart by what is around them; nothing takes "()".
    void visitSpecification(SpecificationNode& /*node*/) override {}
    void visitTupleExpression(TupleExpressionNode& /*node*/) override {}
    void visitUnitExpression(UnitExpressionNode& /*node*/) override {}
    void visitReferenceAssociation(ReferenceAssociationNode& /*node*/) override {}
    void visitDefinitionAssociation(DefinitionAssociationNode& /*node*/) override {}

    const std::vector<Thing>& things_;
    const Frame* frame_ = nullptr;
    NaiveValue result_;
    int steps_ = 0;
    int depth_ = 0;
};

}  // namespace

NaiveValue evaluateNaively(const std::vector<Thing>& things, SpecificationNode& tree,
                           const Thing& object) {
    const Frame thisFrame{nullptr, "this", &object};
    const Frame currentFrame{&thisFrame, "current", &object};
    return complete(NaiveEvaluator(things).evaluateIn(*tree.getExpr(), &currentFrame));
}
