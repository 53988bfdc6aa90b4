// Expressions written by hand, with the value or the kind of failure that each must have on the
// small model: what an implementation is most likely to get wrong.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "evaluation/Comparison.h"

namespace {

/// An expression and what it must yield on an object: the value as Outcome writes it, without its
/// letter; "!" and a piece of the sentence for a failure; "limit".
struct EdgeRow {
    TypeLetter type;
    std::string text;
    std::string expected;
    std::string object = "r1";
};

void check(const std::vector<EdgeRow>& rows) {
    const SmallModel model;
    MMEvaluationContext context(model.view());
    for (const EdgeRow& row : rows) {
        SCOPED_TRACE(row.text + " on " + row.object);
        const CompiledText compiled(row.type, row.text);
        ASSERT_EQ(compiled.errors(), "");
        const Thing& object = model.at(row.object);
        const Outcome got = compiled.evaluate(context, object);
        if (row.expected == "limit") {
            EXPECT_EQ(got.kind, Outcome::Kind::limit) << got.text;
            continue;
        }
        if (row.expected[0] == '!') {
            EXPECT_EQ(got.kind, Outcome::Kind::failure);
            EXPECT_NE(got.text.find(row.expected.substr(1)), std::string::npos) << got.text;
        } else {
            EXPECT_EQ(got.kind, Outcome::Kind::value);
            EXPECT_EQ(got.text, row.type + (":" + row.expected));
        }
        const Outcome naive = naiveOutcome(model, row.text, object);
        EXPECT_TRUE(naive == got || naive.kind == Outcome::Kind::limit)
            << "the naive evaluator: " << naive.text;
    }
}

TEST(Edges, Numbers) {
    check({
        {'I', "2147483646 + 1", "2147483647"},
        {'I', "2147483647 + 1", "!out of the range"},
        {'I', "- 2147483647 - 1", "-2147483648"},
        {'I', "- 2147483647 - 2", "!out of the range"},
        {'I', "65536 * 32768", "!out of the range"},
        {'I', "65536 * - 32768", "-2147483648"},
        {'I', "- integer $v", "!out of the range", "l4"},
        {'I', "integer $v / -1", "!out of the range", "l4"},
        {'I', "integer $v * -1", "!out of the range", "l4"},
        {'I', "integer $v / 1", "-2147483648", "l4"},
        {'I', "- 7 / 2 + 7 / - 2", "-6"},
        {'I', "7 / 0", "!zero"},
        {'I', "0 / 0", "!zero"},
        {'I', "2 + 3 * 4 - 100 / 10 / 2 - - 1", "10"},
        {'R', "1.0 / 0.0", "inf"},
        {'R', "- 1.0 / 0.0", "-inf"},
        {'R', "0.0 / 0.0", "nan"},
        {'R', "- 0.0", "-0"},
        {'R', "0.0 - 0.0", "0"},
        {'R', "0.1 + 0.2", "0.30000000000000004"},
        {'S', "string 2.0 + string 3000000000.0 + string (1.0 / 0.0)", "23e+09inf"},
        {'B', "0.0 = - 0.0 and 0.0 / 0.0 <> 0.0 / 0.0", "true"},
        {'B', "0.0 / 0.0 = 0.0 / 0.0 or 0.0 / 0.0 >= 1.0 or 0.0 / 0.0 <= 1.0", "false"},
    });
}

TEST(Edges, TextOfNaN) { check({{'S', "string (0.0 / 0.0)", "nan"}}); }

TEST(Edges, Conversions) {
    const std::string zeros(400, '0');
    const std::string nines(400, '9');
    check({
        {'R', "real \"infinity\"", "!\"infinity\" is not a real."},
        {'R', "real \"-NAN(0)\"", "!\"-NAN(0)\" is not a real."},
        {'I', "integer 2147483647.9", "2147483647"},
        {'I', "integer 2147483648.0", "!2147483648"},
        {'I', "integer (- 2147483648.9)", "-2147483648"},
        {'I', "integer (- 2147483649.0)", "!-2147483649"},
        {'I', "integer (1.0 / 0.0)", "!inf"},
        {'I', "integer (0.0 / 0.0)", "!nan"},
        {'I', "integer \"+9\" + integer \"-0\" + integer \"007\"", "16"},
        {'I', "integer \"-2147483648\"", "-2147483648"},
        {'I', "integer \"2147483648\"", "!\"2147483648\""},
        {'I', "integer \"--1\"", "!\"--1\""},
        {'I', "integer \"+-1\"", "!\"+-1\""},
        {'I', "integer \"+\"", "!\"+\""},
        {'I', "integer \" 5\"", "!\" 5\""},
        {'I', "integer \"5 \"", "!\"5 \""},
        {'I', "integer \"1.0\"", "!\"1.0\""},
        {'I', "integer \"1e3\"", "!\"1e3\""},
        {'I', "integer \"0x10\"", "!\"0x10\""},
        {'I', "integer $none", "!\"\""},
        {'R', "real 2147483647", "2147483647"},
        {'R', "real \"1e3\" + real \"+2.5\"", "1002.5"},
        {'R', "real \"-1E+2\"", "-100"},
        {'R', "real \"-0\"", "-0"},
        {'R', "real string (1.0 / - 0.0)", "-inf"},
        {'R', "real \"nan\"", "nan"},
        {'R', "real \"1e-400\" - real \"+inf\"", "-inf"},
        {'R', "real (\"0.\" + string 1 + \"e-999999999999999999999\")", "0"},
        {'R', "real \"1e-99999999999999999999\"", "0"},
        {'R', "real \"0." + zeros + "1e50\"", "0"},
        {'R', "real \"" + nines + "e-50\"", "! is out of range."},
        {'R', "real \"1e400\"", "!\"1e400\""},
        {'R', "real \"1e\"", "!\"1e\""},
        {'R', "real \"e3\"", "!\"e3\""},
        {'R', "real \".\"", "!\".\""},
        {'R', "real \"0x10\"", "!\"0x10\""},
        {'R', "real \"+-1\"", "!\"+-1\""},
        {'R', "real \" 1\"", "!\" 1\""},
        {'R', "real \"1f\"", "!\"1f\""},
        {'R', "real \"\"", "!\"\""},
        {'R', "real \"infinity\"", "!\"infinity\""},
        {'R', "real \"nan(1)\"", "!\"nan(1)\""},
        {'R', "real \"1e999\"", "!\"1e999\""},
        {'B', "boolean \"True\"", "!\"True\""},
        {'B', "boolean \"1\"", "!\"1\""},
        {'B', "boolean \"true \"", "!\"true \""},
        {'B', "boolean 0 or boolean 0.0 or boolean (- 0.0) or boolean \"false\"", "false"},
        {'B', "boolean (- 1) and boolean 0.1 and boolean (0.0 / 0.0) and boolean \"true\"", "true"},
    });
}

TEST(Edges, Texts) {
    check({
        {'B', "\"Z\" < \"a\" and \"a\" < \"\xc3\xa9\" and \"\" < \"a\" and \"10\" < \"9\"", "true"},
        {'S', "tolower \"A\xc3\x89Z\" + toupper \"a\xc3\xa9z\"", "a\xc3\x89zA\xc3\xa9Z"},
        {'S', "trim $w", "pad", "l2"},
        {'S', "trim \" \" + trim \"\xc2\xa0\"", "\xc2\xa0"},
        {'S', "escape $w", R"(a\\b\r\nc)", "n3"},
        {'S', "escape $w", "\xc3\xa9\\t\\\"q\\\"", "n2"},
        {'S', R"(escape "\r")", "\r"},
        {'S', "escape $w", "a", "o2"},
        {'S', "$w", {"a\0b", 3}, "o2"},
        {'S', "delim (\"--\", map { $name } over [a]) + concat map { $v } over [a]",
         "one--two-512"},
        // patterns
        {'B', "match (`b`, \"abc\") and not match (`^b`, \"abc\") and match (`^$`, \"\")", "true"},
        {'B', "\"abc\" ~= \"b\" and \"abc\" ~<> \"^b\" and \"b\" ~<> \"abc\"", "true"},
        {'B', "\"a\" ~= \"(\"", "!("},
        {'B', "\"a\" ~<> \"(\"", "!("},
        {'S', "find (`a+`, \"baac\") + find (`x`, \"baac\")", "aa"},
        {'S', "replace (`a`, \"baac\", \"x\") + replace (`x`, \"b\", \"y\")", "bxacb"},
        {'S', "replace (`a*`, \"baac\", \"x\")", "xbaac"},
        {'S', "replace_all (`a*`, \"baac\", \"x\")", "xbxcx"},
        {'S',
         "let a = \"ab,ab,ab,ab,\" in let b = a + a + a + a + a + a + a + a in "
         "let c = b + b + b + b + b + b + b + b in let d = c + c + c + c + c + c + c + c in "
         "let e = d + d + d + d + d + d + d + d in let f = e + e + e + e + e + e + e + e + e + e "
         "in "
         "find (`^.{6}`, replace_all (`,`, f, \";\"))",
         "ab;ab;"},
        {'S', "replace_all (`^a`, \"aaa\", \"x\")", "xaa"},
        {'S', "replace_all (`\\b`, \"ab c\", \"|\")", "|ab| |c|"},
        {'S', "replace_all (``, \"n\xc3\xa9\", \"-\")", "-n-\xc3\xa9-"},
        {'S', "replace_all (`.`, \"\xc3\xa9\", \"x\")", "x"},
        {'S', R"(replace_all (`(a)(b)?`, "abac", "<\\1\\2\\0>"))", "<abab><aa>c"},
        {'S', R"(replace_all (`b`, "abc", "\\\\0\\9\\x\\"))", R"(a\0\x\c)"},
    });
}

TEST(Edges, NoObjectAndEmptyCollections) {
    check({
        {'S', "$none + attribute (\"\", this)", ""},
        {'S', "$v of first [none] + attribute (\"v\", only [none])", ""},
        {'S', "class object [none] + uid object [none]", ""},
        {'S', "opSig first [none]", "<<object is not an Operation; actual class of object is >>"},
        {'B', "first [none] = only [none] and first [none] <> this", "true"},
        {'C', "let x = first [none] in x -> [a]", ""},
        {'I', "size [none]", "0"},
        {'S', "comma map { string (1 / 0) } over [none] + $v of [none]", ""},
        {'S', "attribute (string (1 / 0), [none])", ""},
        {'S', "attribute (string (1 / 0), [b])", "!zero"},
        {'C', "sort { 1 / 0 } over reverse unique [none]", ""},
        {'C', "filter { 1 / 0 = 1 } over traverse { [a] } over [none]", ""},
        {'B', "for_all x in [none] => 1 / 0 = 1", "true"},
        {'B', "there_exists x in [none] => 1 / 0 = 1", "false"},
        {'B', "[none] = [none] and [none] <= [none] and [none] < [a] and [a] > [none]", "true"},
        {'B', "[none] < [none] or [none] > [none] or [none] <> [none]", "false"},
    });
}

TEST(Edges, Objects) {
    check({
        {'S', "uid model", "r2", "l4"},
        {'C', "model -> [a]", "n3", "o2"},
        {'C', "filter { model = this } over [a]", "n1 n2"},
        {'C', "filter { uid model = \"r1\" } over all \"Leaf\"", "", "r2"},
        {'S', "opSig this", "open(mode : Mode, flags : <<unspecified>>) : void", "o1"},
        {'S', "opSig this", "close() : Status", "o2"},
        {'S', "comma map { opSig current } over [a]",
         "<<object is not an Operation; actual class of object is Leaf>>, "
         "<<object is not an Operation; actual class of object is Leaf>>",
         "n3"},
        {'S', "uid only [b] + uid object [b] + uid first [a]", "r1r1n1"},
        {'S', "uid only [a]", "!more than one"},
        {'S', "uid object [a]", "!more than one"},
        {'S', "uid only traverse { this -> [b] } over [a]", "!more than one"},
        {'S', "uid (if false then this else first [a])", "n1"},
        {'B', "for_all x in [a] => x = current and current <> this", "true"},
        {'B', "for_all x in [a] => there_exists y in [b] => current = y and y <> x", "true"},
    });
}

TEST(Edges, Collections) {
    check({
        {'S', "$v of traverse { [a] } over [a]", "12, 7, 12, 2.5"},
        {'I', "size traverse { [a] } over [a]", "4"},
        {'C', "unique traverse { [a] } over [a]", "n2 r1 l1"},
        {'C', "unique_stable reverse traverse { [a] } over [a]", "l1 n2 r1"},
        {'B', "traverse { this -> [a] } over [a] = reverse [a]", "true"},
        {'B', "[a] < [a] or [a] > [a] or [b] < [a] or [b] <= [a] or [a] <> [a]", "false"},
        {'B', "[a] <= [a] and [a] >= [a] and [a] <> [b]", "true"},
        {'C', "all \"Leaf\"", "l1 l2 l3 l4"},
        {'C', "if 1 = 2 then [a] else [b]", "r1"},
        {'S', "comma (if true then map { $v } over [a] else map { $w } over [a])", "-5, 12"},
        {'S', "comma map { $name + comma map { $name } over [b] } over [a]",
         "oneleaf, leaf, twoone"},
        // sorting: stable, a total order, every key its own variable
        {'C', "sort { $name } over all \"Leaf\"", "l3 l1 l2 l4"},
        {'C', "sortd { $name } over all \"Leaf\"", "l4 l1 l2 l3"},
        {'C', "sort { $name } & sortd { uid current } over all \"Leaf\"", "l3 l2 l1 l4"},
        {'C', "sort { $name = \"leaf\" } over all \"Leaf\"", "l3 l4 l1 l2"},
        {'C', "sort { integer $v } over all \"Operation\"", "!\"abc\""},
        {'C', "sort { 1 / 0 } over [b]", "!zero"},
        {'C', "sort { 0.0 / real size [b] } over all \"Leaf\"", "l1 l4 l2 l3"},
        {'C', "sortd { 0.0 / real size [b] } over all \"Leaf\"", "l2 l3 l1 l4"},
        {'C', "sort { there_exists x in [b] => uid x = \"r1\" } over all \"Leaf\"", "l2 l3 l4 l1"},
        {'C', "filter { there_exists x in [b] => x = this } over [a]", "n2", "n1"},
    });
}

TEST(Edges, Laziness) {
    // 1 / (12 - integer $v) fails for n2, the second of [a].
    check({
        {'B', "false and 1 / 0 = 0 or true", "true"},
        {'B', "true or 1 / 0 = 0", "true"},
        {'B', "false implies 1 / 0 = 0", "true"},
        {'B', "1 / 0 = 0 and false", "!zero"},
        {'B', "1 / 0 = 0 or true", "!zero"},
        {'B', "false implies false implies false", "true"},
        {'I', "if true then 1 else 1 / 0", "1"},
        {'S', "\"a\" |=> string (1 / 0)", "a"},
        {'S', "\"\" |=> string (1 / 0)", "!zero"},
        {'S', "if false then \"a\" else \"\" |=> \"z\"", "z"},
        {'S', "uid first filter { 1 / (12 - integer $v) = 0 } over [a]", "n1"},
        {'S', "uid first unique [a] { 1 / (12 - integer $v) = 0 }", "n1"},
        {'S', "uid first traverse { [a] } over [a] { 1 / (12 - integer $v) = 0 }", "n2"},
        {'S', "uid first (if true then [a] { 1 / (12 - integer $v) = 0 } else [a])", "n1"},
        {'B', "there_exists x in [a] { 1 / (12 - integer $v) = 0 } => true", "true"},
        {'B', "for_all x in [a] => 1 / (12 - integer $v of x) <> 0", "false"},
        {'B', "for_all x in [a] => 1 / (12 - integer $v) = 0", "!zero"},
        {'S', "uid only filter { 1 / (12 - integer $v) = 0 } over [a]", "!zero"},
        {'I', "size filter { 1 / (12 - integer $v) = 0 } over [a]", "!zero"},
        {'S', "uid first reverse filter { 1 / (12 - integer $v) = 0 } over [a]", "!zero"},
        {'S', "uid first sort { 1 / (12 - integer $v) } over [a]", "!zero"},
        {'B', "[b] < [a] { 1 / (12 - integer $v) = 0 }", "!zero"},
        {'S', "let x = [a] { 1 / (12 - integer $v) = 0 } in uid first x", "!zero"},
    });
}

TEST(Edges, Lets) {
    check({
        {'I', "let x = 1 / 0 in 2", "2"},
        {'I', "let x = 1 / 0 in if true then 3 else x", "3"},
        {'I', "let x = 1 / 0 in x", "!zero"},
        {'I', "let x = 1 in let x = x + 1 in x * 10", "20"},
        {'I', "let x = 1 in (let x = 5 in x) + x", "6"},
        {'I', "let size = 3 in size [a] + size", "5"},
        {'S', "let x = $name in comma map { x + $name } over [a]", "rootone, roottwo"},
        {'S', "comma map { let x = $name in x + x } over [a]", "oneone, twotwo"},
        {'S', "comma map { let x = $v in if x = \"-5\" then \"\" else x } over [a]", ", 12"},
        {'S', "let x = [a] in let y = map { $name } over x in comma y + delim (\"-\", y)",
         "one, twoone-two"},
        {'C', "[a] { let x = $v in x = $v and integer x > 0 }", "n2"},
        {'C', "let x = first [a] in x -> [a] { x <> current }", "n2 r1"},
        // a condition that reaches itself: each evaluation has variables of its own
        {'C', "l: [a] { let x = uid current in x <> \"\" and size @l >= 0 and x = uid current }",
         "p1", "o1"},
        {'C', "l: [a] { size @l = 0 }", "", "o1"},
        {'C', "l: [a] { size @l < 2 }", "p1", "o1"},
        {'C', "l: [a] { size @l >= 0 }", "limit", "l3"},
    });
}

TEST(Edges, Paths) {
    check({
        {'C', "[a]", "n1 n2"},
        {'C', "[a] -> [b]", "l1 l2 n1"},
        {'C', "[a] { uid current = \"n2\" } -> [b]", "n1"},
        {'C', "[a] { there_exists x in [b] => x = this }", "n2", "n1"},
        {'C', "this -> ([b]; [a]; [b]) ", "r1 n1 n2"},
        {'C', "this -> ([c]; [a]) -> [a]", "p1 n2 r1 l1"},
        // marks: the result and its order
        {'C', "^[a] -> [b]", "n1 n2 l1 l2"},
        {'C', "^_[a] -> [b]", "n1 l1 l2 n2"},
        {'C', "[a] -> ^[a] -> [b]", "n2 r1 l1 n1"},
        {'C', "_[a] -> ^[a] -> [b]", "n2 n1 r1 l1"},
        {'C', "^[a] -> _[a] -> [b]", "n1 n2 r1"},
        // labels
        {'C', "l: [a] -> @l", ""},
        {'C', "l: ^[a] -> @l", "n1 n2 r1 l1"},
        {'C', "l: ^_[a] -> @l", "n1 n2 l1 r1"},
        {'C', "l: ^[a] -> @l", "n2 r1 l1 n1", "n1"},
        {'C', "l: ^[a] -> @l", "l3", "l3"},
        {'C', "l: ^[a] { $v > \"0\" } -> @l -> [b]", "n2 l1"},
        {'C', "@l -> l: [b]", "r1"},
        {'C', "this -> (@m; [a]) -> m: [b]", "r1 l1 l2 n1"},
        {'C', "this -> ([a]; @m) -> m: [b]", "r1 l1 l2 n1"},
        {'C', "this -> (l: [a]; @l)", "n1 n2"},
        {'C', "this -> (l: ^[a]; ^[c]) -> @l", "n1 n2 o1 r1 l1 p1 p2"},
        {'C', "this -> ([c]; l: ^[a]) -> @l", "n1 n2 p1 r1 l1 p2"},
        {'C', "l: [a] { size l: [b] > 1 }", "n1"},
    });
}

}  // namespace
