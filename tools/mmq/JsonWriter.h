// Writing JSON piece by piece.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mmq {

/// Composes one JSON document, on one line or indented. The caller sees to it that what is begun is
/// ended, and that members of objects have names.
class JsonWriter {
public:
    enum class Layout { oneLine, indented };

    explicit JsonWriter(Layout layout) : isIndented_(layout == Layout::indented) {}

    /// An object or a list, as a member of the object that is open if it has a name.
    void beginObject(std::string_view name = {}) { begin(name, '{'); }
    void beginList(std::string_view name = {}) { begin(name, '['); }
    void endObject() { end('}'); }
    void endList() { end(']'); }

    /// Members of the object that is open.
    void add(std::string_view name, std::string_view text);
    void add(std::string_view name, const char* text) { add(name, std::string_view(text)); }
    void add(std::string_view name, std::uint64_t number) { addJson(name, std::to_string(number)); }
    void add(std::string_view name, bool value) { addJson(name, value ? "true" : "false"); }
    /// A member whose value is JSON already.
    void addJson(std::string_view name, std::string_view json);

    const std::string& text() const { return text_; }

private:
    void begin(std::string_view name, char bracket);
    void end(char bracket);
    void startValue(std::string_view name);
    void breakLine();

    bool isIndented_;
    std::string text_;
    std::vector<bool> isEmpty_;  // of each thing that is open
};

}  // namespace mmq
