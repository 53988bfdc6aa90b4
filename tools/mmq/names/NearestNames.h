// The names that a misspelt one may have been meant to be.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mmq {

/// The text with the letters from A to Z made small, or capital.
std::string lowerCase(std::string_view text);
std::string upperCase(std::string_view text);

/// How many letters must be inserted, dropped, exchanged for another, or swapped with their
/// neighbour to make one text the other.
std::size_t editDistance(std::string_view a, std::string_view b);

/// Of the candidates those that `name` may stand for, nearest first, at most three, each once:
/// those in which no more than a third of the letters differ, nor more than one more than in the
/// nearest; where there are none, those that begin with it, if it has three letters. Of two equally
/// near ones that comes first which differs less by case, then that which has fewer letters behind
/// what both begin with, then the first in the order of the alphabet.
std::vector<std::string> nearestNames(std::string_view name,
                                      const std::vector<std::string>& candidates);

/// "Did you mean a, b or c?", each name between two texts; empty where there are none.
std::string didYouMean(const std::vector<std::string>& names, std::string_view before,
                       std::string_view after);

}  // namespace mmq
