// Where the bytes of a YAML scalar stand in its file.
#pragma once

#include <string>

#include "SourceFile.h"

namespace mmq {

/// The origin of a scalar whose text is `scalar` and that begins at an offset of the file, with an
/// anchor perhaps: plain, in quotes, or a block behind "|" or ">". White space of the scalar is
/// placed behind what stands before it.
TextOrigin originOfScalar(std::shared_ptr<const SourceFile> file, std::size_t begin,
                          const std::string& scalar);

}  // namespace mmq
