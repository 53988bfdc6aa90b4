#include "ExpressionShapes.h"

namespace {

ExpressionShape comparison() {
    return {"comparison", R"($name = "x")", R"(@name = "x")", R"(return (...).name == "x")"};
}

ExpressionShape quantifiers() {
    return {"quantifiers",
            "for_all c in all \"Class\" => (there_exists o in c -> [ownedOperation] => "
            "size (o -> [ownedParameter]) > 2)",
            "not(//packagedElement[@xmi:type=\"uml:Class\"]"
            "[not(ownedOperation[count(ownedParameter) > 2])])",
            "for _, c in ipairs(all \"Class\") do local found = false "
            "for _, o in ipairs(c.ownedOperation) do "
            "if #o.ownedParameter > 2 then found = true break end end "
            "if not found then return false end end return true"};
}

ExpressionShape filters() {
    return {"filters",
            "string size (this -> [packagedElement]{class current = \"Class\"} -> "
            "[ownedOperation]{$visibility = \"public\" and $isQuery = \"true\"} -> "
            "[ownedParameter]{$direction = \"return\" or $type = \"String\"})",
            "string(count(packagedElement[@xmi:type=\"uml:Class\"]"
            "/ownedOperation[@visibility=\"public\" and @isQuery=\"true\"]"
            "/ownedParameter[@direction=\"return\" or @type=\"String\"]))",
            "local n = 0 for _, c in ipairs((...).packagedElement) do if c.class == \"Class\" then "
            "for _, o in ipairs(c.ownedOperation) do "
            "if o.visibility == \"public\" and o.isQuery == \"true\" then "
            "for _, p in ipairs(o.ownedParameter) do "
            "if p.direction == \"return\" or p.type == \"String\" then n = n + 1 end "
            "end end end end end return tostring(n)"};
}

// XPath 1.0 has no conditionals.
ExpressionShape nestedIfs() {
    std::string expression;
    std::string lua = "local o = ...\n";
    for (int i = 0; i < 8; ++i) {
        const std::string number = std::to_string(i);
        expression +=
            "if $visibility = \"kind" + number + "\" then \"result " + number + "\" else ";
        lua += i == 0 ? "if" : "elseif";
        lua += " o.visibility == \"kind" + number + "\" then return \"result " + number + "\"\n";
    }
    return {"ifs", expression + "$name", "", lua + "else return o.name end"};
}

}  // namespace

ExpressionShape comparisonsShape(int count) {
    std::string expression;
    std::string xpath;
    std::string lua = "local o = ... return ";
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i) + "\"";
        const std::string joint = i == 0 ? "" : " or ";
        expression += joint + "$name = \"Class" + number;
        xpath += joint + "@name = \"Class" + number;
        lua += joint + "o.name == \"Class" + number;
    }
    return {"comparisons", expression, xpath, lua};
}

std::vector<ExpressionShape> expressionShapes() {
    return {comparison(), quantifiers(), filters(), nestedIfs(), comparisonsShape(50)};
}
