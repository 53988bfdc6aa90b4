// The table of the lexer: texts that lead through every state, and along every transition from a
// state by a class of bytes that the table does not tell apart.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "parser/KeywordTable.h"
#include "parser/ParseOutcome.h"
#include "support/Corpus.h"

namespace {

constexpr std::size_t byteCount = 256;

/// Walks the table along texts as the lexer does, and marks which transitions it takes.
class TableWalk {
public:
    /// The numbers of the tokens up to the end of the text, which is one, or up to an error.
    std::vector<int> walk(std::string_view text, int mode) {
        mode_ = static_cast<std::size_t>(mode);
        rest_ = text.substr(0, text.find('\0'));
        isOver_ = false;
        numbers_.clear();
        while (!isOver_) {
            rest_.remove_prefix(mode_ == 0 ? blanksBefore() : 0);
            endLexeme(run());
        }
        return numbers_;
    }

    bool isTaken(std::size_t state, std::size_t byteClass) const {
        return taken_[state][byteClass];
    }
    bool isReached(std::size_t state) const { return reached_[state]; }
    std::size_t classOf(std::size_t byte) const { return classes_[byte]; }

private:
    using Effect = DLGAutomaton::Effect;

    std::size_t blanksBefore() const {
        const std::size_t count = rest_.find_first_not_of(' ');
        return count == std::string_view::npos ? rest_.size() : count;
    }

    // The state in which there is no way on; what is left of the text begins behind the lexeme.
    std::size_t run() {
        std::size_t state = mode_;
        std::size_t length = 0;
        for (; length < rest_.size(); ++length) {
            const auto byte = static_cast<unsigned char>(rest_[length]);
            const std::size_t next = table_.next[state][byte];
            if (next == DLGAutomaton::noState) {
                break;
            }
            taken_[state][classes_[byte]] = true;
            state = next;
            reached_[state] = true;
        }
        lexeme_ = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return state;
    }

    void endLexeme(std::size_t state) {
        const int number = table_.token[state];
        switch (table_.effect[state]) {
            case Effect::word:
                numbers_.push_back(KeywordTable::lookup(lexeme_));
                break;
            case Effect::token:
            case Effect::quoted:
                numbers_.push_back(number);
                break;
            case Effect::action:
                act(number);
                break;
            case Effect::skip:
                break;
            default:
                dropOrEnd();
        }
    }

    void act(int number) {
        static const std::map<int, std::size_t> begun = {{TOKEN_COMMENT_START, 1},
                                                         {TOKEN_STRING_START, 2},
                                                         {TOKEN_ASSOCIATION_START, 3},
                                                         {TOKEN_PATTERN_START, 4}};
        if (const auto mode = begun.find(number); mode != begun.end()) {
            mode_ = mode->second;
        } else if (number == TOKEN_COMMENT_END) {
            mode_ = 0;
        } else if (number == TOKEN_STRING_LITERAL || number == TOKEN_ASSOCIATION_NAME ||
                   number == TOKEN_REGULAR_EXPRESSION) {
            numbers_.push_back(number);
            mode_ = 0;
        } else {
            const std::string_view name = tokenName(number);
            isOver_ = number == TOKEN_STRAY_COMMENT_END ||
                      (mode_ > 1 && (name == "\\n" || name == "\\r" || name == "\\r\\n"));
        }
    }

    // A byte that goes on with nothing is dropped; at the end, ordinary text ends in a token.
    void dropOrEnd() {
        if (!rest_.empty()) {
            rest_.remove_prefix(1);
        } else if (lexeme_.empty()) {
            isOver_ = true;
            if (mode_ == 0) {
                numbers_.push_back(TOKEN_EOF);
            }
        }
    }

    // Bytes whose columns of the table are the same are of one class, named after the first.
    static std::array<std::size_t, byteCount> classesOf(const DLGAutomaton& table) {
        std::array<std::size_t, byteCount> classes{};
        std::map<std::string, std::size_t> known;
        for (std::size_t byte = 0; byte < byteCount; ++byte) {
            std::string column;
            for (const auto& row : table.next) {
                column += static_cast<char>(row[byte]);
            }
            classes[byte] = known.emplace(column, byte).first->second;
        }
        return classes;
    }

    const DLGAutomaton& table_ = DLGLexer::automaton();
    std::array<std::size_t, byteCount> classes_ = classesOf(table_);
    std::array<std::array<bool, byteCount>, DLGAutomaton::maximumStates> taken_{};
    std::array<bool, DLGAutomaton::maximumStates> reached_{};
    std::size_t mode_ = 0;
    std::string_view rest_;
    std::string_view lexeme_;
    bool isOver_ = false;
    std::vector<int> numbers_;
};

struct Input {
    std::string text;
    int mode = 0;
};

// The corpus, and every byte behind what leads into the states in which many bytes go on.
std::vector<Input> inputs() {
    std::vector<Input> inputs;
    for (const CorpusText& row : corpus()) {
        inputs.push_back({row.text});
    }
    const std::vector<Input> beginnings = {
        {"\r"},      {"_"},   {"a"},    {"1"},     {"1.5"},   {"~<"},     {"|="},
        {"(*"},      {"(*a"}, {"(* *"}, {"\""},    {"\"\\n"}, {"\"\\na"}, {"\"\\"},
        {"\"\\n\r"}, {"["},   {"[\\n"}, {"[\\na"}, {"[\\"},   {"[\\n\r"}, {"`"},
        {"`a"},      {"`\r"}, {"", 4},  {"a", 4},  {"\r", 4}};
    for (const Input& beginning : beginnings) {
        for (std::size_t byte = 1; byte < byteCount; ++byte) {
            inputs.push_back({beginning.text + static_cast<char>(byte), beginning.mode});
        }
    }
    return inputs;
}

std::vector<int> numbersOf(const ScanOutcome& outcome) {
    std::vector<int> numbers;
    for (const TokenPtr& token : outcome.tokens) {
        numbers.push_back(token->getNumber());
    }
    return numbers;
}

TEST(Automaton, EveryTransitionIsTaken) {
    TableWalk walk;
    for (const Input& input : inputs()) {
        ASSERT_EQ(walk.walk(input.text, input.mode), numbersOf(scan(input.text, input.mode)))
            << input.text;
    }
    const DLGAutomaton& table = DLGLexer::automaton();
    std::size_t count = 0;
    for (std::size_t state = 0; state < DLGAutomaton::maximumStates; ++state) {
        EXPECT_TRUE(walk.isReached(state) || table.effect[state] == DLGAutomaton::Effect::invalid)
            << "state " << state;
        for (std::size_t byte = 0; byte < byteCount; ++byte) {
            const bool isFirst = walk.classOf(byte) == byte;
            if (isFirst && table.next[state][byte] != DLGAutomaton::noState) {
                ++count;
                EXPECT_TRUE(walk.isTaken(state, byte))
                    << "from state " << state << " by byte " << byte << " to state "
                    << static_cast<int>(table.next[state][byte]);
            }
        }
    }
    EXPECT_GT(count, 300U);
}

}  // namespace
