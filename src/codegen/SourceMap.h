// Which part of an expression's text became which target.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "ast/SourceSpan.h"
#include "foundation/OrvCountedPtr.h"

class ASTNode;
class OrvCyclicPtrBody;
class SortKey;
class SpecificationNode;

/// Remembers, for one compilation, the pieces of the text that its targets were made from.
///
/// A caller makes one, hands it to an entry point of ExprParser, and asks it afterwards: where the
/// name stands that a step or a constant carries, or where the operation stands that failed (see
/// MMEvaluationError::getTarget()). A compilation that is given none does nothing for it.
///
/// Targets are known by their addresses, which hold as long as the compiled expression does; the
/// map itself holds no target, and may go before the expression or after it. Every sub-expression
/// and every step has a target in it; of what a built-in function is made of inside, only the
/// target of the whole call. A compilation that fails leaves the map empty. Belongs to one thread.
class __attribute__((visibility("default"))) SourceMap {
public:
    /// A target and the piece of text that it stands for.
    struct Part {
        const OrvCyclicPtrBody* target;
        SourceSpan span;
    };

    SourceMap();
    SourceMap(const SourceMap&) = delete;
    SourceMap& operator=(const SourceMap&) = delete;
    ~SourceMap();

    /// Where the target stands in the text; null for a target that the map does not know. Of a
    /// constant, the constant or the name behind "$"; of a step, its name in brackets; of a
    /// variable, which is one target for all its uses, the first use.
    const SourceSpan* find(const OrvCyclicPtrBody& target) const;

    /// All parts, operands before what they are operands of; uses of a variable one by one.
    const std::vector<Part>& getParts() const { return parts_; }

    /// For passes over the syntax tree, which the map keeps: the tree; the target that was made
    /// of a node, or null; the target of the variable that the whole expression binds, a
    /// quantifier, an iteration, a step with a condition, a key of a sort, or a let.
    const OrvCountedPtr<SpecificationNode>& getRoot() const { return root_; }
    OrvCyclicPtrBody* targetOf(const ASTNode& node) const;
    OrvCyclicPtrBody* variableOf(const ASTNode& node) const { return variableOfBinder(&node); }
    OrvCyclicPtrBody* variableOf(const SortKey& key) const { return variableOfBinder(&key); }

    /// For the compilation, which fills the map: what is added first of a node stays.
    void add(const ASTNode& node, const SourceSpan& span, OrvCyclicPtrBody& target);
    void addVariable(const ASTNode& node, OrvCyclicPtrBody& variable) {
        variables_.emplace(&node, &variable);
    }
    void addVariable(const SortKey& key, OrvCyclicPtrBody& variable) {
        variables_.emplace(&key, &variable);
    }
    void setRoot(const OrvCountedPtr<SpecificationNode>& root);
    void clear() noexcept;

private:
    OrvCyclicPtrBody* variableOfBinder(const void* binder) const;

    std::vector<Part> parts_;
    std::unordered_map<const OrvCyclicPtrBody*, std::size_t> byTarget_;  // the first part of each
    std::unordered_map<const ASTNode*, OrvCyclicPtrBody*> byNode_;
    std::unordered_map<const void*, OrvCyclicPtrBody*> variables_;
    OrvCountedPtr<SpecificationNode> root_;
};
