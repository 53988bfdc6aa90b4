#include "Compilation.h"
#include "lsp/Language.h"
#include "names/NameCheck.h"

namespace mmq {

namespace {

class ExpressionLanguage : public Language {
public:
    // Where nothing is written yet, nothing is wrong yet.
    std::vector<Diagnostic> diagnose(const std::string& /*name*/, const std::string& text,
                                     const ServerModel& model) const override {
        if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
            return {};
        }
        DiagnosticList list;
        const ExpressionText expression(text);
        Messages messages(expression, list);
        messages.setNames([&model] { return model.source().vocabulary; });
        const CompiledExpression compiled = compile(expression, As::automatic, messages);
        if (compiled && model.checksNames()) {
            const NameSource names = model.source();
            showFindings(checkNames(compiled, *names.vocabulary, names.classesOfThis).findings,
                         messages);
        }
        return list.take();
    }

    std::optional<ExpressionPart> partAt(const std::string& text, std::size_t /*offset*/,
                                         const ServerModel& model) const override {
        return ExpressionPart::cut(text, 0, text.size(), model.source());
    }
};

}  // namespace

const Language& expressionLanguage() {
    static const ExpressionLanguage language;
    return language;
}

}  // namespace mmq
