// Symbols: the meaning of declared names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string_view>
#include <utility>

#include "foundation/OrvCountedPtr.h"
#include "foundation/OrvRegionText.h"
#include "types/TypeExpression.h"

class DefinitionAssociationNode;
class FunctionCodeGenerator;
class SymbolVisitor;
class VariableCodeGenerator;

enum class SymbolKind : std::uint32_t { function = 0, variable = 1, label = 2 };

/// What a name means: a function, a variable or a label.
///
/// Shared through counted pointers by the scopes that declare it and the nodes that use it. The
/// symbols of built-in functions are pinned and never change; all others belong to one compilation.
class Symbol : public OrvCountedObject {
public:
    Symbol(const Symbol&) = delete;
    Symbol& operator=(const Symbol&) = delete;
    ~Symbol() override;

    virtual void accept(SymbolVisitor& visitor) = 0;

    SymbolKind getKind() const { return kind_; }
    std::string_view getName() const { return name_.view(); }
    const TypePtr& getType() const { return type_; }
    /// Replaces the type: a let variable has that of its defining expression, once it is known.
    void setType(const TypePtr& type) { type_ = type; }

protected:
    Symbol(SymbolKind kind, OrvRegionText name, const TypePtr& type)
        : kind_(kind), name_(std::move(name)), type_(type) {}

private:
    SymbolKind kind_;
    OrvRegionText name_;
    TypePtr type_;
};

using SymbolPtr = OrvCountedPtr<Symbol>;

/// One overload of a built-in function or operator. Its type is a TEFunction, its generator builds
/// the target of a call.
class FunctionSymbol : public Symbol {
public:
    FunctionSymbol(OrvRegionText name, const TypePtr& type,
                   const OrvCountedPtr<FunctionCodeGenerator>& generator)
        : Symbol(SymbolKind::function, std::move(name), type),
          generator_(generator),
          parameters_(parametersOf(*type)) {}
    void accept(SymbolVisitor& visitor) override;

    /// The types of the parameters: the components of a product, else the domain.
    const TypeStructures& getParameters() const { return parameters_; }
    const OrvCountedPtr<FunctionCodeGenerator>& getGenerator() const { return generator_; }
    /// The number of arguments: none for the domain unit, the components of a product, else one.
    std::size_t getArity() const;

    static bool classof(const Symbol& symbol) { return symbol.getKind() == SymbolKind::function; }

private:
    static TypeStructures parametersOf(const TypeExpression& type);

    OrvCountedPtr<FunctionCodeGenerator> generator_;
    TypeStructures parameters_;
};

/// A variable: of an iteration, of a let, or one of the pervasive ones.
class VariableSymbol : public Symbol {
public:
    VariableSymbol(OrvRegionText name, const TypePtr& type,
                   const OrvCountedPtr<VariableCodeGenerator>& generator)
        : Symbol(SymbolKind::variable, std::move(name), type), generator_(generator) {}
    void accept(SymbolVisitor& visitor) override;

    const OrvCountedPtr<VariableCodeGenerator>& getGenerator() const { return generator_; }

    static bool classof(const Symbol& symbol) { return symbol.getKind() == SymbolKind::variable; }

private:
    OrvCountedPtr<VariableCodeGenerator> generator_;
};

/// The label of a step of a path. It stands for the objects that the step reaches, so its type is
/// always the collection of objects. Borrows the step, which the syntax tree keeps.
class LabelSymbol : public Symbol {
public:
    LabelSymbol(OrvRegionText name, DefinitionAssociationNode& declaration)
        : Symbol(SymbolKind::label, std::move(name), TypeExpression::objectCollectionType()),
          declaration_(declaration) {}
    void accept(SymbolVisitor& visitor) override;

    DefinitionAssociationNode& getDeclaration() const { return declaration_; }

    static bool classof(const Symbol& symbol) { return symbol.getKind() == SymbolKind::label; }

private:
    DefinitionAssociationNode& declaration_;
};

/// One operation for each class of symbol.
class SymbolVisitor {
public:
    SymbolVisitor() = default;
    SymbolVisitor(const SymbolVisitor&) = delete;
    SymbolVisitor& operator=(const SymbolVisitor&) = delete;
    virtual ~SymbolVisitor();

    virtual void visitFunctionSymbol(FunctionSymbol& symbol) = 0;
    virtual void visitVariableSymbol(VariableSymbol& symbol) = 0;
    virtual void visitLabelSymbol(LabelSymbol& symbol) = 0;
};

/// Selects symbols by their kinds, for a look-up: those listed with mode 0, all others with any
/// other mode.
class SymbolFilter {
public:
    explicit SymbolFilter(std::uint32_t mode) : mode_(mode) {}

    void addKind(SymbolKind kind) { kinds_.insert(kind); }
    bool accepts(const SymbolPtr& symbol) const {
        return (kinds_.count(symbol->getKind()) > 0) == (mode_ == 0);
    }

private:
    std::uint32_t mode_;
    std::set<SymbolKind> kinds_;
};
