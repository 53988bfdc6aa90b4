// Any bytes as an Ecore document.
#include "FuzzText.h"
#include "MetamodelProperties.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readAndCheckMetamodel(textOf(data, size));
    return 0;
}
