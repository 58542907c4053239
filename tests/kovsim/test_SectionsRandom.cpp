// Decks of random sections against a plain model of what they say, with a printed seed.

#include <algorithm>
#include <numeric>
#include <random>

#include "KOVSrvSectionServices.h"
#include "KOVSrvShellSectionPoints.h"
#include "SectionDeck.h"

namespace kov::test {
namespace {

struct RandomLayer {
    double thickness;
    int points;
    std::string material;
    std::string orientation;  ///< "-": none
    double angle;             ///< with an orientation: none
    std::string ply;          ///< "-": none
};

struct RandomSection {
    std::string set;
    Ints elements;
    bool composite = false;
    double offset = 0;
    bool gauss = false;
    std::vector<RandomLayer> layers;
};

double const kNoNumber = -1.7976931348623157e308;

class RandomDeck {
  public:
    explicit RandomDeck(unsigned seed) : m_random(seed) {
        m_elements = 1 + Below(60);
        int const sections = Below(15);
        Ints open(static_cast<std::size_t>(m_elements));
        std::iota(open.begin(), open.end(), 0);
        std::shuffle(open.begin(), open.end(), m_random);
        for (int i = 0; i < sections; ++i) {
            RandomSection section;
            section.set = "Set" + std::to_string(i);
            for (int n = Below(8); n > 0 && !open.empty(); --n) {
                section.elements.push_back(open.back());
                open.pop_back();
            }
            m_sections.push_back(section);
        }
        for (RandomSection& section : m_sections) Write(section);
    }

    /// Blocks in any order, as everything may be defined further on.
    std::string Text() {
        std::vector<std::string> blocks = m_blocks;
        blocks.push_back(Mesh());
        for (RandomSection const& section : m_sections) {
            std::string block = "*ELSET, ELSET=" + section.set + "\n";
            for (int const element : section.elements) block += std::to_string(element + 1) + ",\n";
            blocks.push_back(block);
        }
        for (char const* const name : {"M0", "M1", "M2"}) {
            blocks.push_back(std::string("*MATERIAL, NAME=") + name + "\n");
        }
        blocks.push_back("*ORIENTATION, NAME=O0\n1, 0, 0, 0, 1, 0\n");
        blocks.push_back("*ORIENTATION, NAME=O1\n0, 1, 0, 0, 0, 1\n");
        std::shuffle(blocks.begin(), blocks.end(), m_random);
        // Sections keep their order among themselves.
        std::size_t next = 0;
        std::string text;
        for (std::string const& block : blocks) {
            text += block.rfind("*SHELL", 0) == 0 ? m_blocks[next++] : block;
        }
        return text;
    }

    std::vector<RandomSection> const& Sections() const { return m_sections; }

  private:
    int Below(int n) { return static_cast<int>(m_random() % static_cast<unsigned>(n)); }
    bool Chance() { return Below(2) == 0; }

    std::string Mesh() const {
        std::string text = "*NODE\n1\n2, 1\n3, 0, 1\n*ELEMENT, TYPE=S3\n";
        for (int i = 1; i <= m_elements; ++i) text += std::to_string(i) + ", 1, 2, 3\n";
        return text;
    }

    void Write(RandomSection& section) {
        section.composite = Chance();
        section.gauss = Chance();
        std::string text = "*SHELL SECTION, ELSET=" + section.set;
        if (section.gauss) text += ", SECTION INTEGRATION=GAUSS";
        if (Chance()) {
            section.offset = Below(9) / 8.0 - 0.5;
            text += ", OFFSET=" + std::to_string(section.offset);
        }
        bool const mirrored = section.composite && Chance();
        if (mirrored) text += ", SYMMETRIC";
        int const lines = section.composite ? 1 + Below(6) : 1;
        std::string data;
        for (int i = 0; i < lines; ++i) data += Layer(section);
        text += section.composite ? ", COMPOSITE" : ", MATERIAL=" + section.layers[0].material;
        if (mirrored) {
            for (int i = lines; i-- > 0;) {
                section.layers.push_back(section.layers[static_cast<std::size_t>(i)]);
            }
        }
        m_blocks.push_back(text + "\n" + data);
    }

