#include "fliodram/MMModel.h"

#include <atomic>

namespace {

std::uint64_t nextIdentity() {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace

MMModel::MMModel() : identity_(nextIdentity()) {}
MMModel::~MMModel() = default;
void MMModel::renewKeys() { identity_ = nextIdentity(); }
