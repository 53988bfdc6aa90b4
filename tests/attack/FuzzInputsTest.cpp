// What the fuzz targets run with: their findings are replayed here in every build, and their words
// are those of the language.
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <string>

#include "BuiltIns.h"
#include "CyclicModel.h"
#include "FuzzText.h"
#include "MetamodelProperties.h"
#include "api/ExprParser.h"
#include "fliodram/MMEvaluationError.h"
#include "namespace/TopLevelEnvironment.h"
#include "parser/KeywordTable.h"
#include "support/SilentErrors.h"
#include "types/TypeExprPrintVisitor.h"

namespace {

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

// A value, or the sentence of an error, on some objects.
template <class Expression>
void evaluate(const Expression& expression) {
    const CyclicModel& model = CyclicModel::instance();
    MMEvaluationLimits limits = fuzzLimits();
    limits.time = std::chrono::seconds(2);
    MMEvaluationContext context(model.model(), limits);
    for (std::size_t number = 0; number < 3; ++number) {
        try {
            (void)expression.apply(context, model.object(number * 17));
        } catch (const MMEvaluationError& error) {
            EXPECT_STRNE(error.what(), "");
        }
    }
}

// An expression that has been evaluated, or an error at a token.
template <class Parse>
void compileAndEvaluate(const Parse& parse, const std::string& text) {
    CheckingDialogs dialogs(text);
    const auto expression = parse(dialogs, text);
    EXPECT_EQ(!expression, dialogs.errorCount() > 0);
    if (expression) {
        evaluate(*expression);
    }
}

void replayText(const std::string& text) {
    compileAndEvaluate(ExprParser::parseCondition, text);
    compileAndEvaluate(ExprParser::parseAssociatedAttribute, text);
    compileAndEvaluate(ExprParser::parseComplexAssociation, text);
}

using Replay = void (*)(const std::string& text);

// How the findings of each target are replayed; what must not be ends the process.
const std::map<std::string, Replay> replays = {
    {"lexer", replayText},    {"parser", replayText}, {"compile", replayText},
    {"evaluate", replayText}, {"names", replayText},  {"ecore", readAndCheckMetamodel}};

// What one may take: twice what the fuzz targets allow, since some builds are slower.
constexpr double mostSeconds = 4;

TEST(FuzzInputs, FindingsAreReplayed) {
    const SilentErrors silent;
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(FUZZ "/findings")) {
        if (entry.is_directory()) {
            continue;
        }
        const std::string target = entry.path().parent_path().filename().string();
        std::cout << entry.path() << std::endl;  // before it ends the process
        const auto replay = replays.find(target);
        ASSERT_NE(replay, replays.end()) << "Nothing replays what was found by " << target;
        SCOPED_TRACE(entry.path());
        const std::clock_t start = std::clock();
        replay->second(contentsOf(entry.path()));
        EXPECT_LT(std::clock() - start, mostSeconds * CLOCKS_PER_SEC) << entry.path();
        ++count;
    }
    EXPECT_GT(count, 0U);
}

// The words in quotes of a dictionary, a line each.
std::set<std::string> wordsOfDictionary() {
    std::set<std::string> words;
    std::ifstream file(FUZZ "/expression.dict");
    for (std::string line; std::getline(file, line);) {
        if (line.size() > 2 && line.front() == '"') {
            words.insert(line.substr(1, line.size() - 2));
        }
    }
    return words;
}

constexpr std::string_view operatorPrefix = "operator";

// A name as an expression has it.
std::string written(std::string_view name) {
    const bool isOperator = name.substr(0, operatorPrefix.size()) == operatorPrefix;
    return std::string(isOperator ? name.substr(operatorPrefix.size()) : name);
}

const Scope::Entries& catalogue() { return TopLevelEnvironment::instance()->getScope()->entries(); }

TEST(FuzzInputs, TheDictionaryHasAllWords) {
    const std::set<std::string> words = wordsOfDictionary();
    for (const KeywordTable::Entry& keyword : KeywordTable::instance()->entries()) {
        EXPECT_TRUE(words.count(std::string(keyword.word)) > 0) << keyword.word;
    }
    for (const Scope::Entry& entry : catalogue()) {
        const std::string word = written(entry.name);
        EXPECT_TRUE(word.size() < 2 || words.count(word) > 0) << word;  // a byte is soon found
    }
}

const TypePtr& typeOf(char letter) {
    static const std::map<char, TypePtr> types = {{'B', TypeExpression::booleanType()},
                                                  {'I', TypeExpression::integerType()},
                                                  {'R', TypeExpression::realType()},
                                                  {'S', TypeExpression::stringType()},
                                                  {'P', TypeExpression::regexpType()},
                                                  {'O', TypeExpression::objectType()},
                                                  {'C', TypeExpression::objectCollectionType()},
                                                  {'T', TypeExpression::stringCollectionType()}};
    return types.at(letter);
}

TypePtr domainOf(std::string_view letters) {
    if (letters.size() == 1) {
        return typeOf(letters[0]);
    }
    const OrvCountedPtr<TEProduct> product(new TEProduct);
    for (const char letter : letters) {
        product->addComponent(typeOf(letter));
    }
    return product;
}

// The word at the beginning, or the operator behind the first operand, and the type.
std::string signatureOf(const BuiltIn& builtIn) {
    constexpr std::string_view operand = "(% ";
    const bool isOperator = builtIn.text.substr(0, operand.size()) == operand;
    const std::string_view from = builtIn.text.substr(isOperator ? operand.size() : 0);
    const TypePtr type(new TEFunction(domainOf(builtIn.operands), typeOf(builtIn.result)));
    return std::string(from.substr(0, from.find(' '))) + " " + printedType(type);
}

TEST(FuzzInputs, TheBuiltInsAreAllOfTheCatalogue) {
    std::set<std::string> signatures;
    for (const BuiltIn& builtIn : builtIns) {
        signatures.insert(signatureOf(builtIn));
    }
    for (const Scope::Entry& entry : catalogue()) {
        const std::string signature =
            written(entry.name) + " " + printedType(entry.symbol->getType());
        EXPECT_TRUE(signatures.count(signature) > 0) << signature;
    }
}

}  // namespace
