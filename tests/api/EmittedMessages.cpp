// emitted_messages: writes what every text of the corpus makes the compiler say, through all entry
// points, for check_messages.py.
#include <iostream>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "support/Corpus.h"

int main() {
    std::cerr.rdbuf(nullptr);  // where dropped characters are reported
    RecordingDialogs dialogs;
    for (const CorpusText& row : corpus()) {
        (void)ExprParser::parseCondition(dialogs, row.text);
        (void)ExprParser::parseAssociatedAttribute(dialogs, row.text);
        (void)ExprParser::parseComplexAssociation(dialogs, row.text);
    }
    for (const std::string& message : dialogs.messages) {
        std::cout << message << '\n';
    }
    return 0;
}
