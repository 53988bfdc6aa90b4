// The graph is walked twice: first to count how often each binding and each traversal is referred
// to, without writing, then to write. Both walks are the targets' own print() operations.
#include "fliodram/MMTargetPrinter.h"

#include "fliodram/MMObjectVarExpr.h"
#include "foundation/TextOutput.h"
#include "foundation/TextStream.h"
#include "support/OrvException.h"
#include "support/OrvStack.h"

void MMTargetPrinter::printGraph(const MMTarget& root) {
    isCounting_ = true;
    root.print(*this);
    isCounting_ = false;
    isFirst_ = true;
    root.print(*this);
}

void MMTargetPrinter::write(std::string_view text) {
    if (!isCounting_) {
        writeText(stream_, text);
    }
}

void MMTargetPrinter::writeNumber(int number) {
    std::string digits;
    appendInteger(digits, number);
    write(digits);
}

void MMTargetPrinter::separate(std::string_view name) {
    write(isFirst_ ? "" : ", ");
    isFirst_ = false;
    if (!name.empty()) {
        write(name);
        write("=");
    }
}

MMTargetPrinter& MMTargetPrinter::begin(std::string_view className) {
    if (!OrvStack::hasRoom()) {
        throwLogged(OrvException("The expression is nested too deeply to be printed."));
    }
    write(className);
    write("(");
    isFirst_ = true;
    return *this;
}

MMTargetPrinter& MMTargetPrinter::nested(std::string_view name) {
    separate({});
    return begin(name);
}

MMTargetPrinter& MMTargetPrinter::end() {
    write(")");
    isFirst_ = false;
    return *this;
}

MMTargetPrinter& MMTargetPrinter::operand(const MMTarget* target, std::string_view name) {
    separate(name);
    if (target != nullptr) {
        target->print(*this);
        isFirst_ = false;
    } else {
        write("null");
    }
    return *this;
}

MMTargetPrinter& MMTargetPrinter::number(int value, std::string_view name) {
    separate(name);
    writeNumber(value);
    return *this;
}

MMTargetPrinter& MMTargetPrinter::flag(bool value, std::string_view name) {
    separate(name);
    write(value ? "true" : "false");
    return *this;
}

MMTargetPrinter& MMTargetPrinter::text(std::string_view value) {
    separate({});
    std::string quoted;
    appendJsonString(quoted, value);
    write(quoted);
    return *this;
}

MMTargetPrinter& MMTargetPrinter::value(const MMValue& value) {
    if (value.getKind() == MMValue::Kind::text) {
        return text(value.getText());
    }
    separate({});
    std::string buffer;
    write(value.asText(buffer));
    return *this;
}

void MMTargetPrinter::variable(const MMObjectVarExpr& variable) {
    const int next = static_cast<int>(variables_.size()) + 1;
    write("v");
    writeNumber(variables_.emplace(&variable, next).first->second);
}

bool MMTargetPrinter::beginShared(const MMTarget& target, char prefix) {
    Share& share = shares_[&target];
    if (isCounting_) {
        return ++share.uses == 1;
    }
    if (share.uses == 1) {
        return true;
    }
    const bool isNew = share.number == 0;
    if (isNew) {
        share.number = ++(prefix == 'b' ? bindings_ : traversals_);
    }
    write(std::string_view(&prefix, 1));
    writeNumber(share.number);
    write(isNew ? "=" : "");
    return isNew;
}

std::string printedTarget(const MMTarget& root) {
    TextStream stream;
    MMTargetPrinter printer(stream);
    printer.printGraph(root);
    return stream.str();
}
