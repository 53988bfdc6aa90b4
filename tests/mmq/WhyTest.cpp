// Evidence, held against the evaluator: what a line says about a part of the text is written as an
// expression, with each binding that it names put in for its variable, which must then be true.
// EVALUATION_SEED repeats a run.
#include "why/Why.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>

#include "api/RecordingDialogs.h"
#include "evaluation/Comparison.h"
#include "fliodram/MMEvaluationError.h"

namespace {

using mmq::EvidenceLine;

constexpr std::uint64_t fewSteps = 20'000;

const Thing& thingOf(MMObject object) { return *reinterpret_cast<const Thing*>(object); }

std::string literal(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        const std::size_t escape = std::string_view("\"\\\n\r\t").find(c);
        result += escape < 5 ? std::string{'\\', "\"\\nrt"[escape]} : std::string(1, c);
    }
    return result + "\"";
}

mmq::CompiledExpression compiled(TypeLetter type, const std::string& text) {
    RecordingDialogs dialogs;
    mmq::CompiledExpression expression;
    if (type == 'C') {
        expression.collection =
            ExprParser::parseMappedComplexAssociation(dialogs, text, *expression.map);
    } else {
        expression.value =
            ExprParser::parseMappedAssociatedAttribute(dialogs, text, *expression.map);
    }
    return expression;
}

/// The evidence of one expression for one object, checked line by line.
class Claims {
public:
    Claims(MMEvaluationContext& context, const std::string& text, const Thing& object,
           const mmq::Evidence& evidence, const SourceMap& map)
        : context_(context), text_(text), object_(object), map_(map) {
        for (const EvidenceLine& line : evidence.lines) {
            check(line);
            if (!line.variable.empty()) {
                bind(line);
            }
        }
    }

    int checked = 0;
    int decided = 0;
    int links = 0;

private:
    void check(const EvidenceLine& line) {
        const std::string part = textOf(line.span);
        if (line.kind == EvidenceLine::Kind::path) {
            checkLinks(line, part);
        }
        if (line.kind >= EvidenceLine::Kind::subject) {
            return;
        }
        checked += isTrue(part, line.span, line.value, false) ? 1 : 0;
        const bool isQuantifier = part.find("=>") != std::string::npos &&
                                  line.variable != "current" && !line.variable.empty();
        if (line.kind == EvidenceLine::Kind::binding && isQuantifier) {
            bind(line);
            decided += isTrue(bodyOf(line.span), line.span, line.value, true) ? 1 : 0;
        }
    }

    static bool contains(const SourceSpan& outer, const SourceSpan& inner, bool isStrict) {
        return outer.offset <= inner.offset && outer.endOffset >= inner.endOffset &&
               !(isStrict && outer.offset == inner.offset && outer.endOffset == inner.endOffset);
    }

    // What was bound there or further in before, for another object, no longer is.
    void bind(const EvidenceLine& line) {
        const auto isOver = [&line](const EvidenceLine* earlier) {
            return contains(line.span, earlier->span, false);
        };
        bindings_.erase(std::remove_if(bindings_.begin(), bindings_.end(), isOver),
                        bindings_.end());
        bindings_.push_back(&line);
    }

    void checkLinks(const EvidenceLine& line, const std::string& part) {
        ASSERT_FALSE(line.way.links.empty()) << text_ << ": " << part;
        MMObject from = line.way.links.front().from;
        for (const mmq::PathLink& link : line.way.links) {
            EXPECT_EQ(link.from, from) << text_ << ": " << part;
            const auto& targets = thingOf(from).associations.at(link.association);
            EXPECT_EQ(std::count(targets.begin(), targets.end(), link.to) > 0, true)
                << text_ << ": " << part;
            from = link.to;
            ++links;
        }
        EXPECT_EQ(from, std::get<MMObject>(line.value));
    }

    // Whether the part has the value, with the bindings around it put in. False where that cannot
    // be written, since the part has a variable of a let, or might have.
    bool isTrue(const std::string& part, const SourceSpan& span, const mmq::PartValue& value,
                bool isInside) const {
        std::string claim;
        std::string ends;
        for (const EvidenceLine* line : bindings_) {
            if (text_.find("let " + line->variable + " =") != std::string::npos) {
                return false;
            }
            const bool isStrict = line->kind == EvidenceLine::Kind::binding && !isInside;
            if (contains(line->span, span, isStrict)) {
                const Thing& thing = thingOf(line->object);
                const std::string name = line->variable == "current"
                                             ? std::string(1 + ends.size(), 'c')
                                             : line->variable;
                claim.append("there_exists ").append(name).append(" in filter {uid current = ");
                claim.append(literal(thing.id)).append("} over all ").append(literal(thing.kind));
                claim += " => (";
                ends += ')';
            }
        }
        for (const std::string& form : formsOf("(" + part + ")", value)) {
            const auto expression = compiled('B', claim + form + ends);
            if (expression) {
                EXPECT_EQ(outcomeOf(*expression.value), isFailure(value) ? "failure" : "true")
                    << text_ << "\non " << object_.id << ": " << claim + form + ends;
                return true;
            }
        }
        return false;
    }

