// Shell layers, section assignments and element layer properties of documents whose files were
// damaged: each question is answered as it was before, or refused. The seed is printed with a
// failure; KOV_SEED sets it.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "KOVSrvElementLayerProperty.h"
#include "KOVSrvSectionServices.h"
#include "KOVSrvShellSectionPoints.h"
#include "services/ShellFixture.h"
#include "support/FastFolder.h"

namespace kov::test {
namespace {

namespace fs = std::filesystem;

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

std::string ReadFile(fs::path const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

constexpr int kSections = 6, kLayers = 4, kLink = 3;

class DamagedShells : public testing::Test {
  protected:
    DamagedShells() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {
        ShellDocument mesh(Medium::Disk, 10, 400);
        {
            auto const transaction = mesh.Write();
            mesh.AddCollections(kLayers, kSections);
            for (int section = 0; section < kSections; ++section) {
                mesh.Assign(section, kLayers, Range(50 * section, 70));
            }
            Append(mesh);
            AddProperty(mesh.document, *transaction);
            transaction->Commit();
        }
        mesh.WriteBulk();
        EndBulk();
        std::string const path = mesh.document.Path().Text();
        mesh.document.Close();
        for (auto const& entry : fs::recursive_directory_iterator(path)) {
            if (entry.is_regular_file() && entry.file_size() > 0)
                files.push_back(fs::relative(entry.path(), path).string());
        }
        fs::copy(path, place, fs::copy_options::recursive);
    }

    static void Append(ShellDocument const& mesh) {
        KOVSrvBulkShellLayers& bulk = Bulk();
        KOVSimPosition const all = mesh.ElementSet(Range(0, 400));
        KOVSimPosition const field = mesh.NewField(Range(0, 400), std::vector<double>(400, 0.25));
        for (int layer = 0; layer < kLayers; ++layer) {
            for (int section = 0; section < kSections; ++section) {
                bulk.AppendMaterial(layer, section, (layer + section) % 10);
                bulk.AppendOrientation(layer, section, section);
                bulk.AppendPly(layer, section, layer);
                bulk.AppendNumSectionPoints(layer, section, 3 + layer);
                if (layer != 2) bulk.AppendConstThickness(layer, section, 0.5 + layer);
                bulk.AppendConstAngle(layer, section, 15.0 * section);
            }
        }
        bulk.AppendDistThickness(2, all, field);
    }
    static KOVSrvElementLayerProperty Property(KOVObjDocument const& document) {
        return {document.Focus(),
                document.GetMaterialCollection().GetCollection(),
                schema::ElementSpecAssignment(),
                schema::Field_ElementLayerProperty(),
                kLink,
                64};
    }
    static KOVSimCollection Elements(KOVObjDocument const& document) {
        return KOVSimCollection(
            KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection());
    }
    static void AddProperty(KOVObjDocument const& document, KOVSimTransaction& transaction) {
        KOVSrvElementLayerProperty property = Property(document);
        KOVSimCollection layers(property.GetSectionLayerCollection());
        layers.ExtendSpace(kLayers);
        KOVSimCollectionID const values = document.GetMaterialCollection().GetCollection();
        for (int i = 0; i < 5; ++i) {
            property.Add(MeshDocument::Set(Elements(document), Range(80 * i, 80)),
                         MeshDocument::Set(layers, Range(0, 1 + i % 3)),
                         document.GetRecord(values, i));
        }
        property.Save(transaction);
    }

    // The answers of all services, the number of assignments first; those refused are empty.
    static std::vector<std::string> Ask(KOVObjDocument const& document) {
        std::vector<std::string> answers;
        auto const ask = [&](std::function<void(std::ostream&)> const& work) {
            std::ostringstream answer;
            try {
                work(answer);
                answers.push_back("answer " + answer.str());
            } catch (KOVSimException const&) {
                answers.emplace_back();
            }
        };
        std::vector<KOVSimPosition> assignments;
        ask([&](std::ostream& out) {
            KOVSimVectoriterator at =
                document.GetModel().GetVector(schema::Model_sectionAssignments()).Begin();
            for (; at.NotDone(); ++at) assignments.push_back(*at);
            out << assignments.size();
        });
        // Nothing to ask about then.
        if (answers.front().empty()) return {};
        for (KOVSimPosition const& assignment : assignments) {
            ask([&](std::ostream& out) { Section(assignment, out); });
        }
        ask([&](std::ostream& out) {
            KOVSrvShellSectionPoints const points(document);
            for (KOVSimPosition const& assignment : assignments) {
                out << points.GetNumSectionPoints(
                           assignment.GetPosition(schema::SectionAssignment_section()), 1)
                    << ' ';
            }
        });
        ask([&](std::ostream& out) {
            auto const pieces = KOVSrvSectionServices::GetSectionAssignments(
                KOVSimPosition(MeshDocument::Set(Elements(document), Range(30, 300))));
            for (auto const& [set, assignment] : pieces) {
                out << set.CSet().Size() << ':' << assignment.ID().data.minor << ' ';
            }
        });
        ask([&](std::ostream& out) {
            KOVSrvElementLayerProperty const property = Property(document);
            KOVSimCSetID const elements = MeshDocument::Set(Elements(document), Range(0, 400));
            KOVSimCSet const layers = property.GetElementLayers(elements);
            std::vector<int> values(static_cast<std::size_t>(400 * layers.Size()), -7);
            property.Lookup(KOVSimCSet(elements), layers, values.data());
            for (int value : values) out << value;
        });
        return answers;
    }
    static void Section(KOVSimPosition const& assignment, std::ostream& out) {
        KOVSrvShellSection const section(assignment);
        for (auto const* records :
             {&section.GetMaterials(), &section.GetOrientations(), &section.GetPlies()}) {
            for (KOVSimPosition const& record : *records) out << record.ID().data.minor << ' ';
        }
        for (int count : section.GetSectionPoints()) out << count << ' ';
        for (double thickness : section.GetConstThicknesses()) out << thickness << ' ';
        for (double angle : section.GetConstRotationAngles()) out << angle << ' ';
        for (auto variation : section.GetThicknessVariation()) out << variation << ' ';
    }
    // Empty where the document or its list of assignments is refused as a whole.
    std::vector<std::string> OpenAndAsk() const {
        KOVObjDocument document;
        try {
            document = KOVObjDocument::Open(place.c_str(), KOVObjDocument::ReadOnly);
        } catch (KOVSimException const&) {
            return {};
        }
        std::vector<std::string> answers = Ask(document);
        document.Close();
        return answers;
    }
    std::size_t Below(std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    }

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
    FastFolder const folder;
    std::string const place = folder / "model.ksd";
    std::vector<std::string> files;
};

TEST_F(DamagedShells, AnswerAsBeforeOrAreRefused) {
    std::vector<std::string> const sound = OpenAndAsk();
    ASSERT_EQ(sound.size(), 4U + kSections);
    for (std::string const& answer : sound) ASSERT_NE(answer, "");
    int refused = 0;
    for (int i = 0; i < 300; ++i) {
        fs::path const path = fs::path(place) / files[Below(files.size())];
        std::string const content = ReadFile(path);
        std::string damaged = content;
        switch (Below(3)) {
            case 0:  // a bit
                damaged[Below(damaged.size())] ^= static_cast<char>(1 << Below(8));
                break;
            case 1: {  // a stretch of one byte
                std::size_t const at = Below(damaged.size());
                std::size_t const length =
                    1 + Below(std::min<std::size_t>(damaged.size() - at, 600));
                damaged.replace(at, length, length, static_cast<char>(Below(256)));
                break;
            }
            default:  // the end
                damaged.resize(Below(damaged.size()));
        }
        std::ofstream(path, std::ios::binary) << damaged;
        std::vector<std::string> const answers = OpenAndAsk();
        refused += answers.empty();
        if (!answers.empty()) {
            ASSERT_EQ(answers.size(), sound.size());
            for (std::size_t k = 0; k < sound.size(); ++k) {
                refused += answers[k].empty();
                if (!answers[k].empty()) {
                    EXPECT_EQ(answers[k], sound[k]) << path << ", damage " << i;
                }
            }
        }
        std::ofstream(path, std::ios::binary) << content;
    }
    EXPECT_GT(refused, 0);
    EXPECT_EQ(OpenAndAsk(), sound);
}

}  // namespace
}  // namespace kov::test
