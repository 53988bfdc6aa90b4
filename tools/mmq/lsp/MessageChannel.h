// Messages of the Language Server Protocol on streams: a header with the length of the content, an
// empty line, the content (LSP 3.17, "Base Protocol").
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

namespace mmq {

/// Takes messages from one stream and puts others on another. Borrows the streams; belongs to one
/// thread.
class MessageChannel {
public:
    /// What was read: the content of a message; a header that does not tell the length of one, or
    /// tells one that nobody needs; the end of the stream, perhaps within a message.
    enum class Outcome { message, malformed, end };

    MessageChannel(std::istream& input, std::ostream& output) : input_(input), output_(output) {}

    /// Reads the next message. Behind a header that was malformed, what stands before the next one
    /// is passed over.
    Outcome read(std::string& content);
    /// Whether more of the stream is there already.
    bool hasMore() const;
    void write(const std::string& content);

private:
    bool readLine(std::string& line);
    Outcome readContent(std::size_t length, std::string& content);

    std::istream& input_;
    std::ostream& output_;
};

}  // namespace mmq
