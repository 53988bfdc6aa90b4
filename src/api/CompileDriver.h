// The driver that runs the phases of one compilation, and the boundary at which exceptions stop.
#pragma once

#include <string>

#include "api/ExprParserDialogs.h"
#include "api/TypeRequirement.h"
#include "codegen/SourceMap.h"
#include "fliodram/MMObjectVarExpr.h"
#include "foundation/OrvCountedPtr.h"
#include "foundation/OrvMemoryRegion.h"

/// What a compilation yields: a body, and the variable that stands for the object on which it will
/// be evaluated.
struct CompileResult : OrvCountedObject {
    OrvCountedPtr<MMObjectVarExpr> objectVariable;
    OrvCountedPtr<OrvCyclicPtrBody> body;
};

/// Runs one compilation, wholly on the caller's thread; keeps nothing between two of them.
class CompileDriver {
public:
    /// Compiles `text` up to its first NUL. Messages go to `dialogs`. Returns an empty pointer
    /// when the text does not compile, when a dialog throws or when memory is short; throws
    /// nothing. Fills `map` where there is one; leaves it empty with the result. The tree and the
    /// targets are made in `memory`, which is made for this compilation.
    static OrvCountedPtr<CompileResult> compile(OrvCompilationMemory& memory,
                                                ExprParserDialogs& dialogs, const std::string& text,
                                                const TypeRequirement& requirement,
                                                SourceMap* map = nullptr) noexcept;
};
