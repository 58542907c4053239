// Layers against plain tables: random values of every kind for random layers of random sections
// and elements, appended in random order and often twice, written, and read back section by section
// and store by store. The seed is printed with a failure; KOV_SEED sets it.
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>
#include <set>
#include <vector>

#include "services/ShellFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

constexpr double kNone = -std::numeric_limits<double>::max();
constexpr int kSlots = 6, kSections = 12, kElements = 200, kPool = 10;

using Table = std::map<std::pair<int, int>, double>;  // (layer, section or element) -> value

// A table as rows of a store.
Rows AsRows(Table const& table, std::set<int> const& layers) {
    Rows rows;
    for (int layer : layers) {
        Row row{{layer}, {}, {}};
        for (auto const& [place, value] : table) {
            if (place.first != layer) continue;
            row.members.push_back(place.second);
            row.values.push_back(value);
        }
        rows.push_back(row);
    }
    return rows;
}
std::set<int> LayersOf(Table const& table) {
    std::set<int> layers;
    for (auto const& entry : table) layers.insert(entry.first.first);
    return layers;
}

struct Shell {
    int section, layers;
    std::vector<int> elements;
};

struct Field {
    std::map<int, double> values;
    double fill;
    KOVSimPosition position;
    double At(int element) const {
        auto const found = values.find(element);
        return found == values.end() ? fill : found->second;
    }
};

class ShellLayersAgainstModel : public testing::TestWithParam<Medium> {
  protected:
    ShellLayersAgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {}
    ~ShellLayersAgainstModel() override { EndBulk(); }

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    std::vector<int> Pick(int space, int count) {
        std::vector<int> picked, all = Range(0, space);
        std::sample(all.begin(), all.end(), std::back_inserter(picked), count, random);
        return picked;
    }

    void MakeShells();
    void AppendSections();
    void AppendFields();
    void ExpectStores() const;
    void ExpectSection(std::size_t at) const;
    void Round(Medium medium);

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
    std::unique_ptr<ShellDocument> mesh;
    std::vector<Shell> shells;
    Table integers[4], constants[2], distributed[2];
    std::set<int> distributedLayers[2];
    int seen[3] = {0, 0, 0};  // layers of each variation
};
INSTANTIATE_TEST_SUITE_P(Media, ShellLayersAgainstModel,
                         testing::Values(Medium::Memory, Medium::Disk), MediumName);

// Each section stands in the model once, in any order; some elements belong to several.
void ShellLayersAgainstModel::MakeShells() {
    shells.clear();
    std::vector<int> sections = Pick(kSections, 1 + Below(kSections));
    std::shuffle(sections.begin(), sections.end(), random);
    auto const transaction = mesh->Write();
    mesh->AddCollections(kSlots, kSections);
    for (int section : sections) {
        Shell const shell{section, Below(kSlots + 1),
                          Below(2) ? Range(Below(kElements - 20), 1 + Below(20))
                                   : Pick(kElements, 1 + Below(30))};
        mesh->Assign(shell.section, shell.layers, shell.elements);
        shells.push_back(shell);
    }
    transaction->Commit();
}

void ShellLayersAgainstModel::AppendSections() {
    KOVSrvBulkShellLayers& bulk = Bulk();
    std::function<void(int, int, int)> const appendInteger[] = {
        [&](int l, int s, int v) { bulk.AppendMaterial(l, s, v); },
        [&](int l, int s, int v) { bulk.AppendOrientation(l, s, v); },
        [&](int l, int s, int v) { bulk.AppendPly(l, s, v); },
        [&](int l, int s, int v) { bulk.AppendNumSectionPoints(l, s, v); }};
    std::function<void(int, int, double)> const appendConstant[] = {
        [&](int l, int s, double v) { bulk.AppendConstThickness(l, s, v); },
        [&](int l, int s, double v) { bulk.AppendConstAngle(l, s, v); }};
    for (Table& table : integers) table.clear();
    for (Table& table : constants) table.clear();
    for (int i = Below(200); i > 0; --i) {
        // Layers and sections that no assignment has, too.
        std::pair<int, int> const place{Below(kSlots), Below(kSections)};
        std::size_t const kind = static_cast<std::size_t>(Below(6));
        int const value = Below(kPool);
        if (kind < 4) {
            appendInteger[kind](place.first, place.second, value);
            integers[kind].insert({place, value});
        } else {
            appendConstant[kind - 4](place.first, place.second, value / 8.0);
            constants[kind - 4].insert({place, value / 8.0});
        }
    }
}

void ShellLayersAgainstModel::AppendFields() {
    for (Table& table : distributed) table.clear();
    for (std::set<int>& layers : distributedLayers) layers.clear();
    auto const transaction = mesh->Write();
    std::vector<Field> fields;
    for (int i = 1 + Below(4); i > 0; --i) {
        Field field{{}, -Below(100) / 4.0, {}};
        std::vector<int> const members = Pick(kElements, 1 + Below(kElements));
        std::vector<double> values;
        for (int member : members) {
            values.push_back(Below(1000) / 16.0);
            field.values[member] = values.back();
        }
        field.position = mesh->NewField(members, values, field.fill);
        fields.push_back(field);
    }
    for (int i = Below(30); i > 0; --i) {
        int const layer = Below(kSlots);
        std::size_t const kind = static_cast<std::size_t>(Below(2));
        Field const& field = fields[static_cast<std::size_t>(Below(int(fields.size())))];
        bool const ofSection = Below(3) != 0;
        std::vector<int> const members =
            ofSection ? shells[static_cast<std::size_t>(Below(int(shells.size())))].elements
                      : Pick(kElements, Below(50));
        bool const null = Below(8) == 0;
        auto const append = kind == 0 ? &KOVSrvBulkShellLayers::AppendDistThickness
                                      : &KOVSrvBulkShellLayers::AppendDistAngle;
        (Bulk().*append)(layer, mesh->ElementSet(members),
                         null ? KOVSimPosition() : field.position);
        distributedLayers[kind].insert(layer);
        if (null) continue;
        for (int member : members) distributed[kind].insert({{layer, member}, field.At(member)});
    }
    transaction->Commit();
}

