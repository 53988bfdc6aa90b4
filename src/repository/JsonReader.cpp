// RapidJSON parses the text in place and calls a handler for every piece. The handler knows by its
// level what may stand there, and refuses anything else before the parser goes into it: so the
// parser recurses no deeper than the form of a model, whatever the text. What stands in an object
// is collected until the object ends, since its class may come last, and then goes to the builder.
#include "repository/JsonReader.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <array>
#include <charconv>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "repository/ModelBuilder.h"

namespace {

using Stream = rapidjson::InsituStringStream;

// Takes the pieces of a document; throws ModelError at the first that does not belong there. The
// names of its operations are the parser's.
class JsonHandler {
public:
    JsonHandler(ModelBuilder& builder, Stream& stream) : builder_(builder), stream_(stream) {}

    bool StartObject();
    bool EndObject(rapidjson::SizeType count);
    bool StartArray();
    bool EndArray(rapidjson::SizeType count);
    bool Key(const char* text, rapidjson::SizeType length, bool copy);
    bool String(const char* text, rapidjson::SizeType length, bool copy);
    bool RawNumber(const char* text, rapidjson::SizeType length, bool copy);
    bool Bool(bool value);
    bool Null() { fail(stream_.Tell() - 4); }
    // Numbers come as RawNumber.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

    /// To be called at the end.
    void finish() const;

private:
    // Where in the document the next piece stands.
    enum class Level : std::uint8_t {
        start,
        document,
        objects,
        object,
        attributes,
        associations,
        targets
    };
    enum class Member : std::uint8_t {
        none,
        root,
        objects,
        id,
        className,
        attributes,
        associations
    };

    struct Feature {
        MMKey name;
        TextRef text;
    };
    // The object that is being read.
    struct Pending {
        std::size_t offset = 0;
        TextRef id;
        TextRef className;
        std::vector<Feature> attributes;
        std::vector<Feature> references;
        std::vector<MMKey> associations;
        unsigned seen = 0;  // members, a bit each
    };

    void takeMember(std::string_view name);
    void takeFeature(std::string_view name, std::vector<std::uint32_t>& lastObjects);
    void takeValue(TextRef value);
    void finishObject();
    std::size_t offset(const char* text) const {
        return static_cast<std::size_t>(text - builder_.source().data());
    }
    [[noreturn]] void fail(std::size_t offset) const;
    [[noreturn]] void failAt(const char* text, const std::string& sentence) const;
    std::string expectation() const;

    ModelBuilder& builder_;
    Stream& stream_;
    Level level_ = Level::start;
    Member member_ = Member::none;
    unsigned seen_ = 0;  // members of the document, a bit each
    std::uint32_t objectNumber_ = 0;
    MMKey feature_ = mmUnknownKey;
    Pending pending_;
    // By feature, the number of the object that had it last.
    std::vector<std::uint32_t> lastAttributes_;
    std::vector<std::uint32_t> lastAssociations_;

