// Reads a document of any known form as a model.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "repository/ModelError.h"
#include "repository/ReadOptions.h"
#include "repository/RepositoryModel.h"

/// Reads a file as a model: JSON where the first character that is no white space is "{", else
/// XMI.
///
/// Throws ModelError where the file cannot be read, or is not well formed, and std::bad_alloc where
/// memory runs out; nothing of a half-read model remains. Takes time and memory in proportion to
/// the file, which is at most 4 GiB long; a file may be replaced or deleted once it is read.
///
/// XMI is read from UML 2, Ecore and whatever tools write in their manner: the document element
/// `XMI` is no object, elements in an XMI name space are skipped; an object's class is its
/// `xmi:type` or `xsi:type`, else what its owner's feature declares; its id is `xmi:id`, else the
/// attribute `id`. An XML attribute is a reference where the metamodel says so; where nothing is
/// declared, if every token that any object of the class has there names an object or holds "#".
///
/// JSON is `{"root":"m","objects":[{"id":"m","class":"Model","attributes":{"name":"Shop"},
/// "associations":{"ownedClass":["c1"]}}]}`. Attributes are strings, numbers or booleans;
/// associations list ids of objects of the document. Without "root" the first object is the root.
std::unique_ptr<RepositoryModel> readModel(const std::string& path,
                                           const ReadOptions& options = {});

/// The same from a document in memory, which is copied; `name` stands for the file in messages.
std::unique_ptr<RepositoryModel> readModelText(std::string_view text, const std::string& name,
                                               const ReadOptions& options = {});
