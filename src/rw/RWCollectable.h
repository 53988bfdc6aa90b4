// The base of objects that are kept in the string library's collections.
#pragma once

/// An object that a collection of the string library can hold. Here it only marks such classes:
/// no collection of that library is used.
class __attribute__((visibility("default"))) RWCollectable {
public:
    virtual ~RWCollectable();

protected:
    RWCollectable() = default;
    RWCollectable(const RWCollectable&) = default;
    RWCollectable& operator=(const RWCollectable&) = default;
};
