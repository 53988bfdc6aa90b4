#include "fliodram/MMModel.h"

#include <atomic>

#include "fliodram/MMColumn.h"
#include "fliodram/MMEvaluationContext.h"

namespace {

std::uint64_t nextIdentity() {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace

MMModel::MMModel() : identity_(nextIdentity()) {}
MMModel::~MMModel() = default;
void MMModel::renewKeys() { identity_ = nextIdentity(); }

std::string_view MMModel::attributeWithin(MMEvaluationContext& context, MMObject object,
                                          MMKey attribute, std::string& buffer) const {
    const std::string_view text = this->attribute(object, attribute, buffer);
    context.countCopy(buffer.size());
    return text;
}

MMTextColumn MMModel::classNameColumn(MMObject /*object*/) const { return {}; }

MMTextColumn MMModel::attributeColumn(MMObject /*object*/, MMKey /*attribute*/) const { return {}; }

MMTargetColumn MMModel::targetColumn(MMObject /*object*/, MMKey /*association*/) const {
    return {};
}
