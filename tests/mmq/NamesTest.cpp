// Misspelt names: each real name of the shop and of the tables of UML and Ecore, with one letter
// changed, must be refused, and most must come back as suggestions. Slips are made in a fixed way,
// so that a run can be repeated.
#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <set>
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

// Calls `take` for each match of a pattern in a text.
template <class Take>
void forEachMatch(const std::string& text, const char* pattern, const Take& take) {
    const std::regex regex(pattern);
    const std::sregex_iterator end;
    for (std::sregex_iterator found(text.begin(), text.end(), regex); found != end; ++found) {
        take(*found);
    }
}

std::vector<Group> groupsOfTheShop() {
    std::vector<Group> groups(1);
    const std::string csv = runCommand(std::string("mmq info --format csv --model ") + shop);
    forEachMatch(csv, "(\\w+),\\d+,([\\w ]*),([\\w ]*)\n", [&](const std::smatch& line) {
        Group group{line[1], {}};
        forEachMatch(line[2], "\\w+",
                     [&](const std::smatch& name) { group.names.push_back(attribute(name[0])); });
        forEachMatch(line[3], "\\w+",
                     [&](const std::smatch& name) { group.names.push_back(association(name[0])); });
        groups[0].names.push_back({"string size (all \"", group.onClass, "\")"});
        groups.push_back(group);
    });
    return groups;
}

// The classes of the tables with what each declares itself.
std::vector<Group> groupsOfTheTables() {
    std::ifstream file(EXPRPARSER_SOURCE_DIR "/tools/mmq/names/StandardMetamodels.inc");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    std::vector<Group> groups;
    const auto addClass = [&](const std::smatch& row) {
        Group group{row[1], {}};
        forEachMatch(row[2], "[\\^/]?(\\w+)(<?>\\w+)?", [&](const std::smatch& feature) {
            group.names.push_back(feature[2].matched ? association(feature[1])
                                                     : attribute(feature[1]));
        });
        groups.push_back(group);
    };
    forEachMatch(text, "\\{\"(\\w+)\", \"[^\"]*\",((?:\\s*\"[^\"]*\")*)\\}", addClass);
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
    forEachMatch(output, "\"column\":(\\d+),\"source\":\"mmq\",(\"message\":.*),\"severity\":(\\d)",
                 [&](const std::smatch& line) {
                     hints[std::stoi(line[1])] = line[3] == "3" ? std::string() : line[2].str();
                 });
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
