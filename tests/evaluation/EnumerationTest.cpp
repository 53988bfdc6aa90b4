// All expressions of up to three operators over two values of each type, compiled and evaluated
// naively.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "evaluation/Comparison.h"

namespace {

/// An operator with the types of its operands; a prefix operator has no left one.
struct Operator {
    TypeLetter result;
    TypeLetter left;
    std::string name;
    TypeLetter right;
};

constexpr TypeLetter none = '-';

std::vector<Operator> makeOperators() {
    std::vector<Operator> all = {
        {'B', none, "not ", 'B'}, {'I', none, "- ", 'I'},   {'R', none, "- ", 'R'},
        {'B', 'B', " and ", 'B'}, {'B', 'B', " or ", 'B'},  {'B', 'B', " implies ", 'B'},
        {'S', 'S', " + ", 'S'},   {'S', 'S', " |=> ", 'S'}, {'B', 'S', " ~= ", 'S'},
        {'B', 'S', " ~<> ", 'S'}, {'B', 'B', " = ", 'B'},   {'B', 'B', " <> ", 'B'},
        {'B', 'O', " = ", 'O'},   {'B', 'O', " <> ", 'O'}};
    for (const TypeLetter type : {'I', 'R'}) {
        for (const char* name : {" + ", " - ", " * ", " / "}) {
            all.push_back({type, type, name, type});
        }
    }
    for (const TypeLetter type : {'I', 'R', 'S', 'C'}) {
        for (const char* name : {" = ", " <> ", " < ", " <= ", " > ", " >= "}) {
            all.push_back({'B', type, name, type});
        }
    }
    for (const TypeLetter type : {'B', 'I', 'R', 'S'}) {
        all.insert(all.end(), {{'B', none, "boolean ", type},
                               {'I', none, "integer ", type},
                               {'R', none, "real ", type},
                               {'S', none, "string ", type}});
    }
    return all;
}

/// The expressions of each type with each number of operators.
class Enumeration {
public:
    const std::vector<std::string>& expressions(TypeLetter type, int operators) {
        const auto [place, isNew] = known_.try_emplace({type, operators});
        for (const Operator& op : operators_) {
            for (int left = 0; isNew && op.result == type && left < operators; ++left) {
                for (const std::string& lhs : expressions(op.left, left)) {
                    for (const std::string& rhs : expressions(op.right, operators - 1 - left)) {
                        place->second.push_back("(" + lhs + op.name + rhs + ")");
                    }
                }
            }
        }
        return place->second;
    }

private:
    const std::vector<Operator> operators_ = makeOperators();
    std::map<std::pair<TypeLetter, int>, std::vector<std::string>> known_ = {
        {{none, 0}, {""}},
        {{'B', 0}, {"true", "false"}},
        {{'I', 0}, {"0", "2147483647"}},
        {{'R', 0}, {"0.0", "2.5"}},
        {{'S', 0}, {"\"\"", "\"12\""}},
        {{'O', 0}, {"this", "first [none]"}},
        {{'C', 0}, {"[a]", "[none]"}},
    };
};

TEST(Enumeration, SmallExpressionsHaveTheValueOfTheNaiveEvaluator) {
    constexpr int every = isInstrumented() ? 10 : 1;
    const SmallModel model;
    Comparison comparison(model);
    Enumeration enumeration;
    int count = 0;
    for (const TypeLetter type : {'B', 'I', 'R', 'S'}) {
        for (int operators = 1; operators <= 3; ++operators) {
            for (const std::string& text : enumeration.expressions(type, operators)) {
                if (++count % every == 0) {
                    ASSERT_EQ(comparison.difference(type, text, {&model.things()[0]}), "");
                }
            }
        }
    }
    EXPECT_GT(count, 300'000);
    EXPECT_LT(comparison.skipped, count / 1000);
}

}  // namespace
