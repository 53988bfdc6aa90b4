// Name spaces, and the built-in functions and operators as they are documented, for tests.
#pragma once

#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "namespace/CreateNameSpaceVisitor.h"
#include "namespace/TopLevelEnvironment.h"
#include "parser/ParseOutcome.h"
#include "support/TextBlock.h"

using TreePtr = OrvCountedPtr<SpecificationNode>;

inline OrvCountedPtr<NameSpace> nameSpaceOf(const TreePtr& tree) {
    CreateNameSpaceVisitor visitor(TopLevelEnvironment::instance()->getScope());
    tree->accept(visitor);
    return visitor.getNameSpace();
}

/// One overload, with its types as they are printed.
struct BuiltIn {
    std::string name, domain, range, generator;
    std::string type() const { return "( " + domain + " -> " + range + " )"; }
};

inline std::vector<std::string> split(std::string_view text, std::string_view separator) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; (at = text.find(separator)) != std::string_view::npos;) {
        parts.emplace_back(text.substr(0, at));
        text.remove_prefix(at + separator.size());
    }
    parts.emplace_back(text);
    return parts;
}

/// Tables write "objects" and "strings" for the two collection types.
inline std::string spelledTypes(const std::string& text) {
    return replaced(replaced(text, "objects", "( object ) collection"), "strings",
                    "( string ) collection");
}

/// All 71 overloads; those of a name in the order of their declaration. A row of the table has the
/// names, the domain of each overload, the range, and the generator that serves all of them.
inline const std::vector<BuiltIn>& catalogue() {
    static const std::vector<BuiltIn> all = [] {
        std::vector<BuiltIn> builtIns;
        for (const std::string& row : textsOf(R"table(
all : string : objects : All ;; size : objects : integer : Size ;; class : object : string : Class
attribute : string * object : string : Attribute ;; comma : strings : string : Comma
attribute : string * objects : string : AttributeCollection ;; opSig : object : string : OpSig
delim : string * strings : string : Delim ;; concat : strings : string : Concat
alternation : string * string : string : Alternation ;; match : regexp * string : boolean : Match
find : regexp * string : string : Find ;; replace : regexp * string * string : string : Replace
replace_all : regexp * string * string : string : ReplaceAll ;; tolower : string : string : ToLower
toupper : string : string : ToUpper ;; trim : string : string : Trim
unique : objects : objects : Unique ;; unique_stable : objects : objects : UniqueStable
reverse : objects : objects : Reverse
string : string, real, integer, boolean : string : StringConversion
real : real, string, integer, boolean : real : RealConversion
integer : integer, string, real, boolean : integer : IntegerConversion
boolean : boolean, string, real, integer : boolean : BooleanConversion
object first only : objects : object : ObjectConversion
= <> < <= > >= : string * string : boolean : ArithmeticRelational
~= ~<> : string * string : boolean : RegExpRelational
= <> < <= > >= : integer * integer, real * real : boolean : ArithmeticRelational
= <> : boolean * boolean : boolean : ArithmeticRelational
= <> : object * object : boolean : ObjectRelational
= <> < <= > >= : objects * objects : boolean : SetRelational
escape : string : string : Escape ;; uid : object : string : Uid
)table")) {
            const std::vector<std::string> columns = split(spelledTypes(row), " : ");
            for (const std::string& name : split(columns[0], " ")) {
                const bool isOperator = std::isalpha(name[0]) == 0;
                for (const std::string& domain : split(columns[1], ", ")) {
                    const bool isProduct = domain.find('*') != std::string::npos;
                    builtIns.push_back({(isOperator ? "operator" : "") + name,
                                        isProduct ? "( " + domain + " )" : domain, columns[2],
                                        columns[3] + (isOperator ? "Op" : "Fun") + "Generator"});
                }
            }
        }
        return builtIns;
    }();
    return all;
}
