#include "repository/TextRef.h"

#include <utility>

TextRef TextStore::keep(std::string text) {
    kept_.push_back(std::move(text));
    return {static_cast<std::uint32_t>(kept_.size() - 1), TextRef::kept};
}

std::string_view TextStore::specialView(TextRef text) const {
    return text.isAbsent() ? std::string_view() : std::string_view(kept_[text.offset]);
}
