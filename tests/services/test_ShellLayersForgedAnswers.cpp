// Assertions on the size of a view, which the document layer never answers wrongly by itself. The
// answer is forged here: this program's own definition of the operation goes before that of the
// library, which it calls.
#include <dlfcn.h>

#include <cstring>

#include "services/ShellFixture.h"

namespace {

// Answers of the operation that are left alone before all are wrong; below 0 for ever.
int truthful = -1;

}  // namespace

int KOVSimTransfer::RequiredBufferSize(int buffer) const {
    using Function = decltype(&KOVSimTransfer::RequiredBufferSize);
    static Function const genuine = [] {
        void* const found = dlsym(RTLD_NEXT, "_ZNK14KOVSimTransfer18RequiredBufferSizeEi");
        Function function{};
        static_assert(sizeof function >= sizeof found);
        std::memcpy(&function, &found, sizeof found);
        return function;
    }();
    int const answer = (this->*genuine)(buffer);
    if (truthful < 0) return answer;
    if (truthful == 0) return answer + 1;
    --truthful;
    return answer;
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

}  // namespace
}  // namespace kov::test
