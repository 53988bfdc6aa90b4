#include "foundation/OrvCountedPtr.h"

#include "support/OrvException.h"

namespace {

// The blocks that wait for their end on this thread; null while none is being ended. Trivially
// destructible, so that unloading the library leaves nothing behind in a thread.
thread_local OrvCountedBlock* pendingBlocks = nullptr;

}  // namespace

void OrvCountedBlock::end() noexcept {
    if (pendingBlocks != nullptr) {
        next = pendingBlocks;
        pendingBlocks = this;
    } else {
        endWithAllThatFollow();
    }
}

void OrvCountedBlock::endWithAllThatFollow() noexcept {
    OrvCountedBlock last;
    pendingBlocks = &last;
    for (OrvCountedBlock* block = this; block != &last;) {
        block->dispose(*block);
        block->free();
        block = pendingBlocks;
        pendingBlocks = block->next;
    }
    pendingBlocks = nullptr;
}

void throwBadDereference(const char* text) { throwLogged(OrvException(text)); }
