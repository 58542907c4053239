// Questions to documents whose files are damaged at random.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "Process.h"

namespace kov::test {

/// Of a damaged document the answer is the right one, or a refusal with a text; never an end by a
/// signal, and never an assertion. `questions`: arguments of kovsim that ask about m.ksd.
inline void ExpectAnswersOrRefusals(Workshop const& work,
                                    std::vector<std::vector<std::string>> const& questions) {
    std::vector<Workshop::Result> sound;
    for (auto const& question : questions) sound.push_back(work.Run(question));
    char const* const rounds = std::getenv("KOV_DAMAGE_ROUNDS");
    int const count = rounds == nullptr ? 25 : std::atoi(rounds);
    unsigned const seed = std::random_device{}();
    std::mt19937 random(seed);
    int refused = 0;
    for (int round = 0; round < count; ++round) {
        std::string const name =
            work / (round % 3 == 2 ? "m.ksd/bulk/000001.seg" : "m.ksd/catalog.sqlite");
        std::string const content = ReadFile(name);
        std::string damaged = content;
        std::size_t const at = random() % content.size();
        switch (random() % 3) {
            case 0:
                damaged[at] = static_cast<char>(damaged[at] ^ (1 << random() % 8));
                break;
            case 1:
                damaged.resize(at);
                break;
            default:
                for (std::size_t i = at; i < std::min(at + 600, damaged.size()); ++i)
                    damaged[i] = static_cast<char>(random());
        }
        WriteFile(name, damaged);
        for (std::size_t q = 0; q < sound.size(); ++q) {
            Workshop::Result const result = work.Run(questions[q]);
            std::string const where = "seed " + std::to_string(seed) + ", round " +
                                      std::to_string(round) + ", question " + std::to_string(q) +
                                      ": " + result.errors;
            ASSERT_LE(result.status, 2) << where;
            ASSERT_EQ(result.errors.find("Assertion"), std::string::npos) << where;
            if (result.status == 2 && sound[q].status != 2) {
                ASSERT_EQ(result.errors.substr(0, 8), "kovsim: ") << where;
                ASSERT_NE(result.errors.find("m.ksd"), std::string::npos) << where;
                ++refused;
            } else if (result.status != 2) {
                ASSERT_EQ(result.status, sound[q].status) << where;
                ASSERT_EQ(result.output, sound[q].output) << where;
            }
        }
        WriteFile(name, content);
    }
    EXPECT_GT(refused, 0);
}

}  // namespace kov::test
