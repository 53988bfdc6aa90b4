#include "repl/LineReader.h"

#include <iostream>

namespace mmq {

namespace {

class PlainReader : public LineReader {
public:
    Outcome read(const std::string& /*prompt*/, std::string& line) override {
        return std::getline(std::cin, line) ? Outcome::line : Outcome::end;
    }
    void remember(const std::string& /*input*/) override {}
};

}  // namespace

std::unique_ptr<LineReader> makePlainReader() { return std::make_unique<PlainReader>(); }

}  // namespace mmq
