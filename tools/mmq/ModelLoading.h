// Loading the model that a command works on.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Options.h"
#include "repository/ModelReader.h"

namespace mmq {

/// Reads the model that the options name, with its metamodel where one is named. Shows on a
/// terminal that it is at work when it takes longer than 300 ms. Throws ModelError.
std::unique_ptr<RepositoryModel> loadModel(const Options& options);

/// What models are read with, the metamodel that the options name among it. Throws ModelError.
ReadOptions readOptions(const Options& options);

/// Reads several models with that metamodel, in order.
std::vector<std::unique_ptr<RepositoryModel>> loadModels(const std::vector<std::string>& files,
                                                         const Options& options);

}  // namespace mmq
