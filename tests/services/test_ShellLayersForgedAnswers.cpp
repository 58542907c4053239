// What goes between the services and the document layer: the number of transfers, and the size of
// a view, which the document layer never answers wrongly by itself. This program's own definitions
// of the operations go before those of the library, which they call: they count the calls, and
// forge the answer.
#include <dlfcn.h>

#include <cstring>

#include "services/ShellFixture.h"

namespace {

// Answers of the operation that are left alone before all are wrong; below 0 for ever.
int truthful = -1;

struct Transfers {
    int reads = 0, writes = 0, makes = 0;
};
Transfers transfers;

// The library's own definition of the operation of that symbol.
template <class Function>
Function Genuine(char const* symbol) {
    void* const found = dlsym(RTLD_NEXT, symbol);
    Function function{};
    static_assert(sizeof function >= sizeof found);
    std::memcpy(&function, &found, sizeof found);
    return function;
}

}  // namespace

int KOVSimTransfer::RequiredBufferSize(int buffer) const {
    static auto const genuine = Genuine<decltype(&KOVSimTransfer::RequiredBufferSize)>(
        "_ZNK14KOVSimTransfer18RequiredBufferSizeEi");
    int const answer = (this->*genuine)(buffer);
    if (truthful < 0) return answer;
    if (truthful == 0) return answer + 1;
    --truthful;
    return answer;
}

KOVSimTransfer& KOVSimTransfer::ExecRead() {
    static auto const genuine =
        Genuine<decltype(&KOVSimTransfer::ExecRead)>("_ZN14KOVSimTransfer8ExecReadEv");
    ++transfers.reads;
    return (this->*genuine)();
}

KOVSimTransfer& KOVSimTransfer::ExecWrite() {
    static auto const genuine =
        Genuine<decltype(&KOVSimTransfer::ExecWrite)>("_ZN14KOVSimTransfer9ExecWriteEv");
    ++transfers.writes;
    return (this->*genuine)();
}

KOVSimTransfer& KOVSimTransfer::ExecMake() {
    static auto const genuine =
        Genuine<decltype(&KOVSimTransfer::ExecMake)>("_ZN14KOVSimTransfer8ExecMakeEv");
    ++transfers.makes;
    return (this->*genuine)();
}

