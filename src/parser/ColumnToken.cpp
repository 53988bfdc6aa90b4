#include "parser/ColumnToken.h"

void CommonToken::assignText(std::string_view text) {
    ownText_ = OrvCountedPtr<OwnText>(new OwnText(text));
    text_ = ownText_->characters;
}

void ColumnToken::become(int number, std::string_view text) {
    setNumber(number);
    assignText(text);
}
