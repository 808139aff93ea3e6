// Has each reader read its corpus again, and what becomes of it by random changes: replay CORPUS NAME [CHANGES].
#include "tests/fuzz/Targets.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <vector>

namespace {

std::vector<std::string> corpusIn(const std::filesystem::path& folder)
{
    std::vector<std::string> inputs;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::ranges::sort(inputs);
    return inputs;
}

std::string changed(std::string input, const std::vector<std::string>& corpus, std::mt19937& random)
{
    for (auto changes = 1 + random() % 4; changes > 0; --changes) {
        const auto at = random() % (input.size() + 1);
        switch (random() % 5) {
        case 0:
            input.insert(at, 1, static_cast<char>(random()));
            break;
        case 1:
            input.erase(at, random() % 8);
            break;
        case 2:
            if (at < input.size())
                input[at] = static_cast<char>(random());
            break;
        case 3:
            input.insert(at, input.substr(random() % (input.size() + 1), random() % 32));
            break;
        default:
            input.insert(at, corpus[random() % corpus.size()].substr(0, random() % 64));
        }
    }
    return input;
}

} // namespace

int main(int count, char* words[])
{
    const auto* target = count >= 3 ? tessel::fuzz::targetNamed(words[2]) : nullptr;
    if (!target) {
        std::cerr << "usage: replay CORPUS NAME [CHANGES]\n";
        return 2;
    }
    const auto corpus = corpusIn(std::filesystem::path(words[1]) / words[2]);
    if (corpus.empty()) {
        std::cerr << "the corpus of " << words[2] << " is empty\n";
        return 1;
    }
    for (const auto& input : corpus)
        target->read(input);
    std::mt19937 random(5);
    for (auto left = count > 3 ? std::atoi(words[3]) : 0; left > 0; --left)
        target->read(changed(corpus[random() % corpus.size()], corpus, random));
    return 0;
}
