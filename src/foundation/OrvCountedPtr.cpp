#include "foundation/OrvCountedPtr.h"

#include "support/OrvException.h"

namespace {

// Trivially destructible, so that unloading the library leaves nothing behind in a thread.
thread_local OrvCountedBlock* pendingBlocks = nullptr;
thread_local bool isEnding = false;

}  // namespace

void OrvCountedBlock::end() noexcept {
    next = pendingBlocks;
    pendingBlocks = this;
    if (isEnding) {
        return;
    }
    isEnding = true;
    while (pendingBlocks != nullptr) {
        OrvCountedBlock* const block = pendingBlocks;
        pendingBlocks = block->next;
        block->dispose(*block);
        block->free();
    }
    isEnding = false;
}

void throwBadDereference(const char* text) { throwLogged(OrvException(text)); }
