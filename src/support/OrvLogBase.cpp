#include "support/OrvLogBase.h"

#include <iostream>

OrvLogBase::OrvLogBase() : stream_(&std::cerr) {}

void OrvLogBase::enable(const std::string& category) { categories_.insert(category); }

void OrvLogBase::disable(const std::string& category) { categories_.erase(category); }

bool OrvLogBase::isEnabled(std::string_view category) const {
    return categories_.find(category) != categories_.end();
}

void OrvLogBase::setStream(std::ostream& stream) { stream_ = &stream; }

void OrvLogBase::writeLine(std::string_view category,
                           std::initializer_list<std::string_view> pieces) noexcept {
    if (!isEnabled(category)) {
        return;
    }
    try {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (const std::string_view piece : pieces) {
            stream_->write(piece.data(), static_cast<std::streamsize>(piece.size()));
        }
        stream_->put('\n').flush();
    } catch (...) {
        // A log must not change what it reports on: the line is lost and the thrower goes on.
        return;
    }
}
