#include "foundation/OrvPinnedRegistry.h"

void OrvPinnedRegistry::add(OrvCountedBlock& block) noexcept {
    if (block.count == OrvCountedBlock::pinned) {
        return;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    block.count = OrvCountedBlock::pinned;
    block.next = blocks_;
    blocks_ = &block;
}

// Pinned objects point to each other: all objects go before the first block does, so that every
// pointer still finds the count that tells it to do nothing.
OrvPinnedRegistry::~OrvPinnedRegistry() {
    for (OrvCountedBlock* block = blocks_; block != nullptr; block = block->next) {
        block->endObject();
    }
    while (blocks_ != nullptr) {
        OrvCountedBlock* const block = blocks_;
        blocks_ = block->next;
        block->free();
    }
}
