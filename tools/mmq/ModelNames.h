// The model that a command works on, with the names in it.
#pragma once

#include <memory>

#include "ModelLoading.h"
#include "Options.h"
#include "names/NameVocabulary.h"
#include "repository/RepositoryModel.h"

namespace mmq {

/// The model that options name, or its metamodel alone, and the names that its objects can have.
/// Belongs to one thread, as the vocabulary does.
class ModelNames {
public:
    /// Reads what is named; throws ModelError.
    explicit ModelNames(const Options& options);

    /// Null where only a metamodel is named, or nothing.
    const RepositoryModel* model() const { return model_.get(); }
    /// Null where nothing is named.
    const NameVocabulary* vocabulary() const { return vocabulary_.get(); }
    /// Null where no metamodel is named.
    const std::shared_ptr<const Metamodel>& metamodel() const { return metamodel_; }

private:
    std::unique_ptr<RepositoryModel> model_;
    std::shared_ptr<const Metamodel> metamodel_;
    std::unique_ptr<NameVocabulary> vocabulary_;
};

/// The same, read when somebody first asks, which nobody may.
class NamesOnDemand {
public:
    /// Borrows the options.
    explicit NamesOnDemand(const Options& options) : options_(options) {}

    /// Null where nothing is named, or what is named cannot be read.
    const NameVocabulary* find();

private:
    const Options& options_;
    std::unique_ptr<const ModelNames> names_;
};

}  // namespace mmq
