#include "Nearest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "Names.h"

namespace kov::test {
namespace {

using Texts = std::vector<std::string>;

// The whole table, without any bound.
int PlainDistance(std::string const& a, std::string const& b) {
    std::vector<std::vector<int>> d(a.size() + 1, std::vector<int>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                d[i][j] = static_cast<int>(i + j);
                continue;
            }
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1,
                                d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
            }
        }
    }
    return d[a.size()][b.size()];
}

TEST(Nearest, GivesTheNearestFirst) {
    EXPECT_EQ(tool::NearestNames("Bracket", Texts{"Bracelet", "Brackets", "Bracket-1", "Plate"}),
              (Texts{"Brackets", "Bracelet", "Bracket-1"}));
}

TEST(Nearest, GivesThreeAtMost) {
    EXPECT_EQ(tool::NearestNames("SetA", Texts{"SetE", "SetD", "SetC", "SetB"}),
              (Texts{"SetB", "SetC", "SetD"}));
}

TEST(Nearest, CaseDoesNotCount) {
    EXPECT_EQ(tool::NearestNames("TOPP", Texts{"top"}), (Texts{"top"}));
}

TEST(Nearest, TwoLettersInTheWrongOrderAreOneStep) {
    EXPECT_EQ(tool::NearestNames("Tpo", Texts{"Top", "Xyz"}), (Texts{"Top"}));
}

TEST(Nearest, AFarNameIsNoHint) {
    EXPECT_EQ(tool::NearestNames("Top", Texts{"Bottom", "Left"}), Texts{});
    EXPECT_EQ(tool::NearestNames("", Texts{"Bottom"}), Texts{});
    EXPECT_EQ(tool::NearestNames("Top", Texts{}), Texts{});
}

TEST(Nearest, ANameIsGivenOnce) {
    EXPECT_EQ(tool::NearestNames("Top", Texts{"Tip", "Tip", "Tap"}), (Texts{"Tap", "Tip"}));
}

TEST(Nearest, HintsAreSentences) {
    EXPECT_EQ(tool::NearestHint({}), "");
    EXPECT_EQ(tool::NearestHint({"a"}), "; did you mean 'a'?");
    EXPECT_EQ(tool::NearestHint({"a", "b"}), "; did you mean 'a' or 'b'?");
    EXPECT_EQ(tool::NearestHint({"a", "b", "c"}), "; did you mean 'a', 'b' or 'c'?");
}

TEST(Nearest, AgreesWithThePlainTable) {
    unsigned const seed = 20240817;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    auto const text = [&random](std::size_t length) {
        std::string made;
        for (std::size_t i = 0; i < length; ++i) made += static_cast<char>('a' + random() % 3);
        return made;
    };
    for (int round = 0; round < 2000; ++round) {
        std::string const wanted = text(random() % 12);
        Texts names;
        for (int i = 0; i < 12; ++i) names.push_back(text(random() % 14));
        std::vector<std::pair<int, std::string>> near;
        int const most = wanted.size() < 2 ? 0 : std::max(1, static_cast<int>(wanted.size()) / 3);
        for (std::string const& name : names) {
            int const distance = PlainDistance(wanted, name);
            if (distance <= most) near.emplace_back(distance, name);
        }
        std::sort(near.begin(), near.end());
        near.erase(std::unique(near.begin(), near.end()), near.end());
        Texts expected;
        for (auto const& [distance, name] : near) {
            if (expected.size() < 3) expected.push_back(name);
        }
        ASSERT_EQ(tool::NearestNames(wanted, names), expected) << wanted;
    }
}

TEST(Nearest, ManyNamesTakeLittleTime) {
    Texts names;
    for (int i = 0; i < 100'000; ++i) {
        names.push_back("A common beginning of all the names, number " + std::to_string(i));
    }
    auto const start = std::chrono::steady_clock::now();
    EXPECT_EQ(tool::NearestNames("A common beginning of all the names, number 7777x", names)[0],
              "A common beginning of all the names, number 7777");
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    EXPECT_LT(seconds.count(), 5.0);
}

}  // namespace
}  // namespace kov::test
