// What is wrong with a file.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "Messages.h"
#include "lint/Rule.h"

namespace mmq {

/// Takes the errors of one file: hands each on as it comes, with its place, and counts them.
/// Borrows the sink.
class FileErrors {
public:
    FileErrors(std::shared_ptr<const SourceFile> file, MessageSink& sink)
        : file_(std::move(file)), sink_(sink) {}

    const std::shared_ptr<const SourceFile>& file() const { return file_; }
    bool isEmpty() const { return count_ == 0; }

    /// An error about what begins at `offset`, up to the end of its line or to `endOffset`.
    void add(std::size_t offset, const std::string& sentence);
    void add(std::size_t offset, std::size_t endOffset, const std::string& sentence);
    void add(const LocatedText& text, const std::string& sentence) {
        add(text.origin.offsets.front(), text.origin.offsets.back(), sentence);
    }
    void addHint(const std::string& hint) const;

private:
    std::shared_ptr<const SourceFile> file_;
    MessageSink& sink_;
    int count_ = 0;
};

}  // namespace mmq
