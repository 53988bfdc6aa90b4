// The entry points of the library: from the text of an expression to an object that a host
// evaluates.
#pragma once

#include <string>

#include "api/ExprParserDialogs.h"
#include "fliodram/MMAbsExpr.h"
#include "foundation/OrvCountedPtr.h"

class SourceMap;

/// Compiles expressions of the model query language.
///
/// Each operation takes the object that shows messages and the text, which ends at its first NUL,
/// and runs wholly on the caller's thread. It returns a function of one object, owned by the
/// caller, or an empty pointer when the text does not compile; the messages then say why. No
/// exception of a compilation leaves it; std::bad_alloc leaves it only where the short-cut or the
/// returned abstraction itself cannot be allocated.
///
/// Any number of threads may compile at once. What is returned belongs to one thread at a time.
class __attribute__((visibility("default"))) ExprParser {
public:
    /// A condition: an expression of type boolean.
    static OrvCountedPtr<MMValueAbsExpr> parseCondition(ExprParserDialogs& dialogs,
                                                        const std::string& text);

    /// An associated attribute: an expression of type string, integer, real or boolean. A text
    /// that is only "$" and a name compiles at once, without any message.
    static OrvCountedPtr<MMValueAbsExpr> parseAssociatedAttribute(ExprParserDialogs& dialogs,
                                                                  const std::string& text);

    /// A complex association: an expression whose type is a collection of objects.
    static OrvCountedPtr<MMObjectCollectionAbsExpr> parseComplexAssociation(
        ExprParserDialogs& dialogs, const std::string& text);

    /// The same three, for a caller who keeps the places: they fill `map` with where in the text
    /// each target came from (codegen/SourceMap.h); it is empty where the text does not compile,
    /// and for a bare attribute whose name is a keyword.
    static OrvCountedPtr<MMValueAbsExpr> parseMappedCondition(ExprParserDialogs& dialogs,
                                                              const std::string& text,
                                                              SourceMap& map);
    static OrvCountedPtr<MMValueAbsExpr> parseMappedAssociatedAttribute(ExprParserDialogs& dialogs,
                                                                        const std::string& text,
                                                                        SourceMap& map);
    static OrvCountedPtr<MMObjectCollectionAbsExpr> parseMappedComplexAssociation(
        ExprParserDialogs& dialogs, const std::string& text, SourceMap& map);
};