void ShellLayersAgainstModel::ExpectStores() const {
    int const ofIntegers[] = {
        schema::BulkShellLayers_materials(), schema::BulkShellLayers_orientations(),
        schema::BulkShellLayers_plies(), schema::BulkShellLayers_sectionPoints()};
    int const ofConstants[] = {schema::BulkShellLayers_constThicknesses(),
                               schema::BulkShellLayers_constAngles()};
    int const ofFields[] = {schema::BulkShellLayers_distThicknesses(),
                            schema::BulkShellLayers_distAngles()};
    for (std::size_t i = 0; i < 4; ++i) {
        ASSERT_EQ(mesh->StoredRows(ofIntegers[i]), AsRows(integers[i], LayersOf(integers[i])));
    }
    for (std::size_t i = 0; i < 2; ++i) {
        ASSERT_EQ(mesh->StoredRows(ofConstants[i]), AsRows(constants[i], LayersOf(constants[i])));
        ASSERT_EQ(mesh->StoredRows(ofFields[i]), AsRows(distributed[i], distributedLayers[i]));
    }
}

void ShellLayersAgainstModel::ExpectSection(std::size_t at) const {
    Shell const& shell = shells[at];
    KOVSrvShellSection const section(mesh->Assignment(static_cast<int>(at)));
    ASSERT_EQ(section.GetNumLayers(), shell.layers);
    ASSERT_EQ(Members(section.GetElementSet()), shell.elements);
    KOVBasVector<KOVSimPosition> const* const records[] = {
        &section.GetMaterials(), &section.GetOrientations(), &section.GetPlies()};
    KOVSimPosition const collections[] = {mesh->document.GetMaterialCollection(),
                                          mesh->Orientations(), mesh->Plies()};
    KOVBasVector<double> const* const reals[] = {&section.GetConstThicknesses(),
                                                 &section.GetConstRotationAngles()};
    KOVBasVector<KOVSrvShellSection::VariationEnm> const* const variations[] = {
        &section.GetThicknessVariation(), &section.GetRotationAngleVariation()};
    ASSERT_EQ(section.GetSectionPoints().Size(), shell.layers);
    auto const in = [](Table const& table, int layer, int member, double otherwise) {
        auto const found = table.find({layer, member});
        return found == table.end() ? otherwise : found->second;
    };
    for (std::size_t kind = 0; kind < 3; ++kind) ASSERT_EQ(records[kind]->Size(), shell.layers);
    for (int layer = 0; layer < shell.layers; ++layer) {
        SCOPED_TRACE(layer);
        for (std::size_t kind = 0; kind < 3; ++kind) {
            double const expected = in(integers[kind], layer, shell.section, -1);
            KOVSimPosition const& record = (*records[kind])[layer];
            ASSERT_EQ(record.IsNull(), expected < 0);
            if (expected < 0) continue;
            ASSERT_EQ(record.ID(), mesh->document.GetRecord(collections[kind].GetCollection(),
                                                            static_cast<int>(expected)));
        }
        ASSERT_EQ(section.GetSectionPoints()[layer], in(integers[3], layer, shell.section, -1));
        for (std::size_t kind = 0; kind < 2; ++kind) {
            double const constant = in(constants[kind], layer, shell.section, kNone);
            // A store of distributed values always has a drawer here, and so hides no constants.
            ASSERT_EQ((*reals[kind])[layer], constant);
            bool const covered =
                std::all_of(shell.elements.begin(), shell.elements.end(), [&](int element) {
                    return distributed[kind].count({layer, element}) != 0;
                });
            auto const expected = constant != kNone ? KOVSrvShellSection::VariationConstant
                                  : covered         ? KOVSrvShellSection::VariationDistributed
                                                    : KOVSrvShellSection::VariationNone;
            ASSERT_EQ((*variations[kind])[layer], expected);
        }
    }
}

void ShellLayersAgainstModel::Round(Medium medium) {
    mesh = std::make_unique<ShellDocument>(medium, 10, kElements);
    MakeShells();
    AppendSections();
    AppendFields();
    mesh->WriteBulk();
    ASSERT_EQ(LayersHeld(), kNothingHeld);
    mesh->Reopen(KOVObjDocument::ReadOnly);
    ASSERT_NO_FATAL_FAILURE(ExpectStores());
    for (std::size_t at = 0; at < shells.size(); ++at) {
        SCOPED_TRACE(at);
        ASSERT_NO_FATAL_FAILURE(ExpectSection(at));
        KOVSrvShellSection const section(mesh->Assignment(static_cast<int>(at)));
        for (auto variation : section.GetThicknessVariation()) ++seen[variation];
    }
}

TEST_P(ShellLayersAgainstModel, SectionsGetTheLayersThatWereAppended) {
    int const rounds = GetParam() == Medium::Memory ? 150 : 25;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        ASSERT_NO_FATAL_FAILURE(Round(GetParam()));
    }
    for (int count : seen) EXPECT_GT(count, 0);
}

}  // namespace
}  // namespace kov::test
