// mmq lsp: a language server over the standard streams.
#include <iostream>

#include "Commands.h"
#include "lsp/Server.h"

namespace mmq {

int runLsp(const Options& options) {
    MessageChannel channel(std::cin, std::cout);
    return Server(options, channel).run();
}

}  // namespace mmq
