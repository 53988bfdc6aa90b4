// A binding's state is empty until its first use, and filled by it. A let evaluates its body with
// an empty state in its binding and puts the former one back, so that lets that are entered again,
// by a step's condition that reaches the step, do not see each other's values.
#include "fliodram/MMLetExpr.h"

#include "fliodram/MMObjectSet.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

/// Keeps the texts that it takes.
class TextCollector : public MMTextConsumer {
public:
    explicit TextCollector(MMEvaluationContext& context) : context_(context) {}

    void take(std::string_view text) override {
        context_.countText(0, text.size());
        context_.checkCollectionSize(texts_.size() + 1);
        context_.keep(sizeof(std::string) + text.size());
        texts_.emplace_back(text);
    }

    std::vector<std::string> release() { return std::move(texts_); }

private:
    MMEvaluationContext& context_;
    std::vector<std::string> texts_;
};

std::size_t sizeOf(const std::vector<std::string>& texts) {
    std::size_t size = texts.size() * sizeof(std::string);
    for (const std::string& text : texts) {
        size += text.size();
    }
    return size;
}

bool isEmpty(const MMCachedState& state) { return state.content.index() == 0; }

// The interface knows no printing; every binding is a target, too.
const MMTarget* targetOf(const MMCachedExpr* binding) {
    return dynamic_cast<const MMTarget*>(binding);
}

template <class Body>
void printLet(MMTargetPrinter& printer, const char* className,
              const OrvSimplePtr<MMCachedExpr>& binding, const OrvCyclicOperand<Body>& body) {
    printer.begin(className).operand(targetOf(binding.get())).operand(body.get()).end();
}

}  // namespace

std::size_t MMCachedState::size() const {
    if (const auto* const value = std::get_if<MMValue>(&content)) {
        return value->ownSize();
    }
    if (const auto* const objects = std::get_if<std::vector<MMObject>>(&content)) {
        return objects->size() * sizeof(MMObject);
    }
    const auto* const texts = std::get_if<std::vector<std::string>>(&content);
    return texts != nullptr ? sizeOf(*texts) : 0;
}

MMValueBindingExpr::MMValueBindingExpr() : expr_(*this) {}
MMValueBindingExpr::MMValueBindingExpr(const OrvCyclicPtr<MMValueExpr>& expr)
    : expr_(*this, expr) {}
void MMValueBindingExpr::expr(const OrvCyclicPtr<MMValueExpr>& expr) { expr_ = expr; }

void MMValueBindingExpr::exchangeState(MMCachedState& state) noexcept {
    state_.content.swap(state.content);
}

void MMValueBindingExpr::print(MMTargetPrinter& printer) const { printer.shared(*this, 'b'); }

void MMValueBindingExpr::printCall(MMTargetPrinter& printer) const {
    printer.begin("MMValueBindingExpr").operand(expr_.get()).end();
}

MMValue MMValueBindingExpr::evaluate(MMEvaluationContext& context) const {
    if (isEmpty(state_)) {
        context.checkDepth();
        MMValue value = expr_->evaluate(context);
        if (value.ownSize() != 0) {
            context.keep(value.ownSize());
        }
        state_.content = std::move(value);
    }
    const MMValue& value = std::get<MMValue>(state_.content);
    return value.getKind() == MMValue::Kind::text ? MMValue::borrow(value.getText()) : value;
}

MMObjectBindingExpr::MMObjectBindingExpr() : expr_(*this) {}
void MMObjectBindingExpr::expr(const OrvCyclicPtr<MMObjectExpr>& expr) { expr_ = expr; }

void MMObjectBindingExpr::exchangeState(MMCachedState& state) noexcept {
    state_.content.swap(state.content);
}

void MMObjectBindingExpr::print(MMTargetPrinter& printer) const { printer.shared(*this, 'b'); }

void MMObjectBindingExpr::printCall(MMTargetPrinter& printer) const {
    printer.begin("MMObjectBindingExpr").operand(expr_.get()).end();
}

MMObject MMObjectBindingExpr::evaluate(MMEvaluationContext& context) const {
    if (isEmpty(state_)) {
        context.checkDepth();
        state_.content = expr_->evaluate(context);
    }
    return std::get<MMObject>(state_.content);
}

MMObjectCollectionBindingExpr::MMObjectCollectionBindingExpr() : expr_(*this) {}
void MMObjectCollectionBindingExpr::expr(const OrvCyclicPtr<MMObjectCollectionExpr>& expr) {
    expr_ = expr;
}

void MMObjectCollectionBindingExpr::exchangeState(MMCachedState& state) noexcept {
    state_.content.swap(state.content);
}

void MMObjectCollectionBindingExpr::print(MMTargetPrinter& printer) const {
    printer.shared(*this, 'b');
}

