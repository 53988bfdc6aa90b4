#include "foundation/OrvCollectable.h"

OrvCollectable::~OrvCollectable() = default;
