#include "rw/RWCollectable.h"

RWCollectable::~RWCollectable() = default;
