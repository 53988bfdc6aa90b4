// Recorded console sessions: commands and what they print.
#pragma once

#include <string>
#include <vector>

/// One command of a session with its recorded output.
struct ConsoleCommand {
    std::size_t line = 0;   ///< where it stands in its file, from 1
    std::string command;    ///< what a shell runs
    std::string output;     ///< both streams, and "[STATUS]" on a line where that is not 0
    std::size_t first = 0;  ///< the lines of the output in the file, from 0
    std::size_t last = 0;   ///< one past them
};

/// A text file that holds sessions: all of it, or its blocks between "```console" and "```". A
/// block below the line "[`FILE`](LINK):" is the file as it is.
///
/// A line that begins with "$ " is a command, a backslash at its end goes on with the next line;
/// what follows up to the next command or the end of the block is what it printed. Lines before
/// the first command are remarks.
class SessionFile {
public:
    /// Reads a file; `isDocument` tells that only its fenced blocks are sessions.
    SessionFile(std::string path, bool isDocument);

    const std::vector<ConsoleCommand>& commands() const { return commands_; }

    /// Writes the file again with these outputs in place of those recorded.
    void rewrite(const std::vector<std::string>& outputs) const;

private:
    /// Reads a fenced block; returns the line of its end.
    std::size_t readBlock(std::size_t opening);
    void readSession(std::size_t first, std::size_t last);

    std::string path_;
    std::vector<std::string> lines_;
    std::vector<ConsoleCommand> commands_;
};

/// Runs a command in the source folder, with the built mmq in front of the search path; "./mmq"
/// means that one, too. Returns what it printed, in the form that files record.
std::string runCommand(const std::string& command);
