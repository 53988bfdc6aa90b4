#include "foundation/OrvObject.h"

void OrvObject::anchor() const {}
