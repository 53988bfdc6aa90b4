// Lines are edited by libedit, which calls back for the prompt and for Tab.
#include <histedit.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <exception>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>
#include <vector>

#include "repl/Interrupt.h"
#include "repl/LineReader.h"

namespace mmq {

namespace {

namespace fs = std::filesystem;

constexpr int keptInputs = 1000;
constexpr const char* indentation = "    ";

// The file of the history, in a folder that is there; empty where there can be none.
std::string historyFile() {
    const char* const state = std::getenv("XDG_STATE_HOME");
    const char* const home = std::getenv("HOME");
    fs::path folder;
    if (state != nullptr && *state == '/') {
        folder = state;
    } else if (home != nullptr && *home != '\0') {
        folder = fs::path(home) / ".local" / "state";
    } else {
        return {};
    }
    folder /= "mmq";
    std::error_code error;
    fs::create_directories(folder, error);
    return error ? std::string() : (folder / "history").string();
}

std::string commonBeginning(const std::vector<CompletionItem>& items) {
    std::string common = items.front().text;
    for (const CompletionItem& item : items) {
        const auto [end, unused] =
            std::mismatch(common.begin(), common.end(), item.text.begin(), item.text.end());
        common.erase(end, common.end());
    }
    return common;
}

std::size_t terminalWidth() {
    constexpr std::size_t usual = 80;
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

// Lists items in columns, down and then to the right, below the line that is being edited.
void list(const std::vector<CompletionItem>& items) {
    constexpr std::size_t most = 200;
    const std::size_t count = std::min(items.size(), most);
    std::size_t width = 0;
    for (std::size_t i = 0; i < count; ++i) {
        width = std::max(width, items[i].text.size() + 2);
    }
    const std::size_t columns = std::max<std::size_t>(1, terminalWidth() / width);
    const std::size_t rows = (count + columns - 1) / columns;
    std::cout << '\n';
    for (std::size_t row = 0; row < rows; ++row) {
        std::string line;
        for (std::size_t i = row; i < count; i += rows) {
            line.resize((i / rows) * width, ' ');
            line += items[i].text;
        }
        std::cout << line << '\n';
    }
    if (count < items.size()) {
        std::cout << "and " << items.size() - count << " more\n";
    }
    std::cout.flush();
}

/// What stands behind the only item that fits: what closes a name, or a blank behind a word.
std::string endingOf(const CompletionItem& item, char closing, const char* rest) {
    if (closing != '\0') {
        return *rest == closing ? std::string() : std::string(1, closing);
    }
    const bool isWord =
        item.kind == CompletionKind::keyword || item.kind == CompletionKind::function;
    return isWord && *rest != ' ' ? " " : "";
}

class EditingReader : public LineReader {
public:
    explicit EditingReader(LineCompleter completer)
        : completer_(std::move(completer)),
          history_(history_init()),
          edit_(el_init("mmq", stdin, stdout, stderr)),
          file_(historyFile()) {
        HistEvent event;
        history(history_, &event, H_SETSIZE, keptInputs);
        history(history_, &event, H_SETUNIQUE, 1);
        if (!file_.empty()) {
            history(history_, &event, H_LOAD, file_.c_str());
        }
        el_set(edit_, EL_CLIENTDATA, this);
        el_set(edit_, EL_PROMPT, &EditingReader::prompt);
        el_set(edit_, EL_HIST, &history, history_);
        el_set(edit_, EL_EDITOR, "emacs");
        el_set(edit_, EL_SIGNAL, 1);  // puts the terminal right before it stops and after it
        // el_set would copy these names and lose the copies.
        el_wset(edit_, EL_ADDFN, L"mmq-complete", L"Complete a name", &EditingReader::complete);
        el_set(edit_, EL_BIND, "^I", "mmq-complete", nullptr);
        el_set(edit_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
        el_source(edit_, nullptr);
    }
    ~EditingReader() override {
        el_end(edit_);
        history_end(history_);
    }

    Outcome read(const std::string& prompt, std::string& line) override {
        prompt_ = prompt;
        std::cout.flush();
        Interrupt::clear();
        el_resize(edit_);
        int count = 0;
        const char* const text = el_gets(edit_, &count);
        if (text == nullptr || count <= 0) {
            std::cout << '\n';
            return Interrupt::flag() ? Outcome::interrupted : Outcome::end;
        }
        line.assign(text, static_cast<std::size_t>(count));
        if (line.back() == '\n') {
            line.pop_back();
        }
        return Outcome::line;
    }

    // What cannot be written is no reason to stop.
    void remember(const std::string& input) override {
        HistEvent event;
        history(history_, &event, H_ENTER, input.c_str());
        if (!file_.empty()) {
            history(history_, &event, H_SAVE, file_.c_str());
        }
    }

private:
    static EditingReader& readerOf(EditLine* edit) {
        void* data = nullptr;
        el_get(edit, EL_CLIENTDATA, &data);
        return *static_cast<EditingReader*>(data);
    }

    static char* prompt(EditLine* edit) { return readerOf(edit).prompt_.data(); }

    static unsigned char complete(EditLine* edit, wint_t /*key*/) {
        try {
            return readerOf(edit).completeHere();
        } catch (const std::exception&) {
            return CC_ERROR;  // no exception can pass through the library
        }
    }

    unsigned char completeHere() {
        const LineInfo* const info = el_line(edit_);
        const std::string line(info->buffer, info->lastchar);
        const auto cursor = static_cast<std::size_t>(info->cursor - info->buffer);
        if (line.find_first_not_of(" \t") >= cursor) {  // lines are indented by it, pasted ones too
            return el_insertstr(edit_, indentation) == 0 ? CC_REFRESH : CC_ERROR;
        }
        const Completion completion = completer_(line, cursor);
        const std::string written = line.substr(completion.offset, cursor - completion.offset);
        const std::vector<CompletionItem> items = completion.matching(written);
        if (items.empty()) {
            return CC_REFRESH_BEEP;
        }
        std::string added = commonBeginning(items).substr(written.size());
        if (items.size() == 1) {
            added += endingOf(items.front(), completion.closing, line.c_str() + cursor);
        } else if (added.empty()) {
            list(items);
            return CC_REDISPLAY;
        }
        return el_insertstr(edit_, added.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
    }

    LineCompleter completer_;
    History* history_;
    EditLine* edit_;
    std::string file_;
    std::string prompt_;
};

}  // namespace

std::unique_ptr<LineReader> makeEditingReader(LineCompleter completer) {
    return std::make_unique<EditingReader>(std::move(completer));
}

}  // namespace mmq
