// What the tests of the repository share: short documents and models as short texts.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "repository/RepositoryModel.h"

/// Puts root elements into an XMI document element that declares xmi, xsi and uml.
std::string xmi(const std::string& roots);

/// One line an object, in document order, joined by " | ": its class and uid, its attributes as
/// name=value and its associations as name->uid,uid, each sorted by name; what the document does
/// not give the object is left out.
std::string dump(const RepositoryModel& model);

/// The value of "$name", or with brackets the uids that "[name]" reaches, of the object with a uid;
/// "unknown" where the model does not have the name.
std::string ask(const RepositoryModel& model, std::string_view uid, std::string_view question);

/// The uids of objects, separated by commas.
std::string uids(const RepositoryModel& model, const MMObjectRange& objects);

/// The model of an XML document that is parsed in the smallest pieces that there are.
std::unique_ptr<RepositoryModel> readInPieces(std::string_view document);

/// The text of the ModelError that reading a document in memory, called "doc", throws; empty where
/// it throws none.
std::string errorOf(std::string_view document);
