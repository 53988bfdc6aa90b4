// fuzz_seeds FOLDER: writes the texts of the corpus as files, the first inputs of the fuzz targets.
#include <filesystem>
#include <fstream>
#include <iostream>

#include "support/Corpus.h"

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "fuzz_seeds FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder(arguments[1]);
    std::filesystem::create_directories(folder);
    std::size_t number = 0;
    for (const CorpusText& text : corpus()) {
        constexpr std::size_t longest = 4096;
        if (text.text.size() <= longest) {
            std::ofstream(folder / std::to_string(number++), std::ios::binary) << text.text;
        }
    }
    return 0;
}
