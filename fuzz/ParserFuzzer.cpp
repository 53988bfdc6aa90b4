// Trees of any text: printed twice they print the same, and errors stand at tokens.
#include <algorithm>

#include "FuzzText.h"
#include "ast/ASTPrintVisitor.h"
#include "parser/SyntaxParser.h"

namespace {

std::string printed(SpecificationNode& root) {
    std::ostringstream stream;
    ASTPrintVisitor printer(stream);
    root.accept(printer);
    return stream.str();
}

// Steps that follow a group are printed below each of its alternatives, so that many groups after
// each other make a tree that is too large to print.
bool isPrintable(const std::string& text) { return std::count(text.begin(), text.end(), ';') < 12; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    CheckingDialogs dialogs(text);
    SilentStream silent;
    try {
        const auto root = SyntaxParser::parse(dialogs, text.c_str(), silent);
        failIf(root ? dialogs.errorCount() != 0 : dialogs.errorCount() == 0);
        if (root && isPrintable(text)) {
            failIf(printed(*root) != printed(*root));
        }
    } catch (const ParseException& exception) {
        failIf(placesOf(text).count({exception.getLine(), exception.getColumn()}) == 0);
    }
    return 0;
}
