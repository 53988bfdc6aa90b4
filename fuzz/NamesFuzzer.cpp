// Any text, with its names held against those of the cyclic model: twice the same findings, at
// tokens.
#include <iostream>

#include "Compilation.h"
#include "CyclicModel.h"
#include "FuzzText.h"
#include "names/NameCheck.h"
#include "repository/ModelReader.h"

namespace {

/// What the objects of the model can have, made once.
class CyclicNames {
public:
    static const CyclicNames& instance() {
        static const CyclicNames names;
        return names;
    }
    const mmq::NameVocabulary& vocabulary() const { return vocabulary_; }

private:
    CyclicNames() : model_(readModelText(CyclicModel::instance().document(), "model")) {
        vocabulary_.addModel(*model_);
    }

    std::unique_ptr<RepositoryModel> model_;
    mmq::NameVocabulary vocabulary_;
};

std::string shown(const std::vector<mmq::TextError>& errors, const std::string& text) {
    const auto places = placesOf(text);
    std::string shown;
    for (const mmq::TextError& error : errors) {
        failIf(error.sentence.empty() || places.count({error.line, error.column}) == 0);
        shown += error.sentence + error.hint + '\n';
    }
    return shown;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    std::cerr.rdbuf(nullptr);  // where dropped characters are reported
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const mmq::ExpressionText text(textOf(data, size));
    const mmq::CompiledExpression expression = mmq::compileAgain(text, mmq::As::automatic);
    if (expression) {
        const mmq::NameVocabulary& names = CyclicNames::instance().vocabulary();
        const auto first = mmq::checkNames(expression, names, names.allClasses()).findings;
        const auto second = mmq::checkNames(expression, names, names.allClasses()).findings;
        failIf(shown(first.errors, text.text()) != shown(second.errors, text.text()));
        failIf(shown(first.notes, text.text()) != shown(second.notes, text.text()));
    }
    return 0;
}
