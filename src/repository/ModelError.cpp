#include "repository/ModelError.h"

namespace {

std::string compose(const std::string& file, const TextPlace& place, const std::string& sentence) {
    std::string text = file + ':';
    if (place.line != 0) {
        text += std::to_string(place.line) + ':' + std::to_string(place.column) + ':';
    }
    return text + ' ' + sentence;
}

}  // namespace

ModelError::ModelError(const std::string& file, const TextPlace& place, const std::string& sentence)
    : OrvException(compose(file, place, sentence)), file_(file), place_(place) {}

ModelError::~ModelError() = default;
