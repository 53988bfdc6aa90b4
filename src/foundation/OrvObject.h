// The common polymorphic base of the foundation's objects.
#pragma once

/// An empty base for objects that are deleted through it. It carries no state, so copying and
/// assigning the base part does nothing.
///
/// The destructor is inline, so that ending a small object is no chain of calls; where the compiler
/// puts the class's table of functions is told by anchor(), which nobody calls.
class __attribute__((visibility("default"))) OrvObject {
public:
    OrvObject() noexcept = default;
    OrvObject(const OrvObject& /*other*/) noexcept {}
    OrvObject& operator=(const OrvObject& /*other*/) noexcept { return *this; }
    virtual ~OrvObject() = default;

private:
    virtual void anchor() const;
};
