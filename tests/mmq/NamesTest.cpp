// Misspelt names: each real name of the shop and of the tables of UML and Ecore, with one letter
// changed, must be refused, and most must come back as suggestions. Slips are made in a fixed way,
// so that a run can be repeated.
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "mmq/ConsoleSession.h"

namespace {

constexpr const char* shop = "examples/webshop.uml";

/// A name as it stands in an expression.
struct Name {
    std::string before;
    std::string name;
    std::string after;
};

/// Names that are applied to the objects of one class.
struct Group {
    std::string onClass;
    std::vector<Name> names;
};

Name attribute(const std::string& name) { return {"$", name, ""}; }
Name association(const std::string& name) { return {"string size [", name, "]"}; }

std::vector<Group> groupsOfTheShop() {
    std::vector<Group> groups(1);
    const std::string json = runCommand(std::string("mmq info --format json --model ") + shop);
    rapidjson::Document info;
    info.Parse(json.c_str());
    for (const auto& summary : info["classes"].GetArray()) {
        Group group{summary["name"].GetString(), {}};
        for (const auto& name : summary["attributes"].GetArray()) {
            group.names.push_back(attribute(name.GetString()));
        }
        for (const auto& name : summary["associations"].GetArray()) {
            group.names.push_back(association(name.GetString()));
        }
        groups[0].names.push_back({"string size (all \"", group.onClass, "\")"});
        groups.push_back(group);
    }
    return groups;
}

// The classes of the tables with what each declares itself.
std::vector<Group> groupsOfTheTables() {
    std::ifstream file(EXPRPARSER_SOURCE_DIR "/tools/mmq/names/StandardMetamodels.inc");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    const std::regex row("\\{\"(\\w+)\", \"[^\"]*\",((?:\\s*\"[^\"]*\")*)\\}");
    const std::regex feature("[\\^/]?(\\w+)(<?>\\w+)?");
    const std::sregex_iterator end;
    std::vector<Group> groups;
    for (std::sregex_iterator found(text.begin(), text.end(), row); found != end; ++found) {
        Group group{(*found)[1], {}};
        const std::string features = (*found)[2];
        for (std::sregex_iterator f(features.begin(), features.end(), feature); f != end; ++f) {
            group.names.push_back((*f)[2].matched ? association((*f)[1]) : attribute((*f)[1]));
        }
        groups.push_back(group);
    }
    return groups;
}

// The name with a letter dropped, doubled, exchanged for another, or swapped with the next.
std::string slip(const std::string& name, std::size_t number) {
    std::string result = name;
    const std::size_t at = 1 + number / 4 % (name.size() - 1);
    switch (number % 4) {
        case 0:
            return result.erase(at, 1);
        case 1:
            return result.insert(at, 1, result[at]);
        case 2:
            result[at] = result[at] == 'e' ? 'o' : 'e';
            return result;
        default:
            std::swap(result[at - 1], result[at]);
            return result;
    }
}

// What was suggested at each column at which there is an error.
std::map<int, std::string> hintsByColumn(const std::string& output) {
    std::map<int, std::string> hints;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        rapidjson::Document message;
        if (line.front() == '{' && !message.Parse(line.c_str()).HasParseError() &&
            std::string(message["source"].GetString()) == "mmq") {
            std::string& hint = hints[message["column"].GetInt()];
            hint = message["severity"].GetInt() == 3 ? "" : message["message"].GetString();
        }
    }
    return hints;
}

/// Makes slips of names, and counts what becomes of them.
class SlipCount {
public:
    explicit SlipCount(const std::vector<Group>& groups) {
        for (const Group& group : groups) {
            for (const Name& name : group.names) {
                known_.insert(name.name);
            }
        }
    }

    void check(const Group& group) {
        std::string text;
        std::map<int, std::string> names;  // by column
        for (std::size_t i = 0; i < 2 * group.names.size(); ++i) {
            const Name& name = group.names[i / 2];
            const std::string wrong = slip(name.name, 7 * made_ + 3 * i);
            if (known_.count(wrong) == 0) {  // else it is none
                text += (text.empty() ? "" : " + ") + name.before;
                const bool isBare = name.before == "$";
                names[static_cast<int>(text.size()) + (isBare ? 1 : 0)] = name.name;
                text += wrong + name.after;
            }
        }
        if (!names.empty()) {
            count(group, text, names);
        }
    }

    std::size_t made() const { return made_; }
    std::size_t suggested() const { return suggested_; }

private:
    void count(const Group& group, const std::string& text,
               const std::map<int, std::string>& names) {
        const std::string on = group.onClass.empty() ? "" : " --on " + group.onClass;
        const std::map<int, std::string> hints = hintsByColumn(runCommand(
            std::string("mmq check --messages json --model ") + shop + on + " '" + text + "'"));
        EXPECT_EQ(hints.size(), names.size()) << group.onClass << ": " << text;
        for (const auto& [column, name] : names) {
            const auto hint = hints.find(column);
            ++made_;
            ASSERT_NE(hint, hints.end()) << group.onClass << ": " << text << ": " << name;
            suggested_ += std::regex_search(hint->second, std::regex("\\b" + name + "\\b")) ? 1 : 0;
        }
    }

    std::set<std::string> known_;
    std::size_t made_ = 0;
    std::size_t suggested_ = 0;
};

TEST(Names, SlipsAreCaughtAndMendedByASuggestion) {
    std::vector<Group> groups = groupsOfTheShop();
    const std::vector<Group> tables = groupsOfTheTables();
    groups.insert(groups.end(), tables.begin(), tables.end());
    SlipCount slips(groups);
    for (const Group& group : groups) {
        slips.check(group);
    }
    std::cout << slips.suggested() << " of " << slips.made() << " slips have a right suggestion\n";
    EXPECT_GE(slips.made(), 1000U);
    EXPECT_GE(10 * slips.suggested(), 9 * slips.made());
}

}  // namespace
