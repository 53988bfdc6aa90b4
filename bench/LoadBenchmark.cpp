// Reading an XMI document as a model, against the bare parse of it by the XML library.
//
//   load_benchmark [FILE] [benchmark options]
//
// FILE is an XMI document; without it, a document of about 95 MB is composed: 20,000 classes with
// 100,000 operations and 300,000 parameters. A model is to take at most twice the time of the parse
// that it begins with. Both begin with the document in memory, which they copy. The allocator
// gives memory back between the rounds, so that each pays for its own, in whatever order they run.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "repository/ModelReader.h"

namespace {

/// Composes the same document every time.
class SyntheticDocument {
public:
    std::string compose() {
        text_ =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<uml:Model xmi:version=\"20131001\" "
            "xmlns:xmi=\"http://www.omg.org/spec/XMI/20131001\" "
            "xmlns:uml=\"http://www.eclipse.org/uml2/5.0.0/UML\" "
            "xmi:id=\"_model\" name=\"Synthetic\">\n";
        for (std::uint32_t number = 0; number < classCount; ++number) {
            addClass(number);
        }
        return text_ + "</uml:Model>\n";
    }

private:
    static constexpr std::uint32_t classCount = 20000;

    std::uint32_t random(std::uint32_t bound) {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>((state_ >> 33U) % bound);
    }
    // An id as tools make them: an underscore and 22 characters that depend on a number alone.
    static std::string id(std::uint64_t number) {
        constexpr std::string_view digits =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
        std::string result = "_";
        std::uint64_t bits = number * 0x9E3779B97F4A7C15U + 1;
        for (int i = 0; i < 22; ++i) {
            bits ^= bits >> 29U;
            bits *= 0xBF58476D1CE4E5B9U;
            result += digits[bits >> 58U];
        }
        return result;
    }
    static std::string classId(std::uint32_t number) { return id(number); }
    std::string nextId() { return id(classCount + nextId_++); }

    void addClass(std::uint32_t number) {
        text_ += "  <packagedElement xmi:type=\"uml:Class\" xmi:id=\"" + classId(number) +
                 "\" name=\"Class" + std::to_string(number) + "\" visibility=\"public\">\n";
        if (number != 0) {
            text_ += "    <generalization xmi:type=\"uml:Generalization\" xmi:id=\"" + nextId() +
                     "\" general=\"" + classId(random(number)) + "\"/>\n";
        }
        for (int i = 0; i < 5; ++i) {
            addOperation(i, std::to_string(number));
        }
        text_ += "  </packagedElement>\n";
    }

    void addOperation(int number, const std::string& className) {
        const std::string name = std::to_string(number) + "OfClass" + className;
        text_ += "    <ownedOperation xmi:type=\"uml:Operation\" xmi:id=\"" + nextId() +
                 "\" name=\"operationWithALongName" + name +
                 "\" visibility=\"public\" isQuery=\"true\">\n";
        for (const std::string_view direction : {"in", "inout", "return"}) {
            text_ += "      <ownedParameter xmi:type=\"uml:Parameter\" xmi:id=\"" + nextId() +
                     "\" name=\"parameterWithALongNameOfOperation" + name +
                     "\" visibility=\"public\" type=\"" + classId(random(classCount)) +
                     "\" isOrdered=\"true\" isUnique=\"false\" direction=\"" +
                     std::string(direction) + "\"/>\n";
        }
        text_ += "    </ownedOperation>\n";
    }

    std::string text_;
    std::uint64_t state_ = 1;
    std::uint64_t nextId_ = 0;
};

void parse(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        pugi::xml_document document;
        if (!document.load_buffer(text.data(), text.size())) {
            state.SkipWithError("The document cannot be parsed.");
        }
        benchmark::DoNotOptimize(document.first_child());
    }
}

std::size_t bytesInUse() {
    const struct mallinfo2 statistics = mallinfo2();
    return statistics.uordblks + statistics.hblkhd;
}

void load(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        const auto model = readModelText(text, "benchmark");
        benchmark::DoNotOptimize(model->objectCount());
    }
    const std::size_t before = bytesInUse();
    const auto model = readModelText(text, "benchmark");
    state.counters["memory/file"] =
        static_cast<double>(bytesInUse() - before) / static_cast<double>(text.size());
    state.SetLabel("limits: twice the time of Parse, memory/file 3");
}

std::string readFile(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

int main(int argc, char** argv) {
    // Otherwise what one round frees decides what the next one pays.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    mallopt(M_TRIM_THRESHOLD, 128 * 1024);
    benchmark::Initialize(&argc, argv);
    const std::string text = argc > 1 ? readFile(argv[1]) : SyntheticDocument().compose();
    std::cout << "A document of " << text.size() << " bytes\n";
    benchmark::RegisterBenchmark("Parse", [&](benchmark::State& state) { parse(state, text); });
    benchmark::RegisterBenchmark("Load", [&](benchmark::State& state) { load(state, text); });
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
