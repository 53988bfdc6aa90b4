// The dialogs that the library brings along, and the requirements of the entry points.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/CodeGeneratorDialogs.h"
#include "api/ExprParserDefaultWindowsDialogs.h"
#include "api/TypeRequirement.h"
#include "support/OrvAssertion.h"

namespace {

TEST(DefaultDialogs, ShowErrorsWithTheFlagAlone) {
    struct Case {
        ExprParserDialogs::MessageSeverity severity;
        bool flag;
        const char* shown;
    };
    const std::vector<Case> cases = {
        {ExprParserDialogs::Error, true, "ExprParser: [line 3: column 7]: boom\n"},
        {ExprParserDialogs::Error, false, ""},
        {ExprParserDialogs::Info, true, ""},
        {ExprParserDialogs::Info, false, ""},
    };
    ExprParserDefaultWindowsDialogs dialogs;
    for (const Case& c : cases) {
        testing::internal::CaptureStderr();
        dialogs.showMessage(3, 7, "ExprParser", "boom", c.severity, c.flag);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.shown) << c.severity << c.flag;
    }
    testing::internal::CaptureStderr();
    EXPECT_FALSE(dialogs.askYesNo("Go on?", true));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Input required: Go on?\n");
}

TEST(CodeGeneratorDialogs, TurnsErrorsIntoAssertions) {
    CodeGeneratorDialogs dialogs;
    EXPECT_TRUE(dialogs.askYesNo("?", true));
    EXPECT_FALSE(dialogs.askYesNo("?", false));
    dialogs.showMessage(3, 7, "X", "fine", ExprParserDialogs::Info, true);
    for (const bool flag : {false, true}) {
        try {
            dialogs.showMessage(3, 7, "X", "boom", ExprParserDialogs::Error, flag);
            ADD_FAILURE() << "no assertion";
        } catch (const OrvAssertion& assertion) {
            EXPECT_STREQ(assertion.what(), "X: [line 3, column 7]: boom");
            EXPECT_EQ(assertion.getCondition(), "false");
            EXPECT_EQ(assertion.getFile(), "CodeGeneratorDialogs");
            EXPECT_EQ(assertion.getLine(), 68);
        }
    }
}

TEST(TypeRequirements, AcceptTheirTypesAlone) {
    struct Case {
        TypePtr type;
        bool condition, attribute, association;
    };
    const TypePtr strings(new TECollection(TypeExpression::stringType()));
    const TypePtr objects(new TECollection(TypePtr(new TEBaseType(BaseTypeKind::object))));
    const TypePtr function(
        new TEFunction(TypeExpression::unitType(), TypeExpression::booleanType()));
    const std::vector<Case> cases = {
        {TypePtr(new TEBaseType(BaseTypeKind::boolean)), true, true, false},
        {TypeExpression::stringType(), false, true, false},
        {TypeExpression::integerType(), false, true, false},
        {TypeExpression::realType(), false, true, false},
        {TypeExpression::objectType(), false, false, false},
        {TypeExpression::regexpType(), false, false, false},
        {TypeExpression::unitType(), false, false, false},
        {TypeExpression::typeError(), false, false, false},
        {objects, false, false, true},
        {strings, false, false, false},
        {TypePtr(new TEProduct), false, false, false},
        {function, false, false, false},
    };
    const ConditionTypeRequirement condition;
    const AssociatedAttributeTypeRequirement attribute;
    const ComplexAssociationTypeRequirement association;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(condition.check(cases[i].type), cases[i].condition) << "row " << i;
        EXPECT_EQ(attribute.check(cases[i].type), cases[i].attribute) << "row " << i;
        EXPECT_EQ(association.check(cases[i].type), cases[i].association) << "row " << i;
    }
    EXPECT_EQ(condition.text(), "{boolean}");
    EXPECT_EQ(attribute.text(), "{string} or {integer} or {real} or {boolean}");
    EXPECT_EQ(association.text(), "{object collection}");
}

}  // namespace
