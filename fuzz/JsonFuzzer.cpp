// Any bytes as a JSON document: a model whose objects know each other, or a sentence with a place.
#include "ModelProperties.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readAndCheck("{" + textOf(data, size));
    return 0;
}
