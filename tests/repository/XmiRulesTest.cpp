// How XMI documents become objects, rule by rule, and what expressions see of them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "repository/ModelDump.h"
#include "repository/ModelReader.h"

namespace {

const std::string spaces =
    R"(xmlns:xmi="http://www.omg.org/XMI" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")";

struct DocumentRow {
    const char* name;
    std::string document;
    const char* expected;
};

void PrintTo(const DocumentRow& row, std::ostream* out) { *out << row.name; }

class XmiDocument : public testing::TestWithParam<DocumentRow> {};

TEST_P(XmiDocument, BecomesObjects) {
    EXPECT_EQ(dump(*readModelText(GetParam().document, "doc")), GetParam().expected);
    EXPECT_EQ(dump(*readInPieces(GetParam().document)), GetParam().expected);
}

const std::vector<DocumentRow> rootRows{
    {"TheXmiElementIsNoObject", xmi(R"(<uml:A/><uml:B xmi:id="b"/>)"), "A / | B b"},
    {"AnEmptyXmiElement", xmi(""), ""},
    {"XmiOfTheDefaultNamespace", R"(<XMI xmlns="http://schema.omg.org/spec/XMI/2.1"><a:A
        xmlns:a="a"/></XMI>)",
     "A /"},
    {"XmiOfAnOlderNamespace", R"(<x:XMI xmlns:x="http://schema.omg.org/spec/XMI/2.0"><a/></x:XMI>)",
     "a /"},
    {"XmiOfNoNamespaceIsAnObject", "<XMI n='1'/>", "XMI / n=1"},
    {"AnotherVersionOfTheNamespaceIsNone",
     R"(<x:XMI xmlns:x="http://schema.omg.org/spec/XMI/1.9"><a b='1'/></x:XMI>)",
     "XMI / a->//@a.0 | A //@a.0 b=1"},
    {"AnyOtherElementIsTheRoot", "<m:Model xmlns:m='m' name='x'/>", "Model / name=x"},
    {"XmiElementsAreSkipped",
     xmi(R"(<xmi:Documentation a='1'><b/></xmi:Documentation><uml:A xmi:id="a">
        <xmi:Extension><b c='1'/></xmi:Extension><b xmi:id="b"/></uml:A>)"),
     "A a b->b | B b"},
    {"SkippedElementsAreNoChildren",
     xmi(R"(<uml:A xmi:id="a"><r href="f#x"><xmi:Extension/></r></uml:A>)"), "A a"},
    {"APrefixMayBeDeclaredOnItsElement",
     R"(<a id="a"><t><x:Extension xmlns:x="http://www.omg.org/XMI"/></t></a>)",
     "a a id=a t->//@t.0 | T //@t.0"},
    {"AnInnerDeclarationHidesTheOuter",
     xmi(R"(<uml:A xmi:id="a"><b xmlns:xmi="other" xmi:id="b"/><b xmi:id="c"/></uml:A>)"),
     "A a b->//@b.0,c | B //@b.0 id=b | B c"},
};
INSTANTIATE_TEST_SUITE_P(Roots, XmiDocument, testing::ValuesIn(rootRows));

const std::vector<DocumentRow> childRows{
    {"AnHrefWithoutChildrenIsAReference", xmi(R"(<uml:A xmi:id="a"><b href="#a"/></uml:A>)"),
     "A a b->a"},
    {"AnHrefWithChildrenIsAnObject",
     xmi(R"(<uml:A xmi:id="a"><b href="f.xml" xmi:id="b"><c k='1' xmi:id="c"/></b></uml:A>)"),
     "A a b->b | B b href=f.xml c->c | C c k=1"},
    {"AnIdrefIsAReference", xmi(R"(<uml:A xmi:id="a"><b xmi:idref="a"><c d='1'/></b></uml:A>)"),
     "A a b->a"},
    {"NilIsNothing", xmi(R"(<uml:A xmi:id="a"><b xsi:nil="true" x='1'><c d='1'/></b></uml:A>)"),
     "A a"},
    {"NotNilIsAnObject", xmi(R"(<uml:A xmi:id="a"><b xsi:nil="false" xmi:id="b"/></uml:A>)"),
     "A a b->b | B b"},
    {"TextIsAValueAsItStands", xmi("<uml:A xmi:id='a'><body> x &lt; y\r\n </body></uml:A>"),
     "A a body= x < y\n "},
    {"TextIsJoinedOverComments",
     xmi("<uml:A xmi:id='a'><body>x<!-- no --> y<![CDATA[ & <z>]]></body></uml:A>"),
     "A a body=x y & <z>"},
    {"TextIsAValueBesideSkippedElements",
     xmi("<uml:A xmi:id='a'><body>x<xmi:Extension><b c='1'/></xmi:Extension></body></uml:A>"),
     "A a body=x"},
    {"SeveralTextsAreSeveralValues",
     xmi("<uml:A xmi:id='a' body='0'><body>1</body><b/><body>2</body></uml:A>"),
     "A a body=0, 1, 2 b->//@b.0 | B //@b.0"},
    {"WhiteSpaceIsNoText", xmi("<uml:A xmi:id='a'><b>\n </b></uml:A>"), "A a b->//@b.0 | B //@b.0"},
    {"TextBesideAttributesIsNoValue", xmi("<uml:A xmi:id='a'><b xmi:id='b'>text</b></uml:A>"),
     "A a b->b | B b"},
    {"AnEmptyElementIsAnObject", xmi("<uml:A xmi:id='a'><eTypeArguments/></uml:A>"),
     "A a eTypeArguments->//@eTypeArguments.0 | EGenericType //@eTypeArguments.0"},
    {"ContainersOfTheSameClassNest",
     xmi("<uml:P xmi:id='p'><n xmi:type='uml:P' xmi:id='q'><n xmi:type='uml:P' xmi:id='r'/></n>"
         "<n xmi:type='uml:P' xmi:id='s'/><t>1</t></uml:P>"),
     "P p t=1 n->q,s | P q n->r | P r | P s"},
};
INSTANTIATE_TEST_SUITE_P(Children, XmiDocument, testing::ValuesIn(childRows));

const std::vector<DocumentRow> classRows{
    {"ByXmiType", xmi("<uml:A xmi:type='x:y:B' xmi:id='b'/>"), "B b"},
    {"BySchemaType", xmi("<uml:A xsi:type='uml:B' xmi:id='b'/>"), "B b"},
    {"XmiTypeFirst", xmi("<uml:A xsi:type='uml:B' xmi:type='C' xmi:id='b'/>"), "C b"},
    {"ByTheContainmentFeature",
     xmi("<uml:Class xmi:id='c'><ownedOperation xmi:id='o'><ownedParameter xmi:id='p'/>"
         "</ownedOperation><ownedAttribute xmi:id='a'/></uml:Class>"),
     "Class c ownedAttribute->a ownedOperation->o | Operation o ownedParameter->p | Parameter p | "
     "Property a"},
    {"ByTheOwnersClass",
     xmi("<uml:Extension xmi:id='x'><ownedEnd xmi:id='e'/></uml:Extension>"
         "<uml:Association xmi:id='y'><ownedEnd xmi:id='f'/></uml:Association>"
         "<uml:TemplateSignature xmi:id='z'><ownedParameter xmi:id='g'/></uml:TemplateSignature>"),
     "Extension x ownedEnd->e | ExtensionEnd e | Association y ownedEnd->f | Property f | "
     "TemplateSignature z ownedParameter->g | TemplateParameter g"},
    {"ByTheTag", xmi("<uml:A xmi:id='a'><strange xmi:id='s'/></uml:A>"),
     "A a strange->s | Strange s"},
};
INSTANTIATE_TEST_SUITE_P(Classes, XmiDocument, testing::ValuesIn(classRows));

const std::vector<DocumentRow> identityRows{
    {"APlainIdStaysAnAttribute", "<a id='1'/>", "a 1 id=1"},
    {"XmiIdFirst", xmi("<uml:A id='1' xmi:id='2'/>"), "A 2 id=1"},
    {"ByPath", "<a><b c='1'/><b c='2'><d e='1'/><d e='2'/></b></a>",
     "a / b->//@b.0,//@b.1 | B //@b.0 c=1 | B //@b.1 c=2 d->//@b.1/@d.0,//@b.1/@d.1 | "
     "D //@b.1/@d.0 e=1 | D //@b.1/@d.1 e=2"},
    {"ByPathFromALaterRoot", xmi("<uml:A/><uml:B><c d='1'/></uml:B>"),
     "A / | B /1 c->/1/@c.0 | C /1/@c.0 d=1"},
    {"TheLastOfEqualIdsIsMeant",
     xmi("<uml:A xmi:id='x' name='1'/><uml:A xmi:id='x' name='2'/>"
         "<uml:B xmi:id='b' r='x'/>"),
     "A x name=1 | A x name=2 | B b r->x"},
    {"StereotypesAreRoots",
     xmi("<uml:Class xmi:id='c'/><p:Bold xmlns:p='p' xmi:id='s' "
         "base_Class='c' weight='3'/>"),
     "Class c | Bold s weight=3 base_Class->c"},
};
INSTANTIATE_TEST_SUITE_P(Identity, XmiDocument, testing::ValuesIn(identityRows));

const std::vector<DocumentRow> referenceRows{
    {"ForeignAttributesAreNone",
     xmi("<uml:A xmi:id='a' xmi:uuid='u' xsi:schemaLocation='s' "
         "xmlns:z='z' z:k='1'/>"),
     "A a k=1"},
    {"EveryTokenMustResolve",
     xmi("<uml:A xmi:id='a' r='a b'/><uml:A xmi:id='b' r='a'/><uml:B xmi:id='c' r='a x'/>"),
     "A a r->a,b | A b r->a | B c r=a x"},
    {"DecidedForAllObjectsOfAClass",
     xmi("<uml:A xmi:id='a' r='b'/><uml:A xmi:id='b' r='none'/><uml:B xmi:id='c' r='b'/>"),
     "A a r=b | A b r=none | B c r->b"},
    {"IdAndNameAreNever", xmi("<uml:A xmi:id='a' name='a' id='a'/>"), "A a id=a name=a"},
    {"NoTokenIsNoReference", xmi("<uml:A xmi:id='a' r=''/>"), "A a"},
    {"TypeHintsAreDropped",
     xmi("<uml:A xmi:id='a' r='uml:A f#x e:B #a b:C a'/><uml:A xmi:id='b' r='k:k'/>"),
     "A a r=uml:A f#x e:B #a b:C a | A b r=k:k"},
    {"TypeHintsStandBeforeFragments", xmi("<uml:A xmi:id='a' r='e:C f#x e:B #a a'/>"),
     "A a r->a,a"},
    {"PathsByName",
     "<p name='p'><c name='A' r='#//B/f'/><c name='B'><f name='f' k='1'/><f name='f' k='2'/></c>"
     "</p>",
     "p / name=p c->//@c.0,//@c.1 | C //@c.0 name=A r->//@c.1/@f.0 | C //@c.1 name=B "
     "f->//@c.1/@f.0,//@c.1/@f.1 | F //@c.1/@f.0 k=1 name=f | F //@c.1/@f.1 k=2 name=f"},
    {"PathsByIndex", "<p><c r='//@c.1/@f //@c.0 #//@c.1 / /0'/><c><f k='1'/></c></p>",
     "p / c->//@c.0,//@c.1 | C //@c.0 r->//@c.1/@f.0,//@c.0,//@c.1,/,/ | C //@c.1 f->//@c.1/@f.0 "
     "| F //@c.1/@f.0 k=1"},
    {"PathsFromALaterRoot",
     xmi("<uml:A name='a'/><uml:B name='b'/><uml:C r='#/1/x' s='/1/@c.0'/>"
         "<uml:D r='#/3/x #/x #//a #/1/ #//@c.0'/>"),
     "A / name=a | B /1 name=b | C /2 s=/1/@c.0 | D /3"},
    {"ReferencesOutsideReachNothing",
     xmi("<uml:A xmi:id='a' r='other.uml#a http://x/y#b pathmap://Z#c'><s href='f#a'/></uml:A>"),
     "A a"},
    {"TheAttributeComesFirst",
     xmi("<uml:A xmi:id='a' r='b'><r xmi:id='c'/><r href='#a'/></uml:A><uml:B xmi:id='b'/>"),
     "A a r->b,c,a | R c | B b"},
    {"AnAttributeInOneClassAContainmentInAnother",
     xmi("<uml:A xmi:id='a' x='1'/><uml:B xmi:id='b'><x xmi:id='c'/></uml:B>"),
     "A a x=1 | B b x->c | X c"},
    {"AValueAndObjectsInOneFeature", xmi("<uml:A xmi:id='a' x='1'><x xmi:id='c'/></uml:A>"),
     "A a x=1, c x->c | X c"},
    {"SeveralReferencesToOneObject", xmi("<uml:A xmi:id='a' r='b a b'/><uml:B xmi:id='b'/>"),
     "A a r->b,a,b | B b"},
    {"NamesOfAnyKind",
     xmi("<uml:A xmi:id='a' name='let x.y \xC3\xA4\xC3\xB6' let.it='1' \xC3\xA4='2'/>"),
     "A a let.it=1 name=let x.y \xC3\xA4\xC3\xB6 \xC3\xA4=2"},
};
INSTANTIATE_TEST_SUITE_P(References, XmiDocument, testing::ValuesIn(referenceRows));

// A model in which every question has an answer.
const std::string asked = xmi(R"(
  <uml:Package xmi:id="p" name="P" children="none" visibility="">
    <packagedElement xmi:type="uml:Class" xmi:id="c" name="C" general="d d">
      <ownedOperation xmi:id="o" name="op">
        <ownedParameter xmi:id="q" name="x"/>
        <ownedParameter xmi:id="r"/>
        <type href="lib#//String"/>
      </ownedOperation>
      <rule>one</rule><rule>two</rule>
    </packagedElement>
    <packagedElement xmi:type="uml:Class" xmi:id="d" name="D" parameter="7" owner="#q f#Z #d g# #Y h#/a/X">
      <ownedParameter xmi:id="e" name="y"/>
    </packagedElement>
    <packagedElement xmi:type="uml:Class" xmi:id="f"><ownedParameter xmi:id="g"/></packagedElement>
    <packagedElement xmi:type="uml:Person" xmi:id="h" parent="mother">
      <ownedChildren xmi:id="i"/>
    </packagedElement>
    <packagedElement xmi:type="uml:Person" xmi:id="j"/>
  </uml:Package>)");

struct Question {
    const char* uid;
    const char* question;
    const char* answer;
};

void PrintTo(const Question& row, std::ostream* out) { *out << row.uid << ' ' << row.question; }

class XmiQuestion : public testing::TestWithParam<Question> {};

TEST_P(XmiQuestion, IsAnswered) {
    const auto model = readModelText(asked, "doc");
    EXPECT_EQ(ask(*model, GetParam().uid, GetParam().question), GetParam().answer);
}

const std::vector<Question> questions{
    {"c", "$name", "C"},
    {"f", "$name", ""},
    {"c", "$rule", "one, two"},
    {"c", "$general", "D, D"},
    {"c", "$nothing", "unknown"},
    {"c", "[name]", "unknown"},
    {"p", "$visibility", ""},
    // Associations read as names: of objects, as ids, as the last step of a path.
    {"o", "$ownedParameter", "x, r"},
    {"o", "$type", "String"},
    {"d", "$owner", "x, Z, D, g#, #Y, X"},
    {"d", "[owner]", "q,d"},
    // Built-in associations, and features of their names.
    {"o", "[parent]", "c"},
    {"o", "$parent", "C"},
    {"q", "$parent", "op"},
    {"p", "[parent]", ""},
    {"p", "$parent", ""},
    {"c", "[children]", "o"},
    {"c", "$children", "op"},
    {"p", "[children]", ""},
    {"p", "$children", "none"},
    {"h", "$parent", "mother"},
    {"h", "[parent]", ""},
    {"j", "[parent]", ""},
    {"h", "[children]", "i"},
    {"d", "[inverse:general]", "c"},
    {"d", "$inverse:general", "C"},
    {"c", "[inverse:general]", ""},
    {"o", "[inverse:ownedOperation]", "c"},
    {"q", "[inverse:owner]", "d"},
    {"c", "[inverse:name]", "unknown"},
    {"c", "[inverse:operation]", "unknown"},
    // "ownedX" for "x", object by object.
    {"o", "[parameter]", "q,r"},
    {"o", "$parameter", "x, r"},
    {"o", "[Parameter]", "q,r"},
    {"c", "[operation]", "o"},
    {"c", "$operation", "op"},
    {"d", "[parameter]", ""},
    {"d", "$parameter", "7"},
    {"f", "[parameter]", "g"},
    {"f", "$parameter", "g"},
    {"c", "[parameter]", ""},
    {"h", "[ownedChildren]", "i"},
};
INSTANTIATE_TEST_SUITE_P(All, XmiQuestion, testing::ValuesIn(questions));

TEST(RepositoryModel, ShowsWhatToolsNeed) {
    const auto model = readModelText(
        "<?xml version='1.0'?>\n<a name='r'>\n  <b id='x'/><b id='x'/>\n\t<c t='1'/></a>", "doc");
    EXPECT_EQ(model->objectCount(), 4U);
    EXPECT_EQ(uids(*model, model->roots()), "/");
    EXPECT_EQ(model->root(1), mmNoObject);
    EXPECT_EQ(uids(*model, model->instances("B")), "x,x");
    EXPECT_EQ(model->instances("b").size(), 0U);
    EXPECT_TRUE(model->hasClass("C"));
    EXPECT_FALSE(model->hasClass("c"));
    EXPECT_EQ(model->find("x"), model->instances("B").first[1]);
    EXPECT_EQ(model->path(model->find("x")), "//@b.1");
    EXPECT_EQ(model->find("//@c"), model->instances("C").first[0]);
    for (const char* const nothing : {"y", "/1", "/1/@b.0", "//@b.2", "//@y", "///"}) {
        EXPECT_EQ(model->find(nothing), mmNoObject) << nothing;
    }
    EXPECT_EQ(model->outermost(model->find("x")), model->root(0));
    EXPECT_EQ(model->container(model->root(0)), mmNoObject);
    const TextPlace place = model->place(model->find("//@c.0"));
    EXPECT_EQ(place.line, 4U);
    EXPECT_EQ(place.column, 2U);
    const std::vector<ClassSummary> classes = model->classes();
    ASSERT_EQ(classes.size(), 3U);
    EXPECT_EQ(classes[0].name, "B");
    EXPECT_EQ(classes[0].count, 2U);
    EXPECT_EQ(classes[2].name, "a");
    EXPECT_EQ(classes[2].associations, (std::vector<std::string_view>{"b", "c"}));
}

}  // namespace
