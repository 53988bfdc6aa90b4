// Loading the model that a command works on.
#pragma once

#include <memory>

#include "Options.h"
#include "repository/ModelReader.h"

namespace mmq {

/// Reads the model that the options name, with its metamodel where one is named. Shows on a
/// terminal that it is at work when it takes longer than 300 ms. Throws ModelError.
std::unique_ptr<RepositoryModel> loadModel(const Options& options);

}  // namespace mmq
