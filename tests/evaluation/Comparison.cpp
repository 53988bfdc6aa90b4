#include "evaluation/Comparison.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <sstream>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "fliodram/MMEvaluationError.h"
#include "parser/SyntaxParser.h"

namespace {

template <class Objects, class ToThing>
std::string identifiers(const Objects& objects, const ToThing& toThing) {
    std::string text = "C:";
    for (const auto& object : objects) {
        text += (text.size() > 2 ? " " : "") + toThing(object)->id;
    }
    return text;
}

/// The letter of the type with that number, and the value.
std::string describe(std::size_t type, std::string_view value) {
    std::string text(1, "BIRS"[type]);
    text += ':';
    return text.append(value);
}

std::string describe(const MMValue& value) {
    const bool isNaN = value.getKind() == MMValue::Kind::real && std::isnan(value.getReal());
    const OrvString text = value.asString();
    return describe(static_cast<std::size_t>(value.getKind()), isNaN ? "nan" : text.view());
}

std::string describe(const NaiveValue& value) {
    if (const auto* objects = std::get_if<NaiveObjects>(&value)) {
        return identifiers(objects->all(), [](const Thing* thing) { return thing; });
    }
    const auto* real = std::get_if<double>(&value);
    const bool isNaN = real != nullptr && std::isnan(*real);
    return describe(value.index(), isNaN ? "nan" : naive::textOf(value));
}

std::string show(const Outcome& outcome) {
    static const char* const kinds[] = {"", "failure: ", "limit: "};
    return kinds[static_cast<std::size_t>(outcome.kind)] + outcome.text;
}

}  // namespace

CompiledText::CompiledText(TypeLetter type, const std::string& text) {
    RecordingDialogs dialogs;
    if (type == 'C') {
        collection_ = ExprParser::parseComplexAssociation(dialogs, text);
    } else {
        value_ = type == 'B' ? ExprParser::parseCondition(dialogs, text)
                             : ExprParser::parseAssociatedAttribute(dialogs, text);
    }
    if (!collection_ && !value_) {
        errors_ = "does not compile";
        for (const std::string& message : dialogs.messages) {
            errors_ += "\n  " + message;
        }
    }
}

Outcome CompiledText::evaluate(MMEvaluationContext& context, const Thing& object) const {
    return evaluate(context, object.handle(),
                    [](MMObject handle) { return reinterpret_cast<const Thing*>(handle); });
}

Outcome CompiledText::evaluate(MMEvaluationContext& context, const ColumnModel& model,
                               const Thing& object) const {
    return evaluate(context, model.handleOf(object),
                    [&model](MMObject handle) { return &model.thingOf(handle); });
}

template <class ToThing>
Outcome CompiledText::evaluate(MMEvaluationContext& context, MMObject object,
                               const ToThing& toThing) const {
    try {
        return {Outcome::Kind::value,
                value_ ? describe(value_->apply(context, object))
                       : identifiers(collection_->apply(context, object), toThing)};
    } catch (const MMEvaluationError& error) {
        return {error.isLimit() ? Outcome::Kind::limit : Outcome::Kind::failure, error.what()};
    }
}

Outcome naiveOutcome(const SmallModel& model, const std::string& text, const Thing& object) {
    RecordingDialogs dialogs;
    std::ostringstream dropped;
    const OrvCountedPtr<SpecificationNode> tree =
        SyntaxParser::parse(dialogs, text.c_str(), dropped);
    try {
        return {Outcome::Kind::value, describe(evaluateNaively(model.things(), *tree, object))};
    } catch (const NaiveFailure& failure) {
        return {Outcome::Kind::failure, failure.reason};
    } catch (const NaiveRefusal&) {
        return {Outcome::Kind::limit, "no answer"};
    }
}

std::string Comparison::difference(TypeLetter type, const std::string& text,
                                   const std::vector<const Thing*>& objects) {
    const CompiledText compiled(type, text);
    if (!compiled.errors().empty()) {
        return text + "\n" + compiled.errors();
    }
    for (const Thing* object : objects) {
        const Outcome expected = naiveOutcome(model_, text, *object);
        if (expected.kind == Outcome::Kind::limit) {
            ++skipped;
            continue;
        }
        const Outcome outcomes[] = {compiled.evaluate(context_, *object),
                                    compiled.evaluate(columnContext_, columns_, *object)};
        // Nothing says which of two operands that have no value is evaluated first.
        const auto isLimit = [](const Outcome& got) { return got.kind == Outcome::Kind::limit; };
        if (expected.kind == Outcome::Kind::failure &&
            std::any_of(std::begin(outcomes), std::end(outcomes), isLimit)) {
            ++skipped;
            continue;
        }
        ++(expected.kind == Outcome::Kind::value ? values : failures);
        for (const Outcome& got : outcomes) {
            if (!(got == expected)) {
                return text + "\n  on " + object->id + (&got == outcomes ? "" : " with columns") +
                       "\n  expected: " + show(expected) + "\n  got: " + show(got);
            }
        }
    }
    return "";
}
