// The queries in jq, which runs as a process: it reads the model once, then answers line by line.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <stdexcept>

#include "QueryEngine.h"
#include "SyntheticDocuments.h"

namespace {

/// A process with which lines are exchanged; ended with its owner.
class LineProcess {
public:
    explicit LineProcess(const std::vector<std::string>& command) {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("There is no pipe.");
        }
        process_ = fork();
        if (process_ == 0) {
            dup2(in[0], 0);
            dup2(out[1], 1);
            execute(command);
        }
        close(in[0]);
        close(out[1]);
        requests_ = fdopen(in[1], "w");
        answers_ = fdopen(out[0], "r");
    }
    LineProcess(const LineProcess&) = delete;
    LineProcess& operator=(const LineProcess&) = delete;
    ~LineProcess() {
        std::fclose(requests_);
        std::fclose(answers_);
        waitpid(process_, nullptr, 0);
    }

    /// Sends a line and reads the first one of the answer.
    std::string ask(const std::string& line) {
        std::fprintf(requests_, "%s\n", line.c_str());
        std::fflush(requests_);
        return readLine();
    }

    std::string readLine() {
        char* text = nullptr;
        std::size_t capacity = 0;
        const ssize_t size = getline(&text, &capacity, answers_);
        const std::unique_ptr<char, decltype(&free)> owner(text, free);
        if (size <= 0) {
            throw std::runtime_error("The process gives no answer.");
        }
        return {text, static_cast<std::size_t>(size - 1)};
    }

    /// The processor's time that the process has taken so far.
    std::chrono::nanoseconds processorTime() const {
        clockid_t clock{};
        timespec time{};
        if (clock_getcpuclockid(process_, &clock) != 0 || clock_gettime(clock, &time) != 0) {
            throw std::runtime_error("The process has no clock.");
        }
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

private:
    [[noreturn]] static void execute(const std::vector<std::string>& command) {
        std::vector<char*> arguments;
        for (const std::string& argument : command) {
            arguments.push_back(const_cast<char*>(argument.c_str()));
        }
        arguments.push_back(nullptr);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }

    pid_t process_;
    std::FILE* requests_;
    std::FILE* answers_;
};

/// Sends the names of queries.
class JqEngine final : public QueryEngine {
public:
    explicit JqEngine(const std::string& path)
        : process_({"jq", "--null-input", "--raw-output", "--unbuffered", "--slurpfile", "model",
                    path, "--from-file", BENCH_DIR "/queries.jq"}) {}

    PreparedQuery prepare(const std::string& query) override {
        return {[this, query] { return ask("run", query); },
                [this, query] {
                    std::string lines;
                    for (std::size_t left = ask("answer", query); left > 0; --left) {
                        lines.append(process_.readLine()).append("\n");
                    }
                    return lines;
                },
                [this] { return process_.processorTime(); }};
    }

private:
    // The size of the result.
    std::size_t ask(const std::string& request, const std::string& query) {
        return std::stoul(process_.ask("\"" + request + " " + query + "\""));
    }

    LineProcess process_;
};

}  // namespace

std::unique_ptr<QueryEngine> makeJqEngine(const synthetic::Model& model, const std::string& path) {
    std::ofstream(path) << synthetic::jsonDocument(model);
    return std::make_unique<JqEngine>(path);
}
