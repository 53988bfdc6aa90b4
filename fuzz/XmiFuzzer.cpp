// Any bytes as an XMI document: a model whose objects know each other, or a sentence with a place.
#include "ModelProperties.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text = textOf(data, size);
    if (!text.empty() && text[0] == '{') {
        text[0] = '<';
    }
    readAndCheck(text);
    return 0;
}