namespace kov::test {
namespace {

constexpr char const* kIntegers = "len == buffer.size()*sizeof(int)";
constexpr char const* kReals = "len == buffer.size()*sizeof(double)";
constexpr char const* kThicknesses = "len == thicknesses.size()*sizeof(double)";
constexpr char const* kAngles = "len == angles.size()*sizeof(double)";

class ShellLayersForged : public ShellTest {
  protected:
    ~ShellLayersForged() override { truthful = -1; }
    // The write ends with that condition, when `left` answers were left alone.
    void ExpectFails(std::string const& condition, int left = 0) {
        ExpectThrownAssertion(condition, "KOVSrvBulkShellLayers", [&] {
            truthful = left;
            mesh.WriteBulk();
        });
        truthful = -1;
    }
    // One layer of one element.
    void AppendField(void (KOVSrvBulkShellLayers::*append)(int, KOVSimPosition, KOVSimPosition)) {
        InTransaction(
            [&] { (Bulk().*append)(0, mesh.ElementSet({1}), mesh.NewField({1}, {0.5})); });
    }
    // The answers that reading a field takes before its row is written: the buffer of the read.
    static constexpr int kOfReading = 1;
};
INSTANTIATE_TEST_SUITE_P(Media, ShellLayersForged, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(ShellLayersForged, EachIntegerWriterChecksTheSizeOfTheView) {
    Bulk().AppendMaterial(0, 0, 1);
    ExpectFails(kIntegers);
    EndBulk();
    Bulk().AppendOrientation(0, 0, 1);
    ExpectFails(kIntegers);
    EndBulk();
    Bulk().AppendPly(0, 0, 1);
    ExpectFails(kIntegers);
    EndBulk();
    Bulk().AppendNumSectionPoints(0, 0, 1);
    ExpectFails(kIntegers);
}

TEST_P(ShellLayersForged, EachWriterOfConstantsChecksTheSizeOfTheView) {
    Bulk().AppendConstThickness(0, 0, 1);
    ExpectFails(kReals);
    EndBulk();
    Bulk().AppendConstAngle(0, 0, 1);
    ExpectFails(kReals);
}

TEST_P(ShellLayersForged, EachWriterOfDistributedValuesChecksTheSizeOfTheView) {
    AppendField(&KOVSrvBulkShellLayers::AppendDistThickness);
    ExpectFails(kThicknesses, kOfReading);
    EndBulk();
    AppendField(&KOVSrvBulkShellLayers::AppendDistAngle);
    ExpectFails(kAngles, kOfReading);
}

TEST_P(ShellLayersForged, AFailedWriteLeavesTheDocumentAsItWasAndHoldsWhatWasNotWritten) {
    Bulk().AppendMaterial(0, 0, 1);
    Bulk().AppendPly(0, 0, 1);
    Bulk().AppendPly(1, 0, 1);
    Bulk().AppendConstAngle(0, 0, 1);
    // The material and the first layer of plies are written: two answers for each row.
    ExpectFails(kIntegers, 4);
    EXPECT_EQ(LayersHeld(), (std::vector<int>{0, 0, 2, 0, 0, 1, 0, 0}));
    mesh.Reopen();
    EXPECT_TRUE(mesh.BulkRecord().IsNull());
    // The object serves on.
    WriteAndReopen();
    EXPECT_TRUE(mesh.BulkMember(schema::BulkShellLayers_materials()).IsNull());
    EXPECT_EQ(mesh.StoredRows(schema::BulkShellLayers_plies()),
              (Rows{Row{{0}, {0}, {1}}, Row{{1}, {0}, {1}}}));
    EXPECT_EQ(LayersHeld(), kNothingHeld);
}

class ShellLayersTransfers : public ShellTest {
  protected:
    // `work` takes that many transfers.
    template <class Work>
    void ExpectTransfers(int reads, int writes, int makes, Work work) {
        transfers = {};
        work();
        EXPECT_EQ(transfers.reads, reads);
        EXPECT_EQ(transfers.writes, writes);
        EXPECT_EQ(transfers.makes, makes);
    }
    // Two layers of all kinds of sections 0 to `count` - 1, and two pairs for each layer.
    void AppendAll(int count) {
        for (int section = 0; section < count; ++section) {
            for (int layer = 0; layer < 2; ++layer) {
                Bulk().AppendMaterial(layer, section, 1);
                Bulk().AppendOrientation(layer, section, 1);
                Bulk().AppendPly(layer, section, 1);
                Bulk().AppendNumSectionPoints(layer, section, 1);
                Bulk().AppendConstThickness(layer, section, 1);
                Bulk().AppendConstAngle(layer, section, 1);
            }
        }
        InTransaction([&] {
            for (int layer : {0, 0, 1, 1}) {
                KOVSimPosition const field = mesh.NewField({layer}, {1});
                Bulk().AppendDistThickness(layer, mesh.ElementSet({layer, 5}), field);
                Bulk().AppendDistAngle(layer, mesh.ElementSet({layer, 5}), field);
            }
        });
    }
};
INSTANTIATE_TEST_SUITE_P(Media, ShellLayersTransfers, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(ShellLayersTransfers, EachDrawerIsMadeAndWrittenOnceWhateverTheNumberOfSections) {
    for (int sections : {1, 8}) {
        AppendAll(sections);
        // 8 kinds of 2 layers, and the reads of 8 pairs.
        ExpectTransfers(8, 16, 16, [&] { mesh.WriteBulk(); });
    }
}

TEST_P(ShellLayersTransfers, ASectionIsReadByOneForEachKindAndOnceOnly) {
    AppendAll(8);
    WriteAndReopen();
    KOVSimPosition const assignment = mesh.Assignment(0);
    std::unique_ptr<KOVSrvShellSection> section;
    ExpectTransfers(2, 0, 0, [&] { section = std::make_unique<KOVSrvShellSection>(assignment); });
    ExpectTransfers(1, 0, 0, [&] { section->GetMaterials(); });
    ExpectTransfers(1, 0, 0, [&] { section->GetOrientations(); });
    ExpectTransfers(1, 0, 0, [&] { section->GetPlies(); });
    ExpectTransfers(1, 0, 0, [&] { section->GetSectionPoints(); });
    ExpectTransfers(0, 0, 0, [&] {
        section->GetMaterials();
        section->GetOrientations();
        section->GetPlies();
        section->GetSectionPoints();
        section->GetConstThicknesses();
        section->GetConstRotationAngles();
    });
    ExpectTransfers(1, 0, 0, [&] { section->UpdateThicknesses(); });
    ExpectTransfers(1, 0, 0, [&] { section->UpdateRotationAngles(); });
}

TEST_P(ShellLayersTransfers, ASectionOfNoLayersTakesNone) {
    InTransaction([&] { mesh.Assign(3, 0, {1}); });
    AppendAll(8);
    WriteAndReopen();
    KOVSimPosition const assignment = mesh.Assignment(1);
    ExpectTransfers(0, 0, 0, [&] {
        KOVSrvShellSection const section(assignment);
        section.GetMaterials();
        section.GetOrientations();
        section.GetPlies();
        section.GetSectionPoints();
    });
}

}  // namespace
}  // namespace kov::test
