// What a pattern would cost the engine, estimated before the engine sees it.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

/// Weighs a pattern by what the engine makes of it: the pieces of which it consists, each as often
/// as repetitions repeat it, and the square of those that may be absent, since the engine looks
/// from each of these to all that follow. A unit is some 2 microseconds.
///
/// The pattern need not be well formed. Made on the stack for one pattern, which it borrows.
class PatternWeight {
public:
    /// The weight of a pattern; one that weighs more than `highest` is not weighed to the end.
    /// Throws std::bad_alloc.
    static std::size_t of(std::string_view pattern, std::size_t highest);

private:
    /// What stands between two places of the pattern, written out.
    struct Extent {
        std::size_t pieces = 0;
        std::size_t optional = 0;

        std::size_t weight() const { return pieces + optional * optional / 1024; }
        void add(const Extent& other);
        void repeat(std::size_t least, std::size_t most);
    };
    /// A group that is still open: what stands before the piece read last, and that piece.
    struct Group {
        Extent before;
        Extent last;
    };

    explicit PatternWeight(std::string_view pattern) : pattern_(pattern), groups_(1) {}

    std::size_t least() const;
    void readPiece();
    void add(std::size_t pieces);
    void closeGroup();
    void readClass();
    void readRepetition();
    std::size_t takeEscape();

    std::string_view pattern_;
    std::size_t place_ = 0;  // of the next byte
    std::vector<Group> groups_;
};
