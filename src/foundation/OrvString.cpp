#include "foundation/OrvString.h"

#include <cstring>
#include <string>

#include "support/OrvException.h"

namespace {

std::string_view viewOf(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

}  // namespace

OrvString::OrvString() = default;
OrvString::OrvString(const OrvString& other) = default;
OrvString::OrvString(const char* text) : string_(text) {}
OrvString::OrvString(std::string_view text) : string_(text) {}
OrvString::~OrvString() = default;
OrvString& OrvString::operator=(const OrvString& other) = default;

OrvString& OrvString::operator=(const char* text) {
    string_.assign(viewOf(text));
    return *this;
}

void OrvString::checkPosition(std::size_t position) const {
    if (position > length()) {
        throwLogged(OrvException("Position " + std::to_string(position) +
                                 " is past the end of a string of length " +
                                 std::to_string(length())));
    }
}

void OrvString::insert(std::size_t position, const OrvString& text) {
    checkPosition(position);
    string_.insert(position, text.view());
}

void OrvString::append(const OrvString& text) { string_.append(text.view()); }
void OrvString::append(const char* text) { string_.append(viewOf(text)); }

void OrvString::append(const OrvString& text, std::size_t count) {
    string_.append(text.view().substr(0, count));
}

void OrvString::append(const char* text, std::size_t count) {
    string_.append(text != nullptr ? std::string_view(text, strnlen(text, count))
                                   : std::string_view());
}

void OrvString::remove(std::size_t position) { remove(position, notFound); }

void OrvString::remove(std::size_t position, std::size_t count) {
    checkPosition(position);
    string_.remove(position, count);
}

void OrvString::replaceStr(const OrvString& from, const OrvString& to) {
    if (from.isEmpty()) {
        return;
    }
    std::string result;
    std::size_t start = 0;
    for (std::size_t hit = string_.index(from.view(), 0); hit != notFound;
         hit = string_.index(from.view(), start)) {
        result.append(view().substr(start, hit - start)).append(to.view());
        start = hit + from.length();
    }
    result.append(view().substr(start));
    string_.assign(result);
}

bool OrvString::startsWith(const char* prefix) const { return view().starts_with(viewOf(prefix)); }

std::size_t OrvString::find(const OrvString& text) const { return string_.index(text.view()); }
std::size_t OrvString::first(char byte) const { return view().find(byte); }
std::size_t OrvString::first(const OrvString& set) const { return string_.first(set.view()); }
std::size_t OrvString::last(char byte) const { return string_.last(byte); }

void OrvString::toUpper() { string_.toUpper(); }
void OrvString::toLower() { string_.toLower(); }
std::uint32_t OrvString::hash() const { return string_.hash(); }
