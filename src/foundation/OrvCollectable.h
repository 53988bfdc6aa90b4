// The base of objects that are kept in collections of the outside string library.
#pragma once

#include "rw/RWCollectable.h"

/// An object that may stand in the string library's collections.
class __attribute__((visibility("default"))) OrvCollectable : public RWCollectable {
public:
    OrvCollectable() = default;
    OrvCollectable(const OrvCollectable&) = default;
    OrvCollectable& operator=(const OrvCollectable&) = default;
    ~OrvCollectable() override;
};
