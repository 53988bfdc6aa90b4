#include "parser/ColumnToken.h"

void ColumnToken::become(int number, std::string_view text, int line) {
    assign(number, line);
    assignText(text);
}
