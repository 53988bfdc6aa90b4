// Counted objects that may stand in the region of a compilation.
#pragma once

#include <cstddef>

#include "foundation/OrvCountedPtr.h"

/// The base of objects of which some belong to one compilation and others to the whole process.
/// Who makes one says where: `new` takes memory of its own, `new (region)` a part of the region,
/// or memory of its own where that is null.
class RegionObject : public OrvCountedObject {
public:
    static void* operator new(std::size_t bytes) { return allocate(bytes, nullptr); }
    static void* operator new(std::size_t bytes, OrvMemoryRegion* region) {
        return allocate(bytes, region);
    }
    static void operator delete(void* object) noexcept {
        OrvCountedObject::operator delete(object);
    }
    static void operator delete(void* object, OrvMemoryRegion* /*region*/) noexcept {
        OrvCountedObject::operator delete(object);
    }

protected:
    RegionObject() = default;
    ~RegionObject() = default;
};
