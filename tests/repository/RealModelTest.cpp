// Models that people made with their tools: the numbers of objects, and answers to questions that
// were worked out independently. They lie in the folder that EXPRPARSER_MODELS names, if any.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "repository/ModelDump.h"
#include "repository/ModelReader.h"

namespace {

// A model with the plain loops over it that answer questions.
class Asked {
public:
    explicit Asked(const std::string& path, const ReadOptions& options = {})
        : model_(readModel(path, options)) {}

    const RepositoryModel& model() const { return *model_; }

    std::string text(MMObject object, std::string_view attribute) const {
        const MMKey key = model_->attributeKey(attribute);
        std::string buffer;
        return key == mmUnknownKey ? "" : std::string(model_->attribute(object, key, buffer));
    }
    MMObjectRange targets(MMObject object, std::string_view association) const {
        const MMKey key = model_->associationKey(association);
        return key == mmUnknownKey ? MMObjectRange() : model_->targets(object, key, buffer_);
    }
    std::size_t count(std::string_view className,
                      const std::function<bool(MMObject)>& isCounted) const {
        const MMObjectRange all = model_->instances(className);
        return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), isCounted));
    }
    // The names of all that a way of stepping reaches from the class of a name, itself excluded.
    std::set<std::string> reach(std::string_view className) const {
        std::set<std::string> names;
        std::vector<MMObject> open;
        for (const MMObject object : model_->instances("Class")) {
            if (model_->name(object) == className) {
                open.push_back(object);
            }
        }
        while (!open.empty()) {
            const MMObject object = open.back();
            open.pop_back();
            for (const MMObject generalization : targets(object, "generalization")) {
                for (const MMObject general : targets(generalization, "general")) {
                    if (names.emplace(model_->name(general)).second) {
                        open.push_back(general);
                    }
                }
            }
        }
        return names;
    }

private:
    std::unique_ptr<RepositoryModel> model_;
    mutable std::vector<MMObject> buffer_;
};

std::string join(const std::set<std::string>& texts) {
    std::string result;
    for (const std::string& text : texts) {
        result += (result.empty() ? "" : " ") + text;
    }
    return result;
}

class RealModel : public testing::Test {
protected:
    void SetUp() override {
        if (folder_ == nullptr || *folder_ == 0) {
            GTEST_SKIP() << "EXPRPARSER_MODELS names no folder.";
        }
    }
    std::string file(const std::string& name) const { return std::string(folder_) + '/' + name; }

private:
    const char* folder_ = std::getenv("EXPRPARSER_MODELS");
};

TEST_F(RealModel, HaveTheirNumbersOfObjects) {
    const std::map<std::string, std::size_t> counts{
        {"uml-library.uml", 52},          {"uml-extendedpo2.uml", 143}, {"uml-fruit.uml", 146},
        {"uml-ecore-metamodel.uml", 711}, {"uml-metamodel.uml", 8034},  {"ecore.ecore", 316},
        {"archisurance.archimate", 1075}, {"railway-1.xmi", 1311}};
    for (const auto& [name, count] : counts) {
        EXPECT_EQ(readModel(file(name))->objectCount(), count) << name;
    }
}

TEST_F(RealModel, OfUmlAnswersQuestions) {
    const Asked uml(file("uml-metamodel.uml"));
    EXPECT_EQ(uml.model().instances("Class").size(), 242U);
    EXPECT_EQ(uml.count("Class", [&](MMObject c) { return uml.text(c, "isAbstract") == "true"; }),
              49U);
    EXPECT_EQ(join(uml.reach("Class")),
              "BehavioredClassifier Classifier Element EncapsulatedClassifier NamedElement "
              "Namespace PackageableElement ParameterableElement RedefinableElement "
              "StructuredClassifier TemplateableElement Type");
    std::set<std::string> withThree;
    std::set<std::string> withOutside;
    for (const MMObject c : uml.model().instances("Class")) {
        if (uml.targets(c, "generalization").size() >= 3) {
            withThree.emplace(uml.model().name(c));
        }
        for (const MMObject g : uml.targets(c, "generalization")) {
            if (uml.targets(g, "general").size() == 0) {
                withOutside.emplace(uml.model().name(c));
            }
        }
    }
    EXPECT_EQ(join(withThree),
              "Classifier InstanceSpecification Operation Package Property State "
              "StructuralFeature StructuredActivityNode");
    EXPECT_EQ(join(withOutside), "Element");
    EXPECT_EQ(uml.count("Operation",
                        [&](MMObject operation) {
                            const auto all = uml.targets(operation, "parameter");
                            return std::count_if(all.begin(), all.end(), [&](MMObject p) {
                                       return uml.text(p, "direction") == "return";
                                   }) > 1;
                        }),
              0U);
    const auto isUnion = [&](MMObject p) { return uml.text(p, "isDerivedUnion") == "true"; };
    EXPECT_EQ(uml.count("Property", isUnion), 32U);
    EXPECT_EQ(uml.count("Property",
                        [&](MMObject p) {
                            return isUnion(p) && (uml.text(p, "isReadOnly") != "true" ||
                                                  uml.text(p, "isDerived") != "true");
                        }),
              0U);
}