    std::string outcomeOf(const MMValueAbsExpr& expression) const {
        try {
            return std::string(expression.apply(context_, object_.handle()).asString().view());
        } catch (const MMEvaluationError& error) {
            return error.isLimit() ? "limit" : "failure";
        }
    }

    // Expressions that say that the part has the value; of a failure, any that evaluate it.
    static std::vector<std::string> formsOf(const std::string& part, const mmq::PartValue& value) {
        if (const auto* const single = std::get_if<MMValue>(&value)) {
            return {"string " + part + " = " + literal(single->asString().view())};
        }
        if (const auto* const object = std::get_if<MMObject>(&value)) {
            return {"uid " + part + " = " +
                    literal(*object != mmNoObject ? thingOf(*object).id : std::string())};
        }
        if (const auto* const objects = std::get_if<std::vector<MMObject>>(&value)) {
            std::string uids;
            for (const MMObject object : *objects) {
                uids += thingOf(object).id + ";";
            }
            return {"concat map {uid current + \";\"} over " + part + " = " + literal(uids)};
        }
        if (const auto* const texts = std::get_if<std::vector<std::string>>(&value)) {
            std::string all;
            for (const std::string& text : *texts) {
                all += text;
            }
            return {"concat " + part + " = " + literal(all)};
        }
        return {"string " + part + " = \"\"", "uid " + part + " = \"\"",
                "string size " + part + " = \"\"", "concat " + part + " = \"\""};
    }

    std::string textOf(const SourceSpan& span) const {
        return text_.substr(span.offset, span.endOffset - span.offset);
    }

    // The body of a quantifier: the longest part that ends where it ends.
    std::string bodyOf(SourceSpan quantifier) const {
        while (text_[quantifier.offset] == '(') {
            ++quantifier.offset;
            quantifier.endOffset =
                static_cast<std::uint32_t>(text_.find_last_of(')', quantifier.endOffset - 1));
        }
        const std::size_t last = text_.find_last_not_of(' ', quantifier.endOffset - 1) + 1;
        SourceSpan body = quantifier;
        body.offset = body.endOffset;
        for (const SourceMap::Part& part : map_.getParts()) {
            if (part.span.endOffset == last && part.span.offset > quantifier.offset &&
                part.span.offset < body.offset) {
                body = part.span;
            }
        }
        return textOf(body);
    }

    MMEvaluationContext& context_;
    const std::string& text_;
    const Thing& object_;
    const SourceMap& map_;
    std::vector<const EvidenceLine*> bindings_;
};

TEST(Why, SaysWhatTheEvaluatorSays) {
    constexpr int expressions = isInstrumented() ? 2'000 : 20'000;
    const char* const given = std::getenv("EVALUATION_SEED");
    const std::uint64_t seed = given != nullptr ? std::stoull(given) : std::random_device()();
    std::cout << "EVALUATION_SEED=" << seed << std::endl;
    const SmallModel model;
    MMEvaluationContext context(model.view(), {.steps = fewSteps});
    ExpressionGenerator generator(seed);
    int checked = 0;
    int decided = 0;
    int links = 0;
    for (int i = 0; i < expressions && !testing::Test::HasFailure(); ++i) {
        const TypeLetter type = "BIRSC"[generator.pick(5)];
        const std::string text =
            generator.generate(type, 2 + static_cast<int>(generator.pick(14))).text();
        const Thing& object = model.things()[generator.pick(model.things().size())];
        const mmq::CompiledExpression expression = compiled(type, text);
        ASSERT_TRUE(expression) << text;
        const mmq::Evidence evidence = mmq::explain(expression, context, object.handle());
        const Claims claims(context, text, object, evidence, *expression.map);
        checked += claims.checked;
        decided += claims.decided;
        links += claims.links;
    }
    std::cout << checked << " values, " << decided << " decisions, " << links << " links\n";
    EXPECT_GT(checked, expressions);
    EXPECT_GT(decided, expressions / 100);
    EXPECT_GT(links, expressions / 20);
}

TEST(Why, EndsWithTheTimeAlthoughNoPartLooksAtTheClock) {
    const SmallModel model;
    MMEvaluationContext context(model.view(), {.time = std::chrono::nanoseconds(1)});
    const mmq::CompiledExpression expression = compiled('B', "uid this = \"\"");
    const mmq::Evidence evidence = mmq::explain(expression, context, model.things()[0].handle());
    EXPECT_TRUE(evidence.isCut);
    EXPECT_TRUE(evidence.lines.empty());
}

}  // namespace
