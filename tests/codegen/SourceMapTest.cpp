// Where in the text the targets of a compilation came from: each part as "LINE:COLUMN TEXT TARGET",
// operands first.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "codegen/SourceMap.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

std::string className(const OrvCyclicPtrBody& target) {
    const std::string printed = printedTarget(dynamic_cast<const MMTarget&>(target));
    return printed.substr(0, printed.find('('));
}

std::vector<std::string> partsOf(const std::string& text, const SourceMap& map) {
    std::vector<std::string> parts;
    for (const SourceMap::Part& part : map.getParts()) {
        const SourceSpan& span = part.span;
        parts.push_back(std::to_string(span.line) + ":" + std::to_string(span.column) + " " +
                        text.substr(span.offset, span.endOffset - span.offset) + " " +
                        className(*part.target));
    }
    return parts;
}

struct Row {
    const char* text;
    std::vector<std::string> parts;
};

const Row rows[] = {
    {" $ name", {"1:4 name MMConstantExpr", "1:2  v1", "1:2 $ name MMAttrExpr"}},
    {"(1 +\n\t2) * (3)",
     {"1:2 1 MMConstantExpr", "2:9 2 MMConstantExpr", "1:4 (1 +\n\t2) MMArithmeticExpr",
      "2:15 (3) MMConstantExpr", "2:12 (1 +\n\t2) * (3) MMArithmeticExpr"}},
    {"size (all \"A\") > -1",
     {"1:11 \"A\" MMConstantExpr", "1:7 (all \"A\") MMAllInstancesExpr",
      "1:1 size (all \"A\") MMCountExpr", "1:19 1 MMConstantExpr", "1:18 -1 MMArithmeticExpr",
      "1:16 size (all \"A\") > -1 MMRelationalExpr"}},
    {"for_all x in a: ^[p q]{$b = \"\"} -> @a => x = x",
     {"1:18 [p q] t1=MMAssociationTraversal", "1:25 b MMConstantExpr", "1:24  v1",
      "1:24 $b MMAttrExpr", "1:29 \"\" MMConstantExpr", "1:27 $b = \"\" MMRelationalExpr",
      "1:14 a: ^[p q]{$b = \"\"} -> @a MMAssociationExpr", "1:42 x v1", "1:46 x v1",
      "1:44 x = x MMObjectEqualityExpr",
      "1:1 for_all x in a: ^[p q]{$b = \"\"} -> @a => x = x MMAllExpr"}},
    {"let u = 1 in $a |=> \"b\"",
     {"1:15 a MMConstantExpr", "1:14  v1", "1:14 $a MMAttrExpr", "1:1 let u = 1 in $a MMAttrExpr",
      "1:21 \"b\" MMConstantExpr", "1:17 let u = 1 in $a |=> \"b\" MMLetValueExpr"}},
};

TEST(SourceMap, KnowsEveryPart) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        RecordingDialogs dialogs;
        SourceMap map;
        const auto compiled = ExprParser::parseMappedAssociatedAttribute(dialogs, row.text, map);
        ASSERT_TRUE(compiled);
        EXPECT_EQ(partsOf(row.text, map), row.parts);
    }
}

// A map is of the last compilation; what a short-cut compiles without a map is shown no message
// with one.
TEST(SourceMap, BelongsToOneCompilation) {
    RecordingDialogs dialogs;
    SourceMap map;
    const auto name = ExprParser::parseMappedAssociatedAttribute(dialogs, "$a", map);
    ASSERT_TRUE(name);
    EXPECT_TRUE(dialogs.messages.empty());
    const OrvCyclicPtrBody* const target = map.getParts().back().target;
    ASSERT_NE(map.find(*target), nullptr);
    EXPECT_EQ(map.find(*target)->endOffset, 2U);
    EXPECT_EQ(map.find(*name), nullptr);
    EXPECT_TRUE(ExprParser::parseMappedAssociatedAttribute(dialogs, "$map", map));
    EXPECT_FALSE(map.getRoot());
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_FALSE(ExprParser::parseMappedCondition(dialogs, "1", map));
    EXPECT_EQ(map.find(*target), nullptr);
    EXPECT_TRUE(map.getParts().empty());
    EXPECT_FALSE(map.getRoot());
}

}  // namespace
