// The expressions whose compilation is measured, each in the languages that can say it.
#pragma once

#include <string>
#include <vector>

/// One meaning in several languages; a text is empty where a language cannot say it.
struct ExpressionShape {
    std::string name;
    std::string expression;  // ours, an associated attribute
    std::string xpath;
    std::string lua;  // the body of a function of one object
};

/// The shapes, by growing length.
std::vector<ExpressionShape> expressionShapes();

/// So many comparisons joined by `or`.
ExpressionShape comparisonsShape(int count);