TEST_F(RealModel, OfUmlAnswersQuestionsAboutTypes) {
    const Asked uml(file("uml-metamodel.uml"));
    std::set<std::string> literals;
    for (const MMObject e : uml.model().instances("Enumeration")) {
        literals.insert(std::string(uml.model().name(e)) + '=' +
                        std::to_string(uml.targets(e, "ownedLiteral").size()));
    }
    EXPECT_EQ(join(literals),
              "AggregationKind=3 CallConcurrencyKind=3 ConnectorKind=2 ExpansionKind=3 "
              "InteractionOperatorKind=12 MessageKind=4 MessageSort=6 ObjectNodeOrderingKind=4 "
              "ParameterDirectionKind=4 ParameterEffectKind=4 PseudostateKind=10 "
              "TransitionKind=3 VisibilityKind=4");
    std::set<std::string> names = uml.reach("Class");
    names.insert("Class");
    std::set<std::string> types;
    for (const MMObject c : uml.model().instances("Class")) {
        for (const MMObject p : uml.targets(c, "ownedAttribute")) {
            if (names.count(std::string(uml.model().name(c))) != 0 &&
                uml.text(p, "aggregation") == "composite") {
                types.insert(uml.text(p, "type"));
            }
        }
    }
    EXPECT_EQ(join(types),
              "Behavior Classifier CollaborationUse Comment Connector Constraint Element "
              "ElementImport Generalization InterfaceRealization NamedElement Operation "
              "PackageImport Port Property Reception RedefinableTemplateSignature "
              "StringExpression Substitution TemplateBinding TemplateSignature UseCase");
}

TEST_F(RealModel, OfARailwayAnswersQuestions) {
    ReadOptions options;
    options.metamodel = Metamodel::readFile(file("railway.ecore"));
    for (const Asked& railway :
         {Asked(file("railway-1.xmi")), Asked(file("railway-1.xmi"), options)}) {
        EXPECT_EQ(railway.count("Segment",
                                [&](MMObject s) {
                                    const std::string length = railway.text(s, "length");
                                    return length == "0" || length.substr(0, 1) == "-";
                                }),
                  43U);
        std::set<std::string> withoutSensor;
        for (const MMObject s : railway.model().instances("Switch")) {
            // A sensor contains what it watches.
            if (railway.targets(s, "inverse:elements").size() == 0) {
                withoutSensor.insert(railway.text(s, "id"));
            }
        }
        EXPECT_EQ(join(withoutSensor), "1267 178");
    }
}

TEST_F(RealModel, OfAnEnterpriseAnswersQuestions) {
    const Asked archi(file("archisurance.archimate"));
    std::size_t elements = 0;
    std::map<std::string, std::size_t> relationships;
    for (const MMObject folder : archi.model().instances("Folder")) {
        for (const MMObject element : archi.targets(folder, "element")) {
            const std::string name(archi.model().className(element));
            if (name.size() > 12 && name.substr(name.size() - 12) == "Relationship") {
                ++relationships[name];
            } else if (name.find("Diagram") == std::string::npos &&
                       name.find("Sketch") == std::string::npos) {
                ++elements;
            }
        }
    }
    EXPECT_EQ(elements, 120U);
    EXPECT_EQ(relationships, (std::map<std::string, std::size_t>{{"AccessRelationship", 13},
                                                                 {"AggregationRelationship", 11},
                                                                 {"AssignmentRelationship", 6},
                                                                 {"AssociationRelationship", 28},
                                                                 {"CompositionRelationship", 5},
                                                                 {"FlowRelationship", 33},
                                                                 {"RealizationRelationship", 30},
                                                                 {"ServingRelationship", 32},
                                                                 {"SpecializationRelationship", 5},
                                                                 {"TriggeringRelationship", 13}}));
    std::set<std::string> actors;
    for (const MMObject actor : archi.model().instances("BusinessActor")) {
        actors.emplace(archi.model().name(actor));
    }
    EXPECT_EQ(actors.size(), 17U);
    EXPECT_EQ(actors.count("Home  &  Away"), 1U);
}

}  // namespace
