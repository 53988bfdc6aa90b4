// Reads models from JSON documents.
#pragma once

#include <memory>

#include "repository/ReadOptions.h"
#include "repository/RepositoryModel.h"
#include "repository/SourceText.h"

/// Makes a model of a JSON document in the form that readModel() describes; that is the usual
/// caller and tells the form.
class JsonReader {
public:
    /// Throws ModelError where the text is no JSON, or is not of the form.
    static std::unique_ptr<RepositoryModel> read(SourceText source, const ReadOptions& options);
};
