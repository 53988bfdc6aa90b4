// The product: a model read from XMI, and compiled expressions.
#include <benchmark/benchmark.h>

#include <stdexcept>

#include "ProductQueries.h"
#include "QueryEngine.h"
#include "SilentDialogs.h"
#include "SyntheticDocuments.h"
#include "api/ExprParser.h"
#include "fliodram/MMEvaluationContext.h"
#include "repository/ModelReader.h"

namespace {

/// Keeps the model, and one context for all evaluations.
class ProductEngine final : public QueryEngine {
public:
    explicit ProductEngine(const synthetic::Model& model)
        : model_(readModelText(synthetic::xmiDocument(model), "synthetic")), context_(*model_) {}

    PreparedQuery prepare(const std::string& query) override {
        const std::string& text = productQuery(query);
        if (isObjectQuery(query)) {
            return prepareObjects(text);
        }
        return query == "signature" ? prepareTexts(text) : prepareValue(text);
    }

    std::function<bool(std::size_t)> condition() override {
        const auto compiled = checked(ExprParser::parseCondition(dialogs_, productCondition));
        const MMObjectRange operations = model_->instances("Operation");
        return [this, compiled, operations](std::size_t number) {
            return compiled->apply(context_, operations.first[number]).getBoolean();
        };
    }

private:
    template <class Compiled>
    static Compiled checked(Compiled compiled) {
        if (!compiled) {
            throw std::runtime_error("A query does not compile.");
        }
        return compiled;
    }

    PreparedQuery prepareObjects(const std::string& text) {
        const auto compiled = checked(ExprParser::parseComplexAssociation(dialogs_, text));
        return {[this, compiled] { return compiled->apply(context_, model_->root(0)).size(); },
                [this, compiled] {
                    std::string lines;
                    for (const MMObject object : compiled->apply(context_, model_->root(0))) {
                        lines.append(model_->name(object)).append("\n");
                    }
                    return lines;
                }};
    }

    PreparedQuery prepareTexts(const std::string& text) {
        const auto compiled = checked(ExprParser::parseAssociatedAttribute(dialogs_, text));
        const auto evaluate = [this, compiled] {
            const MMObjectRange operations = model_->instances("Operation");
            std::vector<MMValue> values;
            values.reserve(operations.size());
            for (const MMObject operation : operations) {
                values.push_back(compiled->apply(context_, operation));
            }
            return values;
        };
        return {[evaluate] { return evaluate().size(); },
                [evaluate] {
                    std::string lines;
                    for (const MMValue& value : evaluate()) {
                        lines.append(value.getText()).append("\n");
                    }
                    return lines;
                }};
    }

    PreparedQuery prepareValue(const std::string& text) {
        const auto compiled = checked(ExprParser::parseAssociatedAttribute(dialogs_, text));
        return {[this, compiled]() -> std::size_t {
                    benchmark::DoNotOptimize(compiled->apply(context_, model_->root(0)));
                    return 1;
                },
                [this, compiled] {
                    const MMValue value = compiled->apply(context_, model_->root(0));
                    return std::string(value.asString().view()).append("\n");
                }};
    }

    SilentDialogs dialogs_;
    std::unique_ptr<RepositoryModel> model_;
    MMEvaluationContext context_;
};

}  // namespace

std::unique_ptr<QueryEngine> makeProductEngine(const synthetic::Model& model) {
    return std::make_unique<ProductEngine>(model);
}
