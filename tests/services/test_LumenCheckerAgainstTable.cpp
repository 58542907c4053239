// Random breakages together give what each of them gives alone, in the order of the walk.
#include <algorithm>
#include <random>
#include <set>

#include "services/LumenBreakages.h"

namespace kov::test {
namespace {

// At most one breakage of each place, in the order of the walk.
std::vector<Breakage const*> Choose(std::mt19937& random) {
    unsigned const oneIn = 1 + random() % 8;
    std::vector<Breakage const*> all;
    for (Breakage const& breakage : Breakages()) {
        if (*breakage.place && random() % oneIn == 0) all.push_back(&breakage);
    }
    // Of a place any of its breakages, and not always the first.
    std::vector<Breakage const*> order = all;
    for (std::size_t i = order.size(); i > 1; --i) std::swap(order[i - 1], order[random() % i]);
    std::set<std::string> taken;
    std::set<Breakage const*> kept;
    for (Breakage const* breakage : order) {
        if (taken.insert(breakage->place).second) kept.insert(breakage);
    }
    std::vector<Breakage const*> chosen;
    for (Breakage const* breakage : all) {
        if (kept.count(breakage)) chosen.push_back(breakage);
    }
    return chosen;
}

// Without an assignment of specifications no class is walked.
bool HidesClasses(Breakage const* breakage) { return breakage->place == std::string("assignment"); }
bool IsOfClasses(Breakage const* breakage) {
    return std::string(breakage->place).rfind("class ", 0) == 0;
}

TEST(LumenChecker, RandomBreakagesGiveTheirFindingsInTheOrderOfTheWalk) {
    unsigned const seed = 20261122;
    std::mt19937 random(seed);
    LumenDocument document;
    for (int round = 0; round < 400; ++round) {
        std::vector<Breakage const*> const chosen = Choose(random);
        // Dropped at the end of the round: the document is certified again.
        auto const transaction = document.Write();
        std::vector<std::string> expected;
        std::string names;
        for (Breakage const* breakage : chosen) {
            breakage->make(document);
            names += std::string("\n  ") + breakage->name;
        }
        bool const hidden = std::any_of(chosen.begin(), chosen.end(), HidesClasses);
        for (Breakage const* breakage : chosen) {
            if (hidden && IsOfClasses(breakage)) continue;
            std::vector<std::string> const findings = Expected(*breakage, document);
            expected.insert(expected.end(), findings.begin(), findings.end());
        }
        ASSERT_EQ(document.Findings(), expected)
            << "seed " << seed << ", round " << round << ", broken:" << names;
    }
    EXPECT_THAT(document.Findings(), testing::IsEmpty());
}

}  // namespace
}  // namespace kov::test
