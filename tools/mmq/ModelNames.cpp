#include "ModelNames.h"

namespace mmq {

ModelNames::ModelNames(const Options& options) {
    if (!options.modelFile.empty()) {
        model_ = loadModel(options);
        vocabulary_ = std::make_unique<NameVocabulary>();
        vocabulary_->addModel(*model_);
    } else if (!options.metamodelFile.empty()) {
        metamodel_ = readOptions(options).metamodel;
        vocabulary_ = std::make_unique<NameVocabulary>();
        vocabulary_->addMetamodel(*metamodel_, options.metamodelFile);
    }
}

const NameVocabulary* NamesOnDemand::find() {
    if (names_ == nullptr) {
        try {
            names_ = std::make_unique<const ModelNames>(options_);
        } catch (const ModelError&) {
            return nullptr;
        }
    }
    return names_->vocabulary();
}

}  // namespace mmq
