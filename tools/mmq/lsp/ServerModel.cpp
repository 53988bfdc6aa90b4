#include "lsp/ServerModel.h"

#include <stdexcept>

#include "names/NameJudge.h"

namespace mmq {

ServerModel::ServerModel(const Options& options)
    : names_(options), allowsUnknownNames_(options.allowsUnknownNames) {
    if (vocabulary() == nullptr || options.onClass.empty()) {
        return;
    }
    if (!vocabulary()->findClass(options.onClass)) {
        const std::string hint = hintForClass(options.onClass, *vocabulary());
        throw std::runtime_error(sentenceForClass(options.onClass, *vocabulary()) +
                                 (hint.empty() ? "" : " ") + hint);
    }
    classesOfThis_ = vocabulary()->findClasses({options.onClass});
}

NameSource ServerModel::sourceOn(const std::vector<std::string>& classes) const {
    return {vocabulary(),
            vocabulary() != nullptr ? vocabulary()->findClasses(classes) : ClassSet()};
}

}  // namespace mmq
