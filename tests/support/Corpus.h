// Texts of all kinds for tests, fuzzers and benchmarks that need many different expressions.
#pragma once

#include <string>
#include <vector>

/// What becomes of a text.
enum class CorpusOutcome {
    condition,    ///< compiles as a condition, and so as an attribute
    attribute,    ///< compiles as an attribute alone
    association,  ///< compiles as an association alone
    otherType,    ///< type checks, with a type that none of the three may have
    typeError,    ///< parses, and has type errors of its own
    syntaxError,  ///< does not parse
    exception     ///< ends with the one error of an exception
};

struct CorpusText {
    std::string text;
    CorpusOutcome outcome;
};

/// Some 400 expressions: every construct, every built-in function, every kind of error, odd white
/// space, bytes from 128 up, long names, deep nesting, cyclic paths. They speak of the attributes
/// name, type, v and w, of the associations a, b, c and parameter, and of the classes Node, Leaf,
/// Operation and Parameter. Made on the first call.
const std::vector<CorpusText>& corpus();
