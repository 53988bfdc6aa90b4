// Any bytes as a rules file: rules whose expressions know where they stand, or an error.
#include <iostream>
#include <sstream>

#include "FuzzText.h"
#include "lint/CompiledRules.h"
#include "lint/RuleReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ostringstream shown;
    std::streambuf* const standardError = std::cerr.rdbuf(shown.rdbuf());
    const mmq::Options options;
    mmq::MessageWriter writer(options);
    mmq::FileErrors errors(std::make_shared<const mmq::SourceFile>("f", textOf(data, size)),
                           writer);
    const std::vector<mmq::RuleFile> files = {mmq::readRuleFile(errors)};
    const bool isCompiled =
        errors.isEmpty() && !mmq::compileRules(mmq::rulesOf(files), 1, options).empty();
    std::cerr.rdbuf(standardError);
    // Whatever is refused is refused with a place, and only that.
    failIf(isCompiled == (shown.str().rfind("f:", 0) == 0));
    return 0;
}
