// Reads XMI documents: UML 2, Ecore, and what other tools write in their manner.
#pragma once

#include <cstddef>
#include <memory>

#include "repository/ReadOptions.h"
#include "repository/RepositoryModel.h"
#include "repository/SourceText.h"
#include "repository/XmlScanner.h"

/// Makes a model of an XML document; readModel() is the usual caller and tells the form.
class XmiReader {
public:
    /// Throws ModelError where the text is not well-formed XML. It is parsed in pieces of about
    /// this size, which changes nothing else.
    static std::unique_ptr<RepositoryModel> read(
        SourceText source, const ReadOptions& options,
        std::size_t pieceSize = XmlScanner::usualPieceSize);
};
