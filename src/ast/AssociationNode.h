// The steps of association paths.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "ast/ASTNode.h"
#include "foundation/OrvRegionText.h"

class LabelSymbol;

enum class AssociationKind : std::uint32_t { reference = 0, definition = 1 };

/// A step of a path. Steps form a tree of first children and next siblings below a PathNode: the
/// child is the step that follows, the siblings are the alternatives. A step that follows a group
/// is the child of the last step of each alternative, one node with several parents.
class AssociationNode : public ASTNode {
public:
    AssociationKind getAssociationKind() const {
        return static_cast<AssociationKind>(associationKind_);
    }
    const OrvCountedPtr<AssociationNode>& getChild() const { return child_; }
    void setChild(OrvCountedPtr<AssociationNode> child) { child_ = std::move(child); }
    const OrvCountedPtr<AssociationNode>& getSibling() const { return sibling_; }
    void setSibling(OrvCountedPtr<AssociationNode> sibling) { sibling_ = std::move(sibling); }

    /// The symbol of the label that the step uses or declares; set by the type checker.
    const OrvCountedPtr<LabelSymbol>& getLabelSymbol() const { return labelSymbol_; }
    void setLabelSymbol(const OrvCountedPtr<LabelSymbol>& symbol) { labelSymbol_ = symbol; }

protected:
    explicit AssociationNode(AssociationKind associationKind)
        : ASTNode(NodeKind::association),
          associationKind_(static_cast<std::uint8_t>(associationKind)) {}

private:
    std::uint8_t associationKind_;
    OrvCountedPtr<AssociationNode> child_;
    OrvCountedPtr<AssociationNode> sibling_;
    OrvCountedPtr<LabelSymbol> labelSymbol_;
};

/// A use of a label: "@name". It stands for the step that declares the label, with all that
/// follows there.
class ReferenceAssociationNode final : public AssociationNode {
public:
    explicit ReferenceAssociationNode(OrvRegionText name)
        : AssociationNode(AssociationKind::reference), name_(std::move(name)) {}
    void accept(ASTVisitor& visitor) override;

    std::string_view getName() const { return name_.view(); }

private:
    OrvRegionText name_;
};

/// A step along an association: "label: ^ _ [name] { condition }".
class DefinitionAssociationNode final : public AssociationNode {
public:
    explicit DefinitionAssociationNode(OrvRegionText name)
        : AssociationNode(AssociationKind::definition), name_(std::move(name)) {}
    void accept(ASTVisitor& visitor) override;

    std::string_view getName() const { return name_.view(); }
    /// Where the name stands, with its brackets; the node itself begins at its label.
    const SourceSpan& getNameSpan() const { return nameSpan_; }
    void setNameSpan(const SourceSpan& span) { nameSpan_ = span; }

    const OrvCountedPtr<ExpressionNode>& getCondition() const { return condition_; }
    void setCondition(OrvCountedPtr<ExpressionNode> condition) {
        condition_ = std::move(condition);
    }

    /// The label that the step declares; empty where it declares none.
    std::string_view getLabel() const { return label_.view(); }
    void setLabel(OrvRegionText label) { label_ = std::move(label); }

    /// Whether the objects reached belong to the result although a step follows.
    bool getAddToResult() const { return addToResult_; }
    void setAddToResult(bool addToResult) { addToResult_ = addToResult; }

    bool getDepthFirstEvaluation() const { return depthFirstEvaluation_; }
    void setDepthFirstEvaluation(bool depthFirst) { depthFirstEvaluation_ = depthFirst; }

private:
    OrvRegionText name_;
    SourceSpan nameSpan_;
    OrvCountedPtr<ExpressionNode> condition_;
    OrvRegionText label_;
    bool addToResult_ = false;
    bool depthFirstEvaluation_ = false;
};
