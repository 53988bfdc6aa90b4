#include "assist/NodeSearch.h"

#include "ast/ExpressionNode.h"
#include "names/NameCheck.h"

namespace mmq {

namespace {

/// Keeps the use of the name at one byte of the text.
class UseAt : public NameReceiver {
public:
    explicit UseAt(std::size_t offset) : offset_(offset) {}

    void takeAttribute(const StringConstantNode& name, const ClassSet& classes) override {
        if (name.getSpan().offset == offset_) {
            use_ = {std::string(name.getText()), ReadAs::attribute, classes};
        }
    }
    void takeAssociation(const DefinitionAssociationNode& step, const ClassSet& classes) override {
        if (step.getNameSpan().offset == offset_) {
            use_ = {std::string(step.getName()), ReadAs::association, classes};
        }
    }
    void takeReference(const AssociationNode& /*reference*/,
                       const DefinitionAssociationNode& /*step*/,
                       const ClassSet& /*classes*/) override {}
    void takeClass(const StringConstantNode& /*name*/, Letters /*letters*/) override {}

    const std::optional<NameUse>& use() const { return use_; }

private:
    std::size_t offset_;
    std::optional<NameUse> use_;
};

}  // namespace

// Of parts of the same size, the one that was entered last is the inner one.
ASTNode* findInnermost(const NameSpace& nameSpace, std::size_t offset, NodeTest test) {
    ASTNode* innermost = nullptr;
    std::size_t smallest = static_cast<std::size_t>(-1);
    for (const NameSpace::Entry& entry : nameSpace.entries()) {
        const SourceSpan& span = entry.node->getSpan();
        const std::size_t size = span.endOffset - span.offset;
        const bool isMeant = test == nullptr || test(*entry.node);
        if (isMeant && span.offset <= offset && offset < span.endOffset && size <= smallest) {
            innermost = entry.node;
            smallest = size;
        }
    }
    return innermost;
}

std::optional<NameUse> findNameUse(SpecificationNode& root, std::size_t offset,
                                   const NameVocabulary& vocabulary,
                                   const ClassSet& classesOfThis) {
    UseAt uses(offset);
    receiveNames(root, vocabulary, classesOfThis, uses);
    return uses.use();
}

}  // namespace mmq
