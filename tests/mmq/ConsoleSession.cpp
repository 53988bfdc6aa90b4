#include "mmq/ConsoleSession.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace {

bool isCommand(const std::string& line) { return line.rfind("$ ", 0) == 0; }

// The file that a line like "[`src/main.cpp`](../src/main.cpp):" names; empty for other lines.
std::string quotedFile(const std::string& line) {
    const std::size_t end = line.find("`](");
    const bool isQuote = line.rfind("[`", 0) == 0 && end != std::string::npos && line.back() == ':';
    return isQuote ? line.substr(2, end - 2) : "";
}

std::string joined(const std::vector<std::string>& lines, std::size_t first, std::size_t last) {
    std::string text;
    for (std::size_t i = first; i < last; ++i) {
        text += lines[i] + "\n";
    }
    return text;
}

}  // namespace

SessionFile::SessionFile(std::string path, bool isDocument) : path_(std::move(path)) {
    std::ifstream file(path_);
    for (std::string line; std::getline(file, line);) {
        lines_.push_back(line);
    }
    if (!isDocument) {
        readSession(0, lines_.size());
        return;
    }
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (lines_[i].rfind("```", 0) == 0) {
            i = readBlock(i);
        }
    }
}

std::size_t SessionFile::readBlock(std::size_t opening) {
    const std::size_t first = opening + 1;
    std::size_t last = first;
    while (last < lines_.size() && lines_[last] != "```") {
        ++last;
    }
    const std::string quoted = opening >= 2 ? quotedFile(lines_[opening - 2]) : "";
    if (lines_[opening] == "```console") {
        readSession(first, last);
    } else if (!quoted.empty()) {
        commands_.push_back({first, "cat " + quoted, joined(lines_, first, last), first, last});
    }
    return last;
}

void SessionFile::readSession(std::size_t first, std::size_t last) {
    std::size_t i = first;
    while (i < last && !isCommand(lines_[i])) {
        ++i;
    }
    while (i < last) {
        ConsoleCommand command;
        command.line = i + 1;
        command.command = lines_[i].substr(2);
        while (command.command.back() == '\\' && i + 1 < last) {
            command.command.pop_back();
            command.command += lines_[++i];
        }
        command.first = ++i;
        while (i < last && !isCommand(lines_[i])) {
            ++i;
        }
        command.last = i;
        command.output = joined(lines_, command.first, command.last);
        commands_.push_back(command);
    }
}

void SessionFile::rewrite(const std::vector<std::string>& outputs) const {
    std::ofstream file(path_);
    std::size_t next = 0;
    for (std::size_t i = 0; i < commands_.size(); ++i) {
        file << joined(lines_, next, commands_[i].first) << outputs[i];
        next = commands_[i].last;
    }
    file << joined(lines_, next, lines_.size());
}

std::string runCommand(const std::string& command) {
    std::string script = command;
    for (std::size_t at = script.find("./mmq"); at != std::string::npos;
         at = script.find("./mmq", at)) {
        script.erase(at, 2);
    }
    const std::string line =
        "cd '" EXPRPARSER_SOURCE_DIR "' && PATH='" MMQ_DIR "':$PATH; {\n" + script + "\n} 2>&1";
    FILE* const pipe = popen(line.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("popen failed");
    }
    std::string output;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe)) {
        output.append(buffer.data(), count);
    }
    const int status = pclose(pipe);
    if (!output.empty() && output.back() != '\n') {
        output += '\n';
    }
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return code == 0 ? output : output + "[" + std::to_string(code) + "]\n";
}
