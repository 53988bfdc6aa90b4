// Reads XMI documents: UML 2, Ecore, and what other tools write in their manner.
#pragma once

#include <memory>

#include "repository/ReadOptions.h"
#include "repository/RepositoryModel.h"
#include "repository/SourceText.h"

/// Makes a model of an XML document; readModel() is the usual caller and tells the form.
class XmiReader {
public:
    /// Throws ModelError where the text is not well-formed XML.
    static std::unique_ptr<RepositoryModel> read(SourceText source, const ReadOptions& options);
};