void MMObjectCollectionBindingExpr::printCall(MMTargetPrinter& printer) const {
    printer.begin("MMObjectCollectionBindingExpr").operand(expr_.get()).end();
}

bool MMObjectCollectionBindingExpr::findRange(MMEvaluationContext& context, MMObjectRange& range,
                                              std::vector<MMObject>& /*buffer*/) const {
    if (isEmpty(state_)) {
        context.checkDepth();
        std::vector<MMObject> objects = MMObjectCollector::collect(context, *expr_);
        context.keep(objects.size() * sizeof(MMObject));
        state_.content = std::move(objects);
    }
    range = rangeOf(std::get<std::vector<MMObject>>(state_.content));
    return true;
}

bool MMObjectCollectionBindingExpr::forEach(MMEvaluationContext& context,
                                            MMObjectConsumer& consumer) const {
    std::vector<MMObject> buffer;
    MMObjectRange range;
    findRange(context, range, buffer);
    return consumer.take(range);
}

MMStringCollectionBindingExpr::MMStringCollectionBindingExpr() : expr_(*this) {}
void MMStringCollectionBindingExpr::expr(const OrvCyclicPtr<MMStringCollectionExpr>& expr) {
    expr_ = expr;
}

void MMStringCollectionBindingExpr::exchangeState(MMCachedState& state) noexcept {
    state_.content.swap(state.content);
}

void MMStringCollectionBindingExpr::print(MMTargetPrinter& printer) const {
    printer.shared(*this, 'b');
}

void MMStringCollectionBindingExpr::printCall(MMTargetPrinter& printer) const {
    printer.begin("MMStringCollectionBindingExpr").operand(expr_.get()).end();
}

void MMStringCollectionBindingExpr::forEach(MMEvaluationContext& context,
                                            MMTextConsumer& consumer) const {
    if (isEmpty(state_)) {
        context.checkDepth();
        TextCollector collector(context);
        expr_->forEach(context, collector);
        state_.content = collector.release();
    }
    for (const std::string& text : std::get<std::vector<std::string>>(state_.content)) {
        context.step();
        consumer.take(text);
    }
}

MMLetValueExpr::MMLetValueExpr(OrvSimplePtr<MMCachedExpr> binding,
                               const OrvCyclicPtr<MMValueExpr>& body)
    : binding_(*this, std::move(binding)), body_(*this, body) {}

void MMLetValueExpr::print(MMTargetPrinter& printer) const {
    printLet(printer, "MMLetValueExpr", binding_, body_);
}

// The value may be a text that the binding keeps: it becomes its own before the binding loses it.
MMValue MMLetValueExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    const MMCacheScope scope(*binding_, &context);
    MMValue value = body_->evaluate(context);
    ownText(context, value);
    return value;
}

MMLetObjectExpr::MMLetObjectExpr(OrvSimplePtr<MMCachedExpr> binding,
                                 const OrvCyclicPtr<MMObjectExpr>& body)
    : binding_(*this, std::move(binding)), body_(*this, body) {}

void MMLetObjectExpr::print(MMTargetPrinter& printer) const {
    printLet(printer, "MMLetObjectExpr", binding_, body_);
}

MMObject MMLetObjectExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    const MMCacheScope scope(*binding_, &context);
    return body_->evaluate(context);
}

MMLetObjectCollectionExpr::MMLetObjectCollectionExpr(
    OrvSimplePtr<MMCachedExpr> binding, const OrvCyclicPtr<MMObjectCollectionExpr>& body)
    : binding_(*this, std::move(binding)), body_(*this, body) {}

void MMLetObjectCollectionExpr::print(MMTargetPrinter& printer) const {
    printLet(printer, "MMLetObjectCollectionExpr", binding_, body_);
}

bool MMLetObjectCollectionExpr::forEach(MMEvaluationContext& context,
                                        MMObjectConsumer& consumer) const {
    context.checkDepth();
    const MMCacheScope scope(*binding_, &context);
    return body_->forEach(context, consumer);
}

MMLetStringCollectionExpr::MMLetStringCollectionExpr(
    OrvSimplePtr<MMCachedExpr> binding, const OrvCyclicPtr<MMStringCollectionExpr>& body)
    : binding_(*this, std::move(binding)), body_(*this, body) {}

void MMLetStringCollectionExpr::print(MMTargetPrinter& printer) const {
    printLet(printer, "MMLetStringCollectionExpr", binding_, body_);
}

void MMLetStringCollectionExpr::forEach(MMEvaluationContext& context,
                                        MMTextConsumer& consumer) const {
    context.checkDepth();
    const MMCacheScope scope(*binding_, &context);
    body_->forEach(context, consumer);
}
