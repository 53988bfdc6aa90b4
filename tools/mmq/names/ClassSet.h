// Sets of the classes that a vocabulary of names numbers.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace mmq {

/// The number of a class in one vocabulary.
using ClassNumber = std::uint32_t;

/// A set of classes: those of the objects that can stand somewhere. A plain value.
class ClassSet {
public:
    void insert(ClassNumber number) {
        if (number / bits >= words_.size()) {
            words_.resize(number / bits + 1);
        }
        words_[number / bits] |= maskOf(number);
    }
    void erase(ClassNumber number) {
        if (number / bits < words_.size()) {
            words_[number / bits] &= ~maskOf(number);
        }
    }
    void insert(const ClassSet& others) {
        words_.resize(std::max(words_.size(), others.words_.size()));
        for (std::size_t i = 0; i < others.words_.size(); ++i) {
            words_[i] |= others.words_[i];
        }
    }

    bool contains(ClassNumber number) const {
        return number / bits < words_.size() && (words_[number / bits] & maskOf(number)) != 0;
    }
    bool contains(const ClassSet& others) const {
        for (std::size_t i = 0; i < others.words_.size(); ++i) {
            if ((others.words_[i] & ~(i < words_.size() ? words_[i] : 0)) != 0) {
                return false;
            }
        }
        return true;
    }
    bool meets(const ClassSet& others) const {
        for (std::size_t i = 0; i < std::min(words_.size(), others.words_.size()); ++i) {
            if ((words_[i] & others.words_[i]) != 0) {
                return true;
            }
        }
        return false;
    }

    bool isEmpty() const { return size() == 0; }
    std::size_t size() const {
        std::size_t count = 0;
        for (const std::uint64_t word : words_) {
            count += static_cast<std::size_t>(std::popcount(word));
        }
        return count;
    }

    /// Some order of sets, for tables.
    friend bool operator<(const ClassSet& left, const ClassSet& right) {
        return left.words_ < right.words_;
    }

    /// Calls `take` for each number, the smallest first.
    template <class Take>
    void forEach(const Take& take) const {
        for (std::size_t i = 0; i < words_.size(); ++i) {
            for (std::uint64_t word = words_[i]; word != 0; word &= word - 1) {
                take(static_cast<ClassNumber>(i * bits +
                                              static_cast<std::size_t>(std::countr_zero(word))));
            }
        }
    }

private:
    static constexpr std::size_t bits = 64;
    static std::uint64_t maskOf(ClassNumber number) { return std::uint64_t{1} << number % bits; }

    std::vector<std::uint64_t> words_;
};

}  // namespace mmq