    std::string Layer(RandomSection& section) {
        RandomLayer layer{(1 + Below(64)) / 64.0,
                          1 + Below(9),
                          "M" + std::to_string(Below(3)),
                          "-",
                          kNoNumber,
                          "-"};
        std::string text = std::to_string(layer.thickness);
        if (Chance()) {
            text += ", " + std::to_string(layer.points);
        } else if (section.composite) {
            layer.points = section.gauss ? 2 : 3;
            text += ",";
        } else {
            layer.points = section.gauss ? 3 : 5;
        }
        if (section.composite) {
            text += ", " + layer.material;
            text += ", " + Angle(layer);
            if (Chance()) {
                layer.ply = "Ply" + std::to_string(Below(5));
                text += ", " + layer.ply;
            }
        }
        section.layers.push_back(layer);
        return text + "\n";
    }

    std::string Angle(RandomLayer& layer) {
        switch (Below(3)) {
            case 0:
                layer.orientation = "O" + std::to_string(Below(2));
                return layer.orientation;
            case 1:
                layer.angle = 15.0 * Below(12) - 90;
                return std::to_string(layer.angle);
            default:
                layer.angle = 0;
                return "";
        }
    }

    std::mt19937 m_random;
    int m_elements = 0;
    std::vector<RandomSection> m_sections;
    std::vector<std::string> m_blocks;  ///< the sections in their order
};

class RandomSections : public ::testing::TestWithParam<int> {};

TEST_P(RandomSections, AreReadBackAsTheyStandInTheDeck) {
    unsigned const seed = 7919U * static_cast<unsigned>(GetParam()) + 1;
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomDeck random(seed);
    InMemory deck(random.Text());
    SCOPED_TRACE(deck.files.texts["deck.inp"]);
    ASSERT_EQ(deck.Error(), "");
    KOVSimPosition const model = deck.document.GetModel();
    KOVSimVector const assignments = model.GetVector(schema::Model_sectionAssignments());
    ASSERT_EQ(assignments.Size(), static_cast<int>(random.Sections().size()));
    KOVSrvShellSectionPoints const points(deck.document);
    auto names = [](auto const& positions) {
        Texts all;
        for (KOVSimPosition const& position : positions) {
            all.push_back(position.IsNull() ? "-" : NameOf(position));
        }
        return all;
    };
    auto at = assignments.Begin();
    for (RandomSection const& section : random.Sections()) {
        KOVSrvShellSection const read(*at);
        KOVSimPosition const record = (*at).GetPosition(schema::SectionAssignment_section());
        EXPECT_EQ(NameOf(record), section.set);
        Ints elements = section.elements;
        std::sort(elements.begin(), elements.end());
        KOVSimPosition const set = (*at)
                                       .GetPosition(schema::SectionAssignment_region())
                                       .GetPosition(schema::Region_elementsCluster());
        EXPECT_EQ(MembersOf(set), elements);
        double offset = -99;
        record.GetDataRecord().GetDouble(1, offset);
        EXPECT_EQ(offset, section.offset);
        int composite = -99;
        record.GetDataRecord().GetSymb(9, composite);
        EXPECT_EQ(composite, section.composite ? 1 : 0);
        Texts materials, orientations, plies;
        Ints counts;
        Reals thicknesses, angles;
        for (RandomLayer const& layer : section.layers) {
            materials.push_back(layer.material);
            orientations.push_back(layer.orientation);
            plies.push_back(layer.ply);
            counts.push_back(layer.points);
            thicknesses.push_back(layer.thickness);
            angles.push_back(layer.angle);
        }
        EXPECT_EQ(names(read.GetMaterials()), materials);
        EXPECT_EQ(names(read.GetOrientations()), orientations);
        EXPECT_EQ(names(read.GetPlies()), plies);
        EXPECT_EQ(Plainly(read.GetSectionPoints()), counts);
        EXPECT_EQ(Plainly(read.GetConstThicknesses()), thicknesses);
        EXPECT_EQ(Plainly(read.GetConstRotationAngles()), angles);
        for (std::size_t i = 0; i < counts.size(); ++i) {
            EXPECT_EQ(points.GetNumSectionPoints(record, static_cast<int>(i)), counts[i]);
        }
        if (!elements.empty()) {
            EXPECT_EQ(KOVSrvSectionServices::GetSectionAssignment(set).ID(), (*at).ID());
        }
        ++at;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSections, ::testing::Range(0, 60));

}  // namespace
}  // namespace kov::test
