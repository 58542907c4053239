// Random decks with distributions, against a plain model of what their lines say.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "DistributionFixture.h"
#include "InMemory.h"

namespace kov::test {
namespace {

using Numbers = std::vector<double>;

// A deck that is put together at random, and what its one distribution has to give.
class RandomDeck {
  public:
    explicit RandomDeck(unsigned seed) : m_random(seed) {
        m_columns = Below(3) == 0 ? 64 : 1 + Below(4);
        // With many columns some thousand rows are more than a block.
        MakeElements(m_columns == 64 && Below(2) == 0 ? 4000 : 1 + Below(60));
        MakeSets(Below(5));
        MakeLines();
        Write();
    }

    std::string deck;
    std::string error;  ///< what it has to end with; "" for none
    StoredField expected;

  private:
    struct Line {
        std::string name;
        std::vector<int> elements;  ///< ordinals, ascending
        Numbers values;
        bool isDefault = false;
    };

    int Below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }

    void MakeElements(int count) {
        std::set<int> taken;
        while (static_cast<int>(m_labels.size()) < count) {
            int const label = 1 + Below(3 * count);
            if (taken.insert(label).second) m_labels.push_back(label);
        }
    }
    void MakeSets(int count) {
        for (int i = 0; i < count; ++i) {
            std::vector<int> members;
            for (int j = Below(20); j-- > 0;) members.push_back(Below(Count()));
            m_sets.push_back(members);
        }
    }
    int Count() const { return static_cast<int>(m_labels.size()); }

    Numbers Values() {
        Numbers values;
        for (int i = 0; i < m_columns; ++i) values.push_back((Below(2001) - 1000) / 8.0);
        return values;
    }

    // Mostly without a second value for any element, so that decks are read to their end.
    void MakeLines() {
        bool const careless = Below(4) == 0;
        std::set<int> taken;
        auto const add = [&](std::string const& name, std::set<int> const& elements) {
            bool const again = std::any_of(elements.begin(), elements.end(),
                                           [&](int e) { return taken.count(e) > 0; });
            if (again && !careless) return;
            taken.insert(elements.begin(), elements.end());
            m_lines.push_back({name, {elements.begin(), elements.end()}, Values(), false});
        };
        std::vector<int> order(m_labels.size());
        for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
        if (Below(2) == 0) std::shuffle(order.begin(), order.end(), m_random);
        int const part = 1 + Below(4);
        for (int const element : order) {
            if (m_sets.size() > 0 && Below(12) == 0) {
                int const set = Below(static_cast<int>(m_sets.size()));
                auto const& members = m_sets[static_cast<std::size_t>(set)];
                add("Set-" + std::to_string(set), {members.begin(), members.end()});
            }
            if (Below(part) == 0) {
                add(std::to_string(m_labels[static_cast<std::size_t>(element)]), {element});
            }
        }
        if (careless && m_lines.size() > 1) {
            m_lines.push_back(
                m_lines[static_cast<std::size_t>(Below(static_cast<int>(m_lines.size())))]);
        }
        if (m_lines.empty() || Below(2) == 0) {
            auto const at = m_lines.begin() + Below(static_cast<int>(m_lines.size()) + 1);
            m_lines.insert(at, {"", {}, Values(), true});
        }
    }

    // The keywords in any order: elements in two blocks, sets, table and distribution.
    void Write() {
        std::vector<std::string> blocks;
        int const cut = Below(Count() + 1);
        auto const elements = [&](int from, int to) {
            std::string block = "*ELEMENT, TYPE=T3D2\n";
            for (int i = from; i < to; ++i) {
                block += std::to_string(m_labels[static_cast<std::size_t>(i)]) + ", 1, 2\n";
            }
            return block;
        };
        // Ordinals go by the order in the deck, so that these two stay in order.
        std::string const mesh = "*NODE\n1\n2, 1\n" + elements(0, cut);
        for (std::size_t i = 0; i < m_sets.size(); ++i) {
            std::string block = "*ELSET, ELSET=Set-" + std::to_string(i) + "\n";
            for (int const member : m_sets[i]) {
                block += std::to_string(m_labels[static_cast<std::size_t>(member)]) + "\n";
            }
            blocks.push_back(block);
        }
        std::string table = "*DISTRIBUTION TABLE, NAME=T\n";
        for (int i = 0; i < m_columns; ++i) {
            std::string const word = "Word" + std::to_string(i);
            table += word + ",\n";
            expected.columnLabels.push_back("WORD" + std::to_string(i));
            expected.words += (i == 0 ? "WORD" : " WORD") + std::to_string(i);
        }
        blocks.push_back(table);
        blocks.push_back("");
        std::shuffle(blocks.begin(), blocks.end(), m_random);
        std::size_t const second = static_cast<std::size_t>(Below(static_cast<int>(blocks.size())));
        deck = mesh;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            if (blocks[i].empty()) {
                WriteDistribution();
            } else {
                deck += blocks[i];
            }
            if (i == second) deck += elements(cut, Count());
        }
    }

    void WriteDistribution() {
        deck += "*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=T\n";
        expected.hasDefault = 0;
        expected.defaults.assign(static_cast<std::size_t>(m_columns), 0.0);
        std::map<int, long> lines;
        long number = std::count(deck.begin(), deck.end(), '\n');
        for (Line const& line : m_lines) {
            ++number;
            deck += line.name;
            for (double const value : line.values) deck += ", " + std::to_string(value);
            deck += "\n";
            if (line.isDefault) {
                expected.hasDefault = 1;
                expected.defaults = line.values;
            }
            for (int const element : line.elements) {
                auto const [at, fresh] = lines.try_emplace(element, number);
                if (!fresh && error.empty()) {
                    error = "deck.inp:" + std::to_string(number) + ": element " +
                            std::to_string(m_labels[static_cast<std::size_t>(element)]) +
                            " has a second value in distribution 'D', first at line " +
                            std::to_string(at->second) + "; expected one";
                }
                expected.values[element] = line.values;
            }
        }
    }

    std::mt19937 m_random;
    int m_columns = 1;
    std::vector<int> m_labels;  ///< by ordinal
    std::vector<std::vector<int>> m_sets;
    std::vector<Line> m_lines;
};

TEST(DistributionsAgainstAModel, RandomDecksGiveWhatTheirLinesSay) {
    unsigned const seed = std::random_device{}();
    for (unsigned round = 0; round < 150; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        RandomDeck const random(seed + round);
        InMemory deck(random.deck);
        ASSERT_EQ(deck.Error(), random.error) << random.deck.substr(0, 4000);
        if (!random.error.empty()) continue;
        KOVSimPosition const field =
            deck.document.GetModel().GetMap(schema::Model_distributions()).Find("D");
        StoredField const stored = Stored(field);
        ASSERT_EQ(stored.values, random.expected.values) << random.deck.substr(0, 4000);
        ASSERT_TRUE(stored == random.expected) << random.deck.substr(0, 4000);
        Numbers read = ReadByElement(deck.document, field);
        if (random.expected.defaults.size() != 1) continue;
        Numbers expected(read.size(), random.expected.defaults.front());
        for (auto const& [element, values] : random.expected.values) {
            expected[static_cast<std::size_t>(element)] = values.front();
        }
        ASSERT_EQ(read, expected);
    }
}

}  // namespace
}  // namespace kov::test
