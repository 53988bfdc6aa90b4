#include "foundation/OrvObject.h"

OrvObject::~OrvObject() = default;
