#include "foundation/OrvSimplePtr.h"

#include "support/OrvAssertion.h"

void throwClaimedTwice() {
    throwLogged(OrvAssertion("!isOwned()", "OrvSimplePtr", 0,
                             "The object already belongs to another owner."));
}
