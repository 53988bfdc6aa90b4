// Single names: whether objects can have them, and what to say where they cannot.
#pragma once

#include <string>
#include <vector>

#include "ExpressionText.h"
#include "ast/ExpressionNode.h"
#include "names/NameVocabulary.h"
#include "names/PossibleTexts.h"

namespace mmq {

/// What is to be said about the names of one expression, in the order of the text.
struct NameFindings {
    std::vector<TextError> errors;  ///< names that no object can have
    std::vector<TextError> notes;   ///< names that objects may have, but that documents do not hold
};

/// What to say about a class that a vocabulary does not have, and advice, which may be empty.
std::string sentenceForClass(const std::string& name, const NameVocabulary& vocabulary);
std::string hintForClass(const std::string& name, const NameVocabulary& vocabulary,
                         Letters letters = Letters::asTheyAre);

/// Is told of each name of an attribute, an association or a class that stands as a constant in an
/// expression, with the classes of the objects that it is applied to: once for each place where it
/// is applied.
class NameReceiver {
public:
    NameReceiver() = default;
    NameReceiver(const NameReceiver&) = delete;
    NameReceiver& operator=(const NameReceiver&) = delete;
    virtual ~NameReceiver() = default;

    virtual void takeAttribute(const StringConstantNode& name, const ClassSet& classes) = 0;
    virtual void takeAssociation(const DefinitionAssociationNode& step,
                                 const ClassSet& classes) = 0;
    /// A label that stands for a step, where none of the classes has the name of this.
    virtual void takeReference(const AssociationNode& reference,
                               const DefinitionAssociationNode& step, const ClassSet& classes) = 0;
    /// Where the letters of a class are changed before it is compared, any case means it.
    virtual void takeClass(const StringConstantNode& name, Letters letters) = 0;
};

/// Judges names one by one, by the classes of the objects that they are applied to, and tells in
/// the end what is to be said. Borrows the vocabulary.
class NameJudge : public NameReceiver {
public:
    explicit NameJudge(const NameVocabulary& vocabulary) : vocabulary_(vocabulary) {}

    void takeAttribute(const StringConstantNode& name, const ClassSet& classes) override;
    void takeAssociation(const DefinitionAssociationNode& step, const ClassSet& classes) override;
    void takeReference(const AssociationNode& reference, const DefinitionAssociationNode& step,
                       const ClassSet& classes) override;
    void takeClass(const StringConstantNode& name, Letters letters) override;

    /// What there is to say; of more than are shown, only how many there are.
    NameFindings findings();

private:
    enum class Kind { classOfObjects, attribute, association };

    // A name where it stands, and the classes of what it is applied to.
    struct Use {
        std::string name;
        SourceSpan span;
        Kind kind;
        bool isQuoted;
        ClassSet classes;
        Letters letters = Letters::asTheyAre;
        LeftOut leftOut = LeftOut::no;  // of a name that is not held, why the metamodel says so

        // What stands round the name where it is written.
        const char* before() const { return isQuoted ? "\"" : kind == Kind::attribute ? "$" : "["; }
        const char* after() const { return isQuoted ? "\"" : kind == Kind::attribute ? "" : "]"; }

        ReadAs readAs() const {
            return kind == Kind::attribute ? ReadAs::attribute : ReadAs::association;
        }
    };

    void judge(const Use& use);
    std::vector<TextError> explain(std::vector<Use>& uses,
                                   TextError (NameJudge::*explanation)(const Use&) const) const;
    TextError errorFor(const Use& use) const;
    TextError noteFor(const Use& use) const;
    std::string hintFor(const Use& use) const;
    std::string suggestion(const Use& use) const;
    std::string elsewhere(const Use& use) const;
    std::vector<std::string> nearest(const Use& use, const ClassSet& classes) const;
    std::string havers(const std::string& name, ReadAs readAs) const;
    std::string denial(const Use& use) const;
    bool isOnlyAttribute(const Use& use) const;

    const NameVocabulary& vocabulary_;
    std::vector<Use> wrong_;
    std::vector<Use> notHeld_;
};

}  // namespace mmq
