#include "why/DeadEnds.h"

#include "ast/AssociationNode.h"
#include "fliodram/MMEvaluationError.h"
#include "why/Explainer.h"

namespace mmq {

namespace {

bool isObvious(const AssociationNode& first) {
    return first.getAssociationKind() == AssociationKind::reference ||
           (!first.getChild() && !first.getSibling() &&
            !static_cast<const DefinitionAssociationNode&>(first).getCondition());
}

}  // namespace

void DeadEnds::explain(const PathNode& node) {
    const auto* const objects = std::get_if<std::vector<MMObject>>(&explanation_.line().value);
    if (objects == nullptr || !objects->empty() || isObvious(*node.getAssociation())) {
        return;
    }
    const auto* const path = explanation_.parts.targetOf<MMAssociationExpr>(node);
    const PathTrace trace(explanation_.parts.begin(), *path);
    trace_ = &trace;
    if (trace.getStart() != mmNoObject) {
        explainStep(node.getAssociation().get(), {trace.getStart()});
    }
}

// What stands behind a reference was told where its label is declared.
void DeadEnds::explainStep(const AssociationNode* step, const std::vector<MMObject>& origins) {
    for (; step != nullptr && explanation_.hasRoom(); step = step->getSibling().get()) {
        if (step->getAssociationKind() == AssociationKind::reference ||
            !told_.insert(step).second) {
            continue;
        }
        const auto& definition = static_cast<const DefinitionAssociationNode&>(*step);
        const auto* const target = explanation_.parts.targetOf<MMAssociationTraversal>(*step);
        const std::vector<MMObject> reached = trace_->reachedBy(*target);
        EvidenceLine line(definition.getNameSpan(), reached);
        line.kind = EvidenceLine::Kind::step;
        explanation_.add(std::move(line));
        if (reached.empty()) {
            explainCondition(definition, origins);
        } else {
            explainStep(step->getChild().get(), reached);
        }
    }
}

void DeadEnds::explainCondition(const DefinitionAssociationNode& step,
                                const std::vector<MMObject>& origins) {
    PartEvaluator& parts = explanation_.parts;
    const auto* const target = parts.targetOf<MMAssociationTraversal>(step);
    for (const MMObject origin : origins) {
        std::vector<MMObject> buffer;
        const MMObjectRange refused = target->targets(parts.begin(), origin, buffer);
        if (step.getCondition() && refused.size() > 0) {
            const MMObject object = *refused.begin();
            if (explanation_.addSubject(*step.getCondition(), object)) {
                const MMVariableBinding binding(*parts.variableOf(step), object);
                Explainer(explanation_).explain(*step.getCondition());
            }
            return;
        }
    }
}

}  // namespace mmq
