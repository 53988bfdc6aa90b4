#include "lint/FileErrors.h"

namespace mmq {

void FileErrors::add(std::size_t offset, const std::string& sentence) {
    add(offset, endOfLine(file_->text(), offset), sentence);
}

void FileErrors::add(std::size_t offset, std::size_t endOffset, const std::string& sentence) {
    const TextPlace place = file_->place(offset);
    sink_.write({file_->name(), static_cast<int>(place.line), static_cast<int>(place.column),
                 file_->excerpt(offset), offset, endOffset},
                messageSource, sentence, ExprParserDialogs::Error, false);
    ++count_;
}

void FileErrors::addHint(const std::string& hint) const {
    sink_.writeHint({file_->name(), 0, 0, ""}, hint);
}

}  // namespace mmq