    struct MemberName {
        std::string_view name;
        Level level;
        Member member;
    };
    static constexpr std::array<MemberName, 6> memberNames{
        {{"root", Level::document, Member::root},
         {"objects", Level::document, Member::objects},
         {"id", Level::object, Member::id},
         {"class", Level::object, Member::className},
         {"attributes", Level::object, Member::attributes},
         {"associations", Level::object, Member::associations}}};
};

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

bool JsonHandler::StartObject() {
    if (level_ == Level::start) {
        level_ = Level::document;
    } else if (level_ == Level::objects) {
        level_ = Level::object;
        pending_ = Pending();
        pending_.offset = stream_.Tell() - 1;
        ++objectNumber_;
    } else if (level_ == Level::object && member_ == Member::attributes) {
        level_ = Level::attributes;
    } else if (level_ == Level::object && member_ == Member::associations) {
        level_ = Level::associations;
    } else {
        fail(stream_.Tell() - 1);
    }
    member_ = Member::none;
    return true;
}

bool JsonHandler::EndObject(rapidjson::SizeType /*count*/) {
    if (level_ == Level::object) {
        finishObject();
        level_ = Level::objects;
    } else if (level_ == Level::document) {
        level_ = Level::start;
    } else {
        level_ = Level::object;
    }
    return true;
}

bool JsonHandler::StartArray() {
    if (level_ == Level::document && member_ == Member::objects) {
        level_ = Level::objects;
    } else if (level_ == Level::associations) {
        level_ = Level::targets;
        pending_.associations.push_back(feature_);
    } else {
        fail(stream_.Tell() - 1);
    }
    return true;
}

bool JsonHandler::EndArray(rapidjson::SizeType /*count*/) {
    level_ = level_ == Level::targets ? Level::associations : Level::document;
    return true;
}

bool JsonHandler::Key(const char* text, rapidjson::SizeType length, bool /*copy*/) {
    const std::string_view name(text, length);
    if (level_ == Level::attributes) {
        takeFeature(name, lastAttributes_);
    } else if (level_ == Level::associations) {
        takeFeature(name, lastAssociations_);
    } else {
        takeMember(name);
    }
    return true;
}

void JsonHandler::takeMember(std::string_view name) {
    for (const MemberName& known : memberNames) {
        if (known.level == level_ && known.name == name) {
            unsigned& seen = level_ == Level::document ? seen_ : pending_.seen;
            const unsigned bit = 1U << static_cast<unsigned>(known.member);
            if ((seen & bit) != 0) {
                failAt(name.data(), "The member " + quoted(name) + " stands twice.");
            }
            seen |= bit;
            member_ = known.member;
            return;
        }
    }
    failAt(name.data(), quoted(name) + " is not a member of " +
                            (level_ == Level::document ? "the document." : "an object."));
}

void JsonHandler::takeFeature(std::string_view name, std::vector<std::uint32_t>& lastObjects) {
    feature_ = builder_.feature(name);
    if (lastObjects.size() <= feature_) {
        lastObjects.resize(std::size_t{feature_} + 1);
    }
    if (std::exchange(lastObjects[feature_], objectNumber_) == objectNumber_) {
        failAt(name.data(), "The member " + quoted(name) + " stands twice.");
    }
}

bool JsonHandler::String(const char* text, rapidjson::SizeType length, bool /*copy*/) {
    const TextRef value = builder_.texts().ref({text, length});
    if (level_ == Level::attributes) {
        takeValue(value);
    } else if (level_ == Level::targets) {
        pending_.references.push_back({feature_, value});
    } else if (level_ == Level::document && member_ == Member::root) {
        builder_.setRoot(value);
    } else if (level_ == Level::object && member_ == Member::id) {
        pending_.id = value;
    } else if (level_ == Level::object && member_ == Member::className) {
        pending_.className = value;
    } else {
        fail(offset(text) - 1);
    }
    return true;
}

// An integer stays as it is written, a real becomes the shortest text that reads back the same.
bool JsonHandler::RawNumber(const char* text, rapidjson::SizeType length, bool /*copy*/) {
    if (level_ != Level::attributes) {
        fail(offset(text));
    }
    const std::string_view digits(text, length);
    if (digits.find_first_of(".eE") == std::string_view::npos) {
        takeValue(builder_.texts().ref(digits));
        return true;
    }
    double number = 0;
    if (std::from_chars(text, text + length, number).ec != std::errc()) {
        failAt(text, "The number " + std::string(digits) + " is out of range.");
    }
    std::array<char, 32> shortest;
    const auto [end, error] =
        std::to_chars(shortest.data(), shortest.data() + shortest.size(), number);
    takeValue(builder_.texts().keep(std::string(shortest.data(), end)));
    return true;
}

bool JsonHandler::Bool(bool value) {
    const std::size_t length = value ? 4 : 5;
    const std::size_t start = stream_.Tell() - length;
    if (level_ != Level::attributes) {
        fail(start);
    }
    takeValue(builder_.texts().ref(builder_.source().view().substr(start, length)));
    return true;
}

void JsonHandler::takeValue(TextRef value) { pending_.attributes.push_back({feature_, value}); }

void JsonHandler::finishObject() {
    const auto isMissing = [](TextRef text) { return text.isAbsent() || text.length == 0; };
    if (isMissing(pending_.id)) {
        builder_.source().fail(pending_.offset, "The object has no id.");
    }
    if (isMissing(pending_.className)) {
        builder_.source().fail(
            pending_.offset,
            "The object " + quoted(builder_.texts().view(pending_.id)) + " has no class.");
    }
    const std::uint32_t number = builder_.classNumber(builder_.texts().view(pending_.className));
    const MMObject object = builder_.addObject(number, pending_.offset);
    builder_.setId(object, pending_.id);
    for (const Feature& attribute : pending_.attributes) {
        builder_.addAttribute(object, attribute.name, attribute.text);
    }
    for (const MMKey association : pending_.associations) {
        builder_.addAssociation(object, association);
    }
    for (const Feature& reference : pending_.references) {
        builder_.addReference(object, reference.name, reference.text);
    }
}

void JsonHandler::finish() const {
    if ((seen_ & (1U << static_cast<unsigned>(Member::objects))) == 0) {
        builder_.source().fail(stream_.Tell(), "The document has no \"objects\".");
    }
}

// What stands here is not what belongs here.
void JsonHandler::fail(std::size_t offset) const { builder_.source().fail(offset, expectation()); }

void JsonHandler::failAt(const char* text, const std::string& sentence) const {
    builder_.source().fail(offset(text), sentence);
}

std::string JsonHandler::expectation() const {
    const auto name = [this] { return quoted(builder_.featureName(feature_)); };
    switch (level_) {
        case Level::attributes:
            return "The attribute " + name() + " must be a string, a number or a boolean.";
        case Level::associations:
        case Level::targets:
            return "The association " + name() + " must be a list of ids.";
        case Level::objects:
            return "\"objects\" must be a list of objects.";
        case Level::start:
        case Level::document:
        case Level::object:
            break;
    }
    switch (member_) {
        case Member::root:
            return "\"root\" must be a string.";
        case Member::id:
            return "\"id\" must be a string.";
        case Member::className:
            return "\"class\" must be a string.";
        case Member::attributes:
            return "\"attributes\" must be an object.";
        case Member::associations:
            return "\"associations\" must be an object.";
        case Member::objects:
        case Member::none:
            break;
    }
    return "\"objects\" must be a list of objects.";
}

void parse(ModelBuilder& builder) {
    SourceText& source = builder.source();
    source.addLines();
    if (const void* const zero = std::memchr(source.data(), '\0', source.size())) {
        source.fail(static_cast<std::size_t>(static_cast<const char*>(zero) - source.data()),
                    "A zero byte stands in the document.");
    }
    constexpr unsigned flags = rapidjson::kParseInsituFlag | rapidjson::kParseValidateEncodingFlag |
                               rapidjson::kParseNumbersAsStringsFlag;
    Stream stream(source.data());
    JsonHandler handler(builder, stream);
    rapidjson::Reader parser;
    const rapidjson::ParseResult result = parser.Parse<flags>(stream, handler);
    if (result.IsError()) {
        source.fail(result.Offset(), rapidjson::GetParseError_En(result.Code()));
    }
    handler.finish();
}

}  // namespace

std::unique_ptr<RepositoryModel> JsonReader::read(SourceText source, const ReadOptions& options) {
    ModelBuilder builder(std::move(source), options.metamodel, ModelBuilder::References::exactIds);
    parse(builder);
    return builder.finish();
}
