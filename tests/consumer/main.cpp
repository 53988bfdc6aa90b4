// Asks a folder of files three questions, through the installed library alone.
#include <iostream>

#include "FolderModel.h"
#include "api/ExprParser.h"
#include "fliodram/MMEvaluationContext.h"

namespace {

/// Writes the errors of a compilation.
class Messages : public ExprParserDialogs {
    bool askYesNo(const std::string&, bool defaultAnswer) override { return defaultAnswer; }
    void showMessage(int line, int column, const std::string&, const std::string& message,
                     MessageSeverity severity, bool) override {
        if (severity == Error) {
            std::cout << line << ":" << column << ": " << message << "\n";
        }
    }
};

Entry& add(std::deque<Entry>& entries, Entry* parent, const std::string& name,
           const std::string& size = "") {
    const std::string path = (parent == nullptr ? "" : parent->path + "/") + name;
    Entry& entry = entries.emplace_back(Entry{path, name, size, parent, {}});
    if (parent != nullptr) {
        parent->entries.push_back(FolderModel::handle(&entry));
    }
    return entry;
}

}  // namespace

int main() {
    std::deque<Entry> entries;
    Entry& home = add(entries, nullptr, "home");
    Entry& photos = add(entries, &home, "photos");
    add(entries, &photos, "beach.jpg", "70000");
    add(entries, &photos, "tree.jpg", "90000");
    add(entries, &home, "letter.txt", "1200");

    const FolderModel model(entries);
    MMEvaluationContext context(model);
    Messages messages;

    const auto isFull = ExprParser::parseCondition(messages, "size [entries] > 1");
    const auto listing = ExprParser::parseAssociatedAttribute(
        messages, R"($name + ": " + comma map {$name} over sort {$name} over [entries])");
    const auto large = ExprParser::parseComplexAssociation(
        messages,
        R"(filter {$size <> "" and integer $size > 50000} over down:^[entries] -> @down)");
    if (!isFull || !listing || !large) {
        return 1;
    }
    const MMObject object = FolderModel::handle(&home);
    std::cout << std::boolalpha << isFull->apply(context, object).getBoolean() << "\n"
              << listing->apply(context, object).asString().view() << "\n";
    for (const MMObject found : large->apply(context, object)) {
        std::string buffer;
        std::cout << model.uid(found, buffer) << "\n";
    }
    ExprParser::parseCondition(messages, "$name and true");
}
