#include "JsonWriter.h"

#include "foundation/TextOutput.h"

namespace mmq {

void JsonWriter::add(std::string_view name, std::string_view text) {
    startValue(name);
    appendJsonString(text_, text);
}

void JsonWriter::addJson(std::string_view name, std::string_view json) {
    startValue(name);
    text_.append(json);
}

void JsonWriter::begin(std::string_view name, char bracket) {
    startValue(name);
    text_.push_back(bracket);
    isEmpty_.push_back(true);
}

void JsonWriter::end(char bracket) {
    const bool isEmpty = isEmpty_.back();
    isEmpty_.pop_back();
    if (!isEmpty) {
        breakLine();
    }
    text_.push_back(bracket);
}

// What stands before a value: the comma behind the last one, and its name.
void JsonWriter::startValue(std::string_view name) {
    if (!isEmpty_.empty()) {
        text_.append(isEmpty_.back() ? "" : ",");
        isEmpty_.back() = false;
        breakLine();
    }
    if (!name.empty()) {
        appendJsonString(text_, name);
        text_.append(isIndented_ ? ": " : ":");
    }
}

void JsonWriter::breakLine() {
    if (isIndented_) {
        text_.append("\n").append(2 * isEmpty_.size(), ' ');
    }
}

}  // namespace mmq
