// The common polymorphic base of the foundation's objects.
#pragma once

/// An empty base for objects that are deleted through it. It carries no state, so copying and
/// assigning the base part does nothing.
class __attribute__((visibility("default"))) OrvObject {
public:
    OrvObject() noexcept = default;
    OrvObject(const OrvObject& /*other*/) noexcept {}
    OrvObject& operator=(const OrvObject& /*other*/) noexcept { return *this; }
    virtual ~OrvObject();
};
