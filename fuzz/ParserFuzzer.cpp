// Trees of any text: printed twice they print the same, and errors stand at tokens.
#include "FuzzText.h"
#include "ast/ASTPrintVisitor.h"
#include "parser/SyntaxParser.h"

namespace {

/// Keeps what is written, up to a size that a tree with many groups soon passes.
class ShortBuffer : public std::streambuf {
public:
    const std::string& text() const { return text_; }

protected:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        constexpr std::size_t longest = 1U << 16U;
        if (text_.size() > longest) {
            throw std::length_error("The tree is large.");
        }
        text_.append(bytes, static_cast<std::size_t>(count));
        return count;
    }
    int_type overflow(int_type byte) override {
        const char character = traits_type::to_char_type(byte);
        xsputn(&character, 1);
        return byte;
    }

private:
    std::string text_;
};

std::string printed(SpecificationNode& root) {
    ShortBuffer buffer;
    std::ostream stream(&buffer);
    stream.exceptions(std::ios::badbit);
    ASTPrintVisitor printer(stream);
    try {
        root.accept(printer);
    } catch (const std::length_error&) {
    }
    return buffer.text();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    CheckingDialogs dialogs(text);
    SilentStream silent;
    try {
        const auto root = SyntaxParser::parse(dialogs, text.c_str(), silent);
        failIf(root ? dialogs.errorCount() != 0 : dialogs.errorCount() == 0);
        if (root) {
            failIf(printed(*root) != printed(*root));
        }
    } catch (const ParseException& exception) {
        failIf(placesOf(text).count({exception.getLine(), exception.getColumn()}) == 0);
    }
    return 0;
}
