#include "codegen/SourceMap.h"

#include "ast/ASTNode.h"

SourceMap::SourceMap() = default;
SourceMap::~SourceMap() = default;

const SourceSpan* SourceMap::find(const OrvCyclicPtrBody& target) const {
    const auto found = byTarget_.find(&target);
    return found != byTarget_.end() ? &parts_[found->second].span : nullptr;
}

OrvCyclicPtrBody* SourceMap::targetOf(const ASTNode& node) const {
    const auto found = byNode_.find(&node);
    return found != byNode_.end() ? found->second : nullptr;
}

OrvCyclicPtrBody* SourceMap::variableOfBinder(const void* binder) const {
    const auto found = variables_.find(binder);
    return found != variables_.end() ? found->second : nullptr;
}

void SourceMap::add(const ASTNode& node, const SourceSpan& span, OrvCyclicPtrBody& target) {
    if (byNode_.emplace(&node, &target).second) {
        byTarget_.emplace(&target, parts_.size());
        parts_.push_back({&target, span});
    }
}

void SourceMap::setRoot(const OrvCountedPtr<SpecificationNode>& root) { root_ = root; }

void SourceMap::clear() noexcept {
    parts_.clear();
    byTarget_.clear();
    byNode_.clear();
    variables_.clear();
    root_ = {};
}
