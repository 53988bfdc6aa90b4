#include "foundation/OrvCountedPtr.h"

#include "support/OrvException.h"

namespace {

// The blocks that wait for their end on this thread; null while none is being ended. Trivially
// destructible, so that unloading the library leaves nothing behind in a thread.
thread_local OrvCountedBlock* pendingBlocks = nullptr;

}  // namespace

void OrvCountedObject::anchor() const {}

void OrvCountedBlock::endObject() noexcept {
    if (origin == separate) {
        const auto& block = static_cast<const OrvSeparateCountedBlock&>(*this);
        block.dispose(block.object);
    } else {
        static_cast<OrvCountedObject*>(static_cast<void*>(this + 1))->~OrvCountedObject();
    }
}

void OrvCountedBlock::free() noexcept {
    if (isInRegion()) {
        OrvMemoryRegion::regionOf(this, origin / 2 * step)->release();
    } else {
        OrvMemoryPool::deallocate(
            this, origin == separate ? sizeof(OrvSeparateCountedBlock) : origin / 2 * step);
    }
}

void OrvCountedBlock::end() noexcept {
    if (pendingBlocks != nullptr) {
        next = pendingBlocks;
        pendingBlocks = this;
    } else {
        endWithAllThatFollow();
    }
}

void OrvCountedBlock::endWithAllThatFollow() noexcept {
    OrvCountedBlock last(separate);
    last.next = nullptr;
    pendingBlocks = &last;
    for (OrvCountedBlock* block = this; block != &last;) {
        block->endObject();
        block->free();
        block = pendingBlocks;
        pendingBlocks = block->next;
    }
    pendingBlocks = nullptr;
}

void throwBadDereference(const char* text) { throwLogged(OrvException(text)); }
