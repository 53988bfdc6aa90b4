// The queries of examples/queries, asked of real models and held against answers that were computed
// independently. The models are not part of this tree: EXPRPARSER_MODELS names their folder.
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "mmq/ConsoleSession.h"

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

// An answer as the queries write it: lists joined by commas, fields as name=value.
std::string textOf(const rapidjson::Value& answer) {
    std::string text;
    if (answer.IsArray()) {
        for (const rapidjson::Value& element : answer.GetArray()) {
            text += (text.empty() ? "" : ", ") + textOf(element);
        }
    } else if (answer.IsObject()) {
        for (const auto& member : answer.GetObject()) {
            text += (text.empty() ? "" : ", ") + std::string(member.name.GetString()) + "=" +
                    textOf(member.value);
        }
    } else if (answer.IsBool()) {
        text = answer.GetBool() ? "true" : "false";
    } else {
        text = answer.IsString() ? answer.GetString() : std::to_string(answer.GetInt());
    }
    return text;
}

TEST(Queries, AgreeWithTheAnswers) {
    const char* const folder = std::getenv("EXPRPARSER_MODELS");
    if (folder == nullptr || !fs::exists(fs::path(folder) / "questions.json")) {
        GTEST_SKIP() << "EXPRPARSER_MODELS names no folder with questions.json";
    }
    std::map<std::string, fs::path> queries;
    for (const auto& entry : fs::directory_iterator(EXPRPARSER_SOURCE_DIR "/examples/queries")) {
        const std::string name = entry.path().filename().string();
        queries[name.substr(0, name.find('-'))] = entry.path();
    }
    rapidjson::Document questions;
    questions.Parse(contentOf(fs::path(folder) / "questions.json").c_str());
    ASSERT_TRUE(questions.IsArray());
    for (const rapidjson::Value& question : questions.GetArray()) {
        const std::string id = question["id"].GetString();
        ASSERT_EQ(queries.count(id), 1U) << "no query for " << id;
        const std::string command = std::string("mmq eval --model '") + folder + "/" +
                                    question["model"].GetString() + "' -f '" +
                                    queries[id].string() + "'";
        EXPECT_EQ(runCommand(command), textOf(question["answer"]) + "\n") << id;
    }
}

// As many lines as the models have operations, whose parameters and types were read by hand.
TEST(Queries, GiveTheSignaturesOfAllOperations) {
    const char* const folder = std::getenv("EXPRPARSER_MODELS");
    if (folder == nullptr || !fs::exists(fs::path(folder) / "uml-fruit.uml")) {
        GTEST_SKIP() << "EXPRPARSER_MODELS names no folder with uml-fruit.uml";
    }
    const auto signatures = [folder](const std::string& model) {
        return runCommand(std::string("mmq eval --model '") + folder + "/" + model +
                          "' --on Operation 'opSig this'");
    };
    const std::string fruit = signatures("uml-fruit.uml");
    const std::string ecore = signatures("uml-ecore-metamodel.uml");
    EXPECT_EQ(std::count(fruit.begin(), fruit.end(), '\n'), 12) << fruit;
    EXPECT_EQ(std::count(ecore.begin(), ecore.end(), '\n'), 31) << ecore;
    EXPECT_NE(fruit.find("ripen( : Boolean, color : Color) : void\n"), std::string::npos) << fruit;
    EXPECT_NE(ecore.find("isInstance( : EBoolean, object : EJavaObject) : void\n"),
              std::string::npos)
        << ecore;
}

}  // namespace
