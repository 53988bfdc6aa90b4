// Reading an XMI document as a model, beside what XML libraries do with it.
//
//   load_benchmark DIRECTORY [benchmark options]
//
// "load/model/ENGINE" reads a document of 20,000 classes that is in memory: pugixml and libxml2
// make a tree of it, expat reports events to nobody, and we make a model. Its counters are the
// memory of a process that reads the document from a file, as multiples of the file: at most, and
// once it is read. "start/first/PROGRAM" runs a program from its start to the answer of one
// question of a document of 1.6 MB. DIRECTORY takes the documents.
#include <benchmark/benchmark.h>
#include <expat.h>
#include <libxml/parser.h>
#include <malloc.h>

#include <fstream>
#include <functional>
#include <iostream>
#include <pugixml.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "ProgramBenchmark.h"
#include "SyntheticDocuments.h"
#include "repository/ModelReader.h"

namespace {

constexpr std::uint32_t largeCount = 20000;
constexpr std::uint32_t smallCount = 340;

void require(bool isDone, const char* what) {
    if (!isDone) {
        throw std::runtime_error(std::string(what) + " does not read the document.");
    }
}

pugi::xml_document parsePugixml(const std::string& text) {
    pugi::xml_document document;
    require(document.load_buffer(text.data(), text.size()), "pugixml");
    return document;
}

std::shared_ptr<xmlDoc> parseLibxml(const std::string& text) {
    std::shared_ptr<xmlDoc> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), "model", nullptr, XML_PARSE_HUGE),
        xmlFreeDoc);
    require(document != nullptr, "libxml2");
    return document;
}

std::size_t countEvents(const std::string& text) {
    std::size_t count = 0;
    const std::shared_ptr<XML_ParserStruct> parser(XML_ParserCreate(nullptr), XML_ParserFree);
    XML_SetUserData(parser.get(), &count);
    XML_SetElementHandler(
        parser.get(),
        [](void* data, const XML_Char*, const XML_Char**) { ++*static_cast<std::size_t*>(data); },
        [](void* data, const XML_Char*) { ++*static_cast<std::size_t*>(data); });
    require(XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 1) == XML_STATUS_OK,
            "expat");
    return count;
}

/// One way to read a document: of a text, which may go when it is done, and of a file.
struct Reader {
    std::string name;
    std::function<void(const std::string& text)> readText;
    std::function<void(const std::string& path)> readFile;
};

// Leaves what was read where it is, for somebody who looks at the memory.
template <class Object>
void leave(Object object) {
    benchmark::DoNotOptimize(new Object(std::move(object)));
}

std::string contentOf(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return std::move(text).str();
}

std::vector<Reader> readers() {
    return {{"ours", [](const std::string& text) { readModelText(text, "benchmark"); },
             [](const std::string& path) { leave(readModel(path)); }},
            {"pugixml", [](const std::string& text) { parsePugixml(text); },
             [](const std::string& path) {
                 pugi::xml_document document;
                 require(document.load_file(path.c_str()), "pugixml");
                 leave(std::move(document));
             }},
            {"libxml2", [](const std::string& text) { parseLibxml(text); },
             [](const std::string& path) {
                 leave(std::shared_ptr<xmlDoc>(xmlReadFile(path.c_str(), nullptr, XML_PARSE_HUGE),
                                               xmlFreeDoc));
             }},
            {"expat",
             [](const std::string& text) { benchmark::DoNotOptimize(countEvents(text)); },
             {}}};
}

void addReaders(const std::string& path, const std::string& text) {
    for (const Reader& reader : readers()) {
        const MemoryUse memory =
            reader.readFile ? measureMemory([&] { reader.readFile(path); }) : MemoryUse{};
        benchmark::RegisterBenchmark(
            ("load/model/" + reader.name).c_str(),
            [reader, memory, &text](benchmark::State& state) {
                for (auto _ : state) {
                    state.PauseTiming();
                    malloc_trim(0);
                    state.ResumeTiming();
                    reader.readText(text);
                }
                const auto size = static_cast<double>(text.size());
                state.SetBytesProcessed(state.iterations() *
                                        static_cast<std::int64_t>(text.size()));
                state.counters["peak"] = static_cast<double>(memory.peak) / size;
                state.counters["loaded"] = static_cast<double>(memory.atEnd) / size;
            });
    }
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

}  // namespace

int main(int argc, char** argv) try {
    // Setting it keeps it from growing with what is freed.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    benchmark::Initialize(&argc, argv);
    require(argc == 2, "The program without a directory");
    const std::string directory = argv[1];
    const std::string large = directory + "/large.uml";
    const std::string small = directory + "/small";
    measureMemory([&] {
        writeFile(large, synthetic::xmiDocument(synthetic::Model(largeCount)));
        writeFile(small + ".uml", synthetic::xmiDocument(synthetic::Model(smallCount)));
        writeFile(small + ".json", synthetic::jsonDocument(synthetic::Model(smallCount)));
    });
    std::string text;
    addReaders(large, text);
    text = contentOf(large);
    addProgram("start/first/ours",
               {MMQ, "eval", "--model", small + ".uml", R"(size (all "Class"))"});
    addProgram(
        "start/first/xmllint",
        {"xmllint", "--xpath", "count(//*[@*[local-name()='type']='uml:Class'])", small + ".uml"});
    addProgram("start/first/jq",
               {"jq", R"([.. | objects | select(.class == "Class")] | length)", small + ".json"});
    benchmark::RunSpecifiedBenchmarks();
    return 0;
} catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 1;
}
