// The printed form of target graphs: the constructor calls that build them.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <unordered_map>

#include "fliodram/MMExpr.h"

class MMObjectVarExpr;

/// Writes a graph as nested constructor calls on one line, without a line end.
///
/// `MMValueAbsExpr(v1, MMAttrExpr(MMConstantExpr("name"), v1))`: arguments stand in the order of
/// the constructor; what only a setter gives follows as `name=value`. Enumerations are numbers, a
/// missing operand is null, texts are JSON strings. Variables are v1, v2 ... in the order of their
/// first appearance. A binding or a traversal that is referred to again is named where it first
/// appears, `b1=...` or `t1=...`, and stands as that name afterwards, which also ends cycles.
///
/// Targets call the operations below from their print(); made on the stack for one graph. Printing
/// what is nested too deeply for the thread's stack throws OrvException.
class __attribute__((visibility("default"))) MMTargetPrinter {
public:
    explicit MMTargetPrinter(std::ostream& stream) : stream_(stream) {}
    MMTargetPrinter(const MMTargetPrinter&) = delete;
    MMTargetPrinter& operator=(const MMTargetPrinter&) = delete;

    /// Writes the whole graph of `root`.
    void printGraph(const MMTarget& root);

    /// Begin and end a call; the calls below write its arguments.
    MMTargetPrinter& begin(std::string_view className);
    MMTargetPrinter& end();

    /// Begins a call that is itself an argument.
    MMTargetPrinter& nested(std::string_view name);

    /// Write an argument, preceded by a comma where it is not the first, and by its name where it
    /// was given by a setter.
    MMTargetPrinter& operand(const MMTarget* target, std::string_view name = {});
    MMTargetPrinter& number(int value, std::string_view name = {});
    MMTargetPrinter& flag(bool value, std::string_view name = {});
    MMTargetPrinter& text(std::string_view value);
    MMTargetPrinter& value(const MMValue& value);

    /// Writes a variable as its name.
    void variable(const MMObjectVarExpr& variable);

    /// Writes `target`, by calling its printCall(), where it first appears, and its name where it
    /// appears again. `prefix` is "b" or "t".
    template <class Target>
    void shared(const Target& target, char prefix) {
        if (beginShared(target, prefix)) {
            target.printCall(*this);
        }
    }

private:
    struct Share {
        int uses = 0;
        int number = 0;
    };

    bool beginShared(const MMTarget& target, char prefix);
    void separate(std::string_view name);
    void write(std::string_view text);
    void writeNumber(int number);

    std::ostream& stream_;
    bool isCounting_ = false;
    bool isFirst_ = true;
    std::unordered_map<const MMTarget*, Share> shares_;
    std::unordered_map<const MMTarget*, int> variables_;
    int bindings_ = 0;
    int traversals_ = 0;
};

/// The printed form of a graph as a text.
__attribute__((visibility("default"))) std::string printedTarget(const MMTarget& root);
