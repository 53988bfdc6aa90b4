// Tokens of any text: they come to an end, in order, and say where they stand.
#include "FuzzText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    SilentStream silent;
    DLGStringInput input(text.c_str());
    DLGLexer lexer(&input, DLGLexer::defaultBufferSize, silent);
    const ColumnToken tokenTemplate;
    std::size_t last = 0;
    try {
        for (int number = TOKEN_INVALID; number != TOKEN_EOF;) {
            const TokenPtr token = lexer.nextToken(tokenTemplate);
            number = token->getNumber();
            failIf(token->getLine() < 1 || token->getColumn() < 1 || token->getOffset() < last ||
                   token->getOffset() > text.size());
            last = token->getOffset();
        }
    } catch (const ParseException& exception) {
        failIf(exception.getLine() < 1 || exception.getColumn() < 1);
    }
    return 0;
}
