#include "fliodram/MMIfExpr.h"

#include "fliodram/MMTargetPrinter.h"

template <class Branch>
void MMIfBranches<Branch>::print(MMTargetPrinter& printer, const char* className) const {
    printer.begin(className).operand(test_.get()).operand(then_.get()).operand(else_.get()).end();
}

MMIfValueExpr::MMIfValueExpr() : MMValueExpr(std::nullopt, Ownership::nothing), branches_(*this) {}

MMIfValueExpr::MMIfValueExpr(const OrvCyclicPtr<MMValueExpr>& test,
                             const OrvCyclicPtr<MMValueExpr>& thenBranch,
                             const OrvCyclicPtr<MMValueExpr>& elseBranch)
    : MMIfValueExpr() {
    branches_.setTest(test);
    branches_.setThen(thenBranch);
    branches_.setElse(elseBranch);
}

void MMIfValueExpr::testExpr(const OrvCyclicPtr<MMValueExpr>& test) { branches_.setTest(test); }
void MMIfValueExpr::thenExpr(const OrvCyclicPtr<MMValueExpr>& branch) { branches_.setThen(branch); }
void MMIfValueExpr::elseExpr(const OrvCyclicPtr<MMValueExpr>& branch) { branches_.setElse(branch); }
void MMIfValueExpr::print(MMTargetPrinter& printer) const {
    branches_.print(printer, "MMIfValueExpr");
}

MMValue MMIfValueExpr::evaluate(MMEvaluationContext& context) const {
    return branches_.chosen(context).evaluate(context);
}

bool MMIfValueExpr::evaluateBoolean(MMEvaluationContext& context) const {
    return branches_.chosen(context).evaluateBoolean(context);
}

std::string_view MMIfValueExpr::evaluateText(MMEvaluationContext& context,
                                             std::string& buffer) const {
    return branches_.chosen(context).evaluateText(context, buffer);
}

void MMIfValueExpr::appendText(MMEvaluationContext& context, std::string& text) const {
    branches_.chosen(context).appendText(context, text);
}

MMIfObjectExpr::MMIfObjectExpr() : MMObjectExpr(Ownership::nothing), branches_(*this) {}

void MMIfObjectExpr::testExpr(const OrvCyclicPtr<MMValueExpr>& test) { branches_.setTest(test); }
void MMIfObjectExpr::thenExpr(const OrvCyclicPtr<MMObjectExpr>& branch) {
    branches_.setThen(branch);
}
void MMIfObjectExpr::elseExpr(const OrvCyclicPtr<MMObjectExpr>& branch) {
    branches_.setElse(branch);
}
void MMIfObjectExpr::print(MMTargetPrinter& printer) const {
    branches_.print(printer, "MMIfObjectExpr");
}

MMObject MMIfObjectExpr::evaluate(MMEvaluationContext& context) const {
    return branches_.chosen(context).evaluate(context);
}

MMIfObjectCollectionExpr::MMIfObjectCollectionExpr()
    : MMObjectCollectionExpr(Ownership::nothing), branches_(*this) {}

void MMIfObjectCollectionExpr::testExpr(const OrvCyclicPtr<MMValueExpr>& test) {
    branches_.setTest(test);
}
void MMIfObjectCollectionExpr::thenExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& branch) {
    branches_.setThen(branch);
}
void MMIfObjectCollectionExpr::elseExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& branch) {
    branches_.setElse(branch);
}
void MMIfObjectCollectionExpr::print(MMTargetPrinter& printer) const {
    branches_.print(printer, "MMIfObjectCollectionExpr");
}

bool MMIfObjectCollectionExpr::forEach(MMEvaluationContext& context,
                                       MMObjectConsumer& consumer) const {
    return branches_.chosen(context).forEach(context, consumer);
}

MMIfStringCollectionExpr::MMIfStringCollectionExpr()
    : MMStringCollectionExpr(Ownership::nothing), branches_(*this) {}

void MMIfStringCollectionExpr::testExpr(const OrvCyclicPtr<MMValueExpr>& test) {
    branches_.setTest(test);
}
void MMIfStringCollectionExpr::thenExpr(const OrvCyclicPtr<MMStringCollectionExpr>& branch) {
    branches_.setThen(branch);
}
void MMIfStringCollectionExpr::elseExpr(const OrvCyclicPtr<MMStringCollectionExpr>& branch) {
    branches_.setElse(branch);
}
void MMIfStringCollectionExpr::print(MMTargetPrinter& printer) const {
    branches_.print(printer, "MMIfStringCollectionExpr");
}

void MMIfStringCollectionExpr::forEach(MMEvaluationContext& context,
                                       MMTextConsumer& consumer) const {
    branches_.chosen(context).forEach(context, consumer);
}
