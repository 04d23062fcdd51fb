// A replacement for a fuzzing engine: runs a target over the files of its corpus and a given number of
// mutated ones. It needs no compiler support, so the tests of every build can use the corpus. The process
// aborts at the first finding.

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

using bytes = std::vector<uint8_t>;

constexpr size_t kMaximumMutant = 65536;

bytes read_file(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Sorted by name, so that a seed yields the same inputs everywhere.
std::vector<std::filesystem::path> files_of(const std::string& argument) {
    if (!std::filesystem::is_directory(argument))
        return {argument};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argument))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

class Mutator {
  public:
    Mutator(const std::vector<bytes>& corpus, uint64_t seed) : corpus_(corpus), random_(seed) {}

    bytes Next() {
        bytes mutant = corpus_[Below(corpus_.size())];
        for (size_t edits = 1 + Below(4); edits > 0; --edits)
            Edit(mutant);
        mutant.resize(std::min(mutant.size(), kMaximumMutant));
        return mutant;
    }

  private:
    size_t Below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random_); }
    size_t PlaceIn(const bytes& text) { return Below(text.size() + 1); }

    uint8_t AnyByte() {
        static const uint8_t kEdges[] = {0, 1, 127, 128, 255, '0', '9', ' ', '-', '<', '&', '\n'};
        return static_cast<uint8_t>(Below(2) == 0 ? kEdges[Below(std::size(kEdges))] : Below(256));
    }

    void Edit(bytes& mutant) {
        const auto place = [&] { return mutant.begin() + static_cast<std::ptrdiff_t>(PlaceIn(mutant)); };
        switch (Below(5)) {
            case 0:
                mutant.insert(place(), 1 + Below(4), AnyByte());
                break;
            case 1:
                Erase(mutant);
                break;
            case 2:
                Splice(mutant);
                break;
            default:
                if (!mutant.empty())
                    mutant[Below(mutant.size())] = AnyByte();
        }
    }

    void Erase(bytes& mutant) {
        const size_t from = PlaceIn(mutant);
        const size_t to = std::min(mutant.size(), from + 1 + Below(16));
        mutant.erase(mutant.begin() + static_cast<std::ptrdiff_t>(from),
                     mutant.begin() + static_cast<std::ptrdiff_t>(to));
    }

    // Inserts a part of an input of the corpus.
    void Splice(bytes& mutant) {
        const bytes& source = corpus_[Below(corpus_.size())];
        const size_t from = PlaceIn(source);
        const size_t to = std::min(source.size(), from + 1 + Below(64));
        mutant.insert(mutant.begin() + static_cast<std::ptrdiff_t>(PlaceIn(mutant)),
                      source.begin() + static_cast<std::ptrdiff_t>(from),
                      source.begin() + static_cast<std::ptrdiff_t>(to));
    }

    const std::vector<bytes>& corpus_;
    std::mt19937_64 random_;
};

struct settings {
    unsigned long mutants = 0;
    unsigned long seed = 1;
    std::vector<std::string> paths;
};

settings read_arguments(int count, char** arguments) {
    settings read;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--mutants" && i + 1 < count)
            read.mutants = std::strtoul(arguments[++i], nullptr, 10);
        else if (argument == "--seed" && i + 1 < count)
            read.seed = std::strtoul(arguments[++i], nullptr, 10);
        else
            read.paths.push_back(argument);
    }
    return read;
}

}  // namespace

int main(int count, char** arguments) {
    const settings given = read_arguments(count, arguments);
    std::vector<bytes> corpus;
    for (const std::string& path : given.paths) {
        for (const auto& file : files_of(path)) {
            std::printf("%s\n", file.c_str());
            std::fflush(stdout);  // on a finding, the last line names the input
            corpus.push_back(read_file(file));
            LLVMFuzzerTestOneInput(corpus.back().data(), corpus.back().size());
        }
    }
    if (corpus.empty()) {
        std::fprintf(stderr, "usage: %s [--mutants COUNT] [--seed SEED] PATH...\n", arguments[0]);
        return 2;
    }
    Mutator mutator(corpus, given.seed);
    for (unsigned long i = 0; i < given.mutants; ++i) {
        const bytes mutant = mutator.Next();
        LLVMFuzzerTestOneInput(mutant.data(), mutant.size());
    }
    std::printf("%zu inputs, %lu mutants\n", corpus.size(), given.mutants);
    return 0;
}
