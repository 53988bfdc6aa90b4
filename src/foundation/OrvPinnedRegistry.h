// The registry of the objects that a whole process shares.
#pragma once

#include <mutex>

#include "foundation/OrvCountedPtr.h"

/// Keeps objects alive until the library is unloaded, and keeps threads from writing their counts.
///
/// A pinned object's count is never written again, so its pointers may be copied and dropped by
/// any number of threads at once. Pinning allocates nothing and cannot fail: what is shared is
/// built with ordinary pointers first, inside the initialisation of a function-local static, and
/// pinned when it is complete. There is one registry in each library that shares something
/// (instance()); it ends all pinned objects when the library goes, after every other static that
/// was made once something was pinned.
class __attribute__((visibility("default"))) OrvPinnedRegistry {
public:
    OrvPinnedRegistry() = default;
    OrvPinnedRegistry(const OrvPinnedRegistry&) = delete;
    OrvPinnedRegistry& operator=(const OrvPinnedRegistry&) = delete;
    ~OrvPinnedRegistry();

    /// The registry of the library that calls: a hidden inline function has one static a library.
    __attribute__((visibility("hidden"))) static OrvPinnedRegistry& instance() {
        static OrvPinnedRegistry registry;
        return registry;
    }

    /// Pins the object of `pointer`, if there is one and it is not pinned yet; returns `pointer`.
    /// No other thread may know the object before.
    template <class T>
    const OrvCountedPtr<T>& pin(const OrvCountedPtr<T>& pointer) noexcept {
        if (pointer.block_ != nullptr) {
            add(*pointer.block_);
        }
        return pointer;
    }

private:
    void add(OrvCountedBlock& block) noexcept;

    std::mutex mutex_;
    OrvCountedBlock* blocks_ = nullptr;
};
