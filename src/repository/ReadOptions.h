// What a document is read with.
#pragma once

#include <memory>

#include "repository/Metamodel.h"

/// Filled by the host before it reads a document.
struct ReadOptions {
    /// Tells references from attributes, the classes of objects that do not say, and defaults; may
    /// be null.
    std::shared_ptr<const Metamodel> metamodel;
};
