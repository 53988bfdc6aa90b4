// Numbers and texts as they are written for people and programs.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "foundation/TextOutput.h"

namespace {

TEST(TextOutput, IsAsOthersReadIt) {
    using Write = std::function<void(std::string&)>;
    const auto real = [](double value) {
        return [value](std::string& text) { appendReal(text, value); };
    };
    const auto rounded = [](double value) {
        return [value](std::string& text) { appendRoundedReal(text, value); };
    };
    const auto json = [](const std::string& content) {
        return [content](std::string& text) { appendJsonString(text, content); };
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<Write, std::string>> rows = {
        {[](std::string& text) { appendInteger(text, -2147483648LL); }, "-2147483648"},
        {real(0.1), "0.1"},
        {real(2), "2"},
        {real(-0.0), "-0"},
        {real(1e300), "1e+300"},
        {real(-infinity), "-inf"},
        {real(-std::numeric_limits<double>::quiet_NaN()), "nan"},
        {rounded(1.0 / 3), "0.333333"},
        {rounded(1234567), "1.23457e+06"},
        {json("a b"), "\"a b\""},
        {json("\"\\\n\r\t"), R"("\"\\\n\r\t")"},
        {json(std::string("\0\x1f\x7f", 3)), "\"\\u0000\\u001f\x7f\""},
        // All of UTF-8, from its shortest sequences to its longest.
        {json("\xc2\x80\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf"
              "\xbf"),
         "\"\xc2\x80\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf"
         "\""},
    };
    for (const auto& [write, expected] : rows) {
        std::string text;
        write(text);
        EXPECT_EQ(text, expected);
    }
}

// Each byte of what is no UTF-8 is replaced by itself: too long, too large, halves of pairs, cut
// off.
TEST(TextOutput, ReplacesWhatIsNotUtf8) {
    const std::vector<std::pair<std::string, std::size_t>> rows = {
        {"\x80", 1},
        {"\xc1\xbf", 2},
        {"\xe0\x9f\xbf", 3},
        {"\xed\xa0\x80", 3},
        {"\xf0\x8f\xbf\xbf", 4},
        {"\xf4\x90\x80\x80", 4},
        {"\xf5\x80\x80\x80", 4},
        {"\xc3", 1},
        {"\xe2\x82", 2},
        {"\xe2\x28\xa1", 2},
    };
    for (const auto& [bytes, replaced] : rows) {
        std::string text;
        appendJsonString(text, bytes);
        std::size_t count = 0;
        for (std::size_t at = 0; (at = text.find("\\ufffd", at)) != std::string::npos; ++at) {
            ++count;
        }
        EXPECT_EQ(count, replaced) << testing::PrintToString(bytes);
    }
}

}  // namespace
