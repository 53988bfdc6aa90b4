// The model whose names are known while texts are written.
#pragma once

#include <string>

#include "ModelNames.h"
#include "Options.h"
#include "assist/Completion.h"
#include "repository/ReadOptions.h"

namespace mmq {

/// The names of the model, or the metamodel, that options name, and the class of the objects that
/// files of expressions are for. Belongs to the workspace.
class ServerModel {
public:
    /// Throws ModelError where a document cannot be read, and std::runtime_error with a sentence
    /// where there is no such class.
    explicit ServerModel(const Options& options);

    /// Null where nothing is named.
    const NameVocabulary* vocabulary() const { return names_.vocabulary(); }
    /// How other models are read.
    ReadOptions reading() const { return {names_.metamodel()}; }
    /// Whether a name that no object can have is an error.
    bool checksNames() const { return vocabulary() != nullptr && !allowsUnknownNames_; }
    /// The names for a file of expressions, and for an expression about objects of some classes.
    NameSource source() const { return {vocabulary(), classesOfThis_}; }
    NameSource sourceOn(const std::vector<std::string>& classes) const;

private:
    ModelNames names_;
    bool allowsUnknownNames_;
    ClassSet classesOfThis_;
};

}  // namespace mmq
