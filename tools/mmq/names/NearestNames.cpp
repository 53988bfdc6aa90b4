#include "names/NearestNames.h"

#include <algorithm>
#include <array>
#include <compare>
#include <utility>

namespace mmq {

namespace {

// Longer names than any that people give are not compared letter by letter.
constexpr std::size_t longestName = 200;
constexpr std::size_t mostSuggestions = 3;
constexpr std::size_t shortestBeginning = 3;

std::size_t commonBeginning(std::string_view a, std::string_view b) {
    const std::size_t size = std::min(a.size(), b.size());
    std::size_t length = 0;
    while (length < size && a[length] == b[length]) {
        ++length;
    }
    return length;
}

/// How far a candidate is from a name; the smaller, the nearer.
struct Nearness {
    std::size_t distance = 0;      // whatever the case
    std::size_t caseDistance = 0;  // the case counted
    std::size_t otherLetters = 0;  // behind what both begin with
    std::string_view candidate;

    auto operator<=>(const Nearness& other) const = default;
};

Nearness nearnessOf(std::string_view candidate, std::string_view name,
                    const std::string& lowerName) {
    const std::string lower = lowerCase(candidate);
    return {editDistance(lowerName, lower), editDistance(name, candidate),
            candidate.size() - commonBeginning(lowerName, lower), candidate};
}

// Names differ by at least as many letters as one has more than the other.
std::size_t differenceOfLengths(std::string_view a, std::string_view b) {
    return std::max(a.size(), b.size()) - std::min(a.size(), b.size());
}

bool beginsWith(std::string_view candidate, const std::string& lowerName) {
    return lowerName.size() >= shortestBeginning &&
           lowerCase(candidate.substr(0, lowerName.size())) == lowerName;
}

// The first few, each once. One that is clearly farther than the first is nothing that was meant.
std::vector<std::string> firstOf(std::vector<Nearness> found) {
    std::sort(found.begin(), found.end());
    std::vector<std::string> result;
    for (const Nearness& nearness : found) {
        if (result.size() < mostSuggestions && nearness.distance <= found.front().distance + 1 &&
            (result.empty() || result.back() != nearness.candidate)) {
            result.emplace_back(nearness.candidate);
        }
    }
    return result;
}

}  // namespace

std::string lowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return result;
}

std::string upperCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return result;
}

// The table of distances of all beginnings, of which three lines are kept.
std::size_t editDistance(std::string_view a, std::string_view b) {
    const std::size_t longer = std::max(a.size(), b.size());
    if (longer > longestName) {
        return a == b ? 0 : longer;
    }
    std::array<std::array<std::size_t, longestName + 1>, 3> lines{};
    auto* beforeLast = &lines[0];
    auto* last = &lines[1];
    auto* line = &lines[2];
    for (std::size_t j = 0; j <= b.size(); ++j) {
        (*last)[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        (*line)[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t exchange = (*last)[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            (*line)[j] = std::min({(*last)[j] + 1, (*line)[j - 1] + 1, exchange});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                (*line)[j] = std::min((*line)[j], (*beforeLast)[j - 2] + 1);
            }
        }
        std::swap(beforeLast, last);
        std::swap(last, line);
    }
    return (*last)[b.size()];
}

std::vector<std::string> nearestNames(std::string_view name,
                                      const std::vector<std::string>& candidates) {
    const std::string lowerName = lowerCase(name);
    const std::size_t farthest = std::max<std::size_t>(1, (name.size() + 1) / 3);
    std::vector<Nearness> near;
    std::vector<Nearness> longer;
    for (const std::string& candidate : candidates) {
        const bool mayBeNear = differenceOfLengths(candidate, name) <= farthest;
        const bool isLonger = beginsWith(candidate, lowerName);
        if (candidate == name || !(mayBeNear || isLonger)) {
            continue;
        }
        const Nearness nearness = nearnessOf(candidate, name, lowerName);
        if (nearness.distance <= farthest) {
            near.push_back(nearness);
        } else if (isLonger) {
            longer.push_back(nearness);
        }
    }
    return firstOf(near.empty() ? longer : near);
}

std::string didYouMean(const std::vector<std::string>& names, std::string_view before,
                       std::string_view after) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += i == 0 ? "Did you mean " : i + 1 < names.size() ? ", " : " or ";
        text.append(before).append(names[i]).append(after);
    }
    return text.empty() ? text : text + "?";
}

}  // namespace mmq
