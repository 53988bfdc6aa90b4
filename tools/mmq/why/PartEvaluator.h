// The evaluation of the parts of an expression, each by itself.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "codegen/SourceMap.h"
#include "fliodram/MMLetExpr.h"
#include "fliodram/MMObjectVarExpr.h"

namespace mmq {

/// Why a part could not be evaluated.
struct PartFailure {
    std::string sentence;
};

/// What a part came to: a value, an object or none, objects, texts, or a failure.
using PartValue =
    std::variant<MMValue, MMObject, std::vector<MMObject>, std::vector<std::string>, PartFailure>;

inline bool isFailure(const PartValue& value) { return std::holds_alternative<PartFailure>(value); }
/// Whether it is the boolean `expected`.
bool isBoolean(const PartValue& value, bool expected);

/// The objects of a collection: all of them, or those up to the one that was looked for, or those
/// before something that fails.
struct PartElements {
    std::vector<MMObject> objects;
    bool hasFound = false;
    bool hasFailed = false;

    bool isComplete() const { return !hasFound && !hasFailed; }
};

/// Evaluates parts of one expression through the targets that were made of them, with variables as
/// whoever asks has bound them.
///
/// The limits of the context count for each part anew, but for the time, which is for all parts
/// together. Borrows the map and the context, whose limits are what they were when this goes.
class PartEvaluator {
public:
    PartEvaluator(const SourceMap& map, MMEvaluationContext& context);
    PartEvaluator(const PartEvaluator&) = delete;
    PartEvaluator& operator=(const PartEvaluator&) = delete;
    ~PartEvaluator();

    /// The value of the part that a node of the syntax tree stands for. Throws MMEvaluationError
    /// when a limit is reached; other failures are values.
    PartValue evaluate(const ASTNode& node);

    /// The elements of the part, which is a collection of objects, up to the first one that
    /// `isWanted`: what would fail behind it does not matter.
    PartElements elementsOf(const ASTNode& node, const std::function<bool(MMObject)>& isWanted);

    /// The context, ready for an evaluation under the limits.
    MMEvaluationContext& begin();

    /// The target of a node.
    template <class Target>
    const Target* targetOf(const ASTNode& node) const {
        return dynamic_cast<const Target*>(map_.targetOf(node));
    }
    /// The object variable that a node binds, and what caches the value of a let; null where there
    /// is none.
    template <class Binder>
    const MMObjectVarExpr* variableOf(const Binder& binder) const {
        return dynamic_cast<const MMObjectVarExpr*>(map_.variableOf(binder));
    }
    MMCachedExpr* cacheOf(const ASTNode& let) const;

private:
    using Clock = std::chrono::steady_clock;

    const SourceMap& map_;
    MMEvaluationContext& context_;
    MMEvaluationLimits limits_;
    Clock::time_point deadline_;
};

}  // namespace mmq
