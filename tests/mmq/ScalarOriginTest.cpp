// Places in rules files: whatever the style in which YAML holds a text, each of its characters is
// found where it stands in the file.
#include "lint/ScalarOrigin.h"

#include <gtest/gtest.h>
#include <yaml-cpp/yaml.h>

#include <random>
#include <string>
#include <vector>

namespace {

using mmq::SourceFile;

// What the file has at the place of each character that is no white space, or the escape there.
std::string readBack(const std::string& file, const std::string& key) {
    const YAML::Node node = YAML::Load(file)[key];
    const std::string text = node.Scalar();
    const auto source = std::make_shared<const SourceFile>("file", file);
    const mmq::TextOrigin origin =
        mmq::originOfScalar(source, static_cast<std::size_t>(node.Mark().pos), text);
    EXPECT_EQ(origin.offsets.size(), text.size() + 1);
    std::string found;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t at = origin.offsets[i];
        // What continues a character is placed at its first byte.
        const bool isSkipped = text[i] == ' ' || text[i] == '\n' || text[i] == '\t' ||
                               (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U;
        found += isSkipped ? text[i] : at < file.size() ? file[at] : '?';
    }
    return found == text ? "" : "\"" + text + "\" was found as \"" + found + "\" in\n" + file;
}

TEST(ScalarOrigin, FindsEachCharacterInEveryStyle) {
    const std::vector<std::string> files = {
        "a: plain text\n",
        "a: plain text\n  over\n\n  lines # and a comment\n",
        "{a: &anchor  anchored, b: 1}",
        "a: 'single '' quoted\n\n  '' text'\n",
        "a: \"double quoted\\n\\t\\x20text\n   over\\\n   lines\"\n",
        "a: |\n  literal # \"text\n    indented\n\n  'end\n",
        "a: >2-\n    indented\n  folded\n  text\n\n\n  end\n",
        "a: |+  # a comment\r\n    over\r\n\r\n    lines\r\n",
        "k:\n  - a\na:\n  é ü\n  €\n",
    };
    for (const std::string& file : files) {
        EXPECT_EQ(readBack(file, "a"), "");
    }
    // An escape stands for its character, all bytes of it.
    const std::string escaped = R"(a: "x\u20ac\"y")";
    const auto source = std::make_shared<const SourceFile>("file", escaped);
    EXPECT_EQ(mmq::originOfScalar(source, 3, "x\xE2\x82\xAC\"y").offsets,
              (std::vector<std::size_t>{4, 5, 5, 5, 11, 13, 14}));
}

TEST(ScalarOrigin, FindsEachCharacterOfRandomTexts) {
    const std::string letters = "ab'\"\\`|>&#:{}[]$ \n";
    std::mt19937 random(1);  // NOLINT(bugprone-random-generator-seed): the same texts each time
    for (int round = 0; round < 2000; ++round) {
        std::string text = "x";
        for (std::size_t length = random() % 30; length > 0; --length) {
            text += letters[random() % letters.size()];
        }
        // A literal block shows the text as it is, with one more blank on each line; a quoted one
        // doubles its quotes.
        std::string block = "a: |2-\n  ";
        std::string quoted = "a: '";
        for (const char byte : text) {
            block += byte == '\n' ? std::string("\n  ") : std::string(1, byte);
            quoted += byte == '\n'   ? std::string(" ")
                      : byte == '\'' ? std::string("''")
                                     : std::string(1, byte);
        }
        EXPECT_EQ(readBack(block + "\n", "a"), "");
        EXPECT_EQ(readBack(quoted + "'\n", "a"), "");
    }
}

}  // namespace
