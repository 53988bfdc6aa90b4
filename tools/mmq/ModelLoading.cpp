#include "ModelLoading.h"

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <thread>
#include <utility>

namespace mmq {

namespace {

/// A bar on the standard error stream, if that is a terminal, from 300 ms after it is made until
/// it goes; then the line is cleared. How long reading takes is not known beforehand: the bar
/// moves to and fro.
class ProgressBar {
public:
    explicit ProgressBar(const std::string& label) : label_(label) {
        if (isatty(STDERR_FILENO) != 0) {
            thread_ = std::thread([this] { run(); });
        }
    }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar() {
        if (thread_.joinable()) {
            {
                const std::lock_guard<std::mutex> lock(mutex_);
                isDone_ = true;
            }
            condition_.notify_one();
            thread_.join();
        }
    }

private:
    void run() {
        using std::chrono::milliseconds;
        std::unique_lock<std::mutex> lock(mutex_);
        const auto isDone = [this] { return isDone_; };
        if (condition_.wait_for(lock, milliseconds(300), isDone)) {
            return;
        }
        for (int tick = 0; !condition_.wait_for(lock, milliseconds(80), isDone); ++tick) {
            draw(tick);
        }
        std::cerr << "\r\033[K" << std::flush;
    }

    void draw(int tick) const {
        constexpr int width = 20;
        constexpr int length = 4;
        const int phase = tick % (2 * (width - length));
        const int position = phase < width - length ? phase : 2 * (width - length) - phase;
        std::string bar(width, ' ');
        bar.replace(static_cast<std::size_t>(position), length, length, '#');
        std::cerr << "\rReading " << label_ << " [" << bar << "]" << std::flush;
    }

    std::string label_;
    std::mutex mutex_;
    std::condition_variable condition_;
    bool isDone_ = false;
    std::thread thread_;
};

}  // namespace

ReadOptions readOptions(const Options& options) {
    ReadOptions result;
    if (!options.metamodelFile.empty()) {
        result.metamodel = Metamodel::readFile(options.metamodelFile);
    }
    return result;
}

std::unique_ptr<RepositoryModel> loadModel(const Options& options) {
    return std::move(loadModels({options.modelFile}, options).front());
}

std::vector<std::unique_ptr<RepositoryModel>> loadModels(const std::vector<std::string>& files,
                                                         const Options& options) {
    const ReadOptions metamodel = readOptions(options);
    std::vector<std::unique_ptr<RepositoryModel>> models;
    for (const std::string& file : files) {
        const ProgressBar bar(file);
        models.push_back(readModel(file, metamodel));
    }
    return models;
}

}  // namespace mmq
