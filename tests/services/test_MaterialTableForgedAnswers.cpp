// The assertions of a material table. The document layer has grids of one and two dimensions only;
// a drawer of three is forged here, by this program's own definition of the operation that tells of
// drawers, which goes before that of the library and calls it.
#include <dlfcn.h>

#include <cstdlib>
#include <cstring>

#include "services/TableFixture.h"

namespace {

// How many questions are answered truly before one is forged; -1: all.
int genuineAnswers = -1;
int forgedSets = 0;

}  // namespace

void KOVSimDistribution::QueryDrawers(
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>&
        drawers) const {
    using Function = decltype(&KOVSimDistribution::QueryDrawers);
    static Function const genuine = [] {
        void* const found =
            dlsym(RTLD_NEXT,
                  "_ZNK18KOVSimDistribution12QueryDrawersER11KOVSimArrayI26KOVSimPersistentDrawer"
                  "Desc22KOVSimArrayClassPolicyIS1_EE");
        Function function{};
        static_assert(sizeof function >= sizeof found);
        std::memcpy(&function, &found, sizeof found);
        return function;
    }();
    (this->*genuine)(drawers);
    if (genuineAnswers < 0 || genuineAnswers-- > 0) return;
    KOVBasVector<KOVSimCSet> sets;
    for (int i = 0; i < forgedSets; ++i) sets.PushBack(drawers.Get(0).compartment.CSet(0));
    drawers.Get(0).compartment = KOVSimOCompartment(sets);
}

namespace kov::test {
namespace {

constexpr char const* kSource = "KOVSrvFsmMaterialTable";

// Documents are made in the process that ends, below a folder of this one.
class MaterialTableDeath : public testing::TestWithParam<Medium> {
  protected:
    // A table of two dependents, the temperature and two field variables.
    template <class Work>
    auto WithTable(Work work) {
        return [=, this] {
            ::setenv("KOV_TEST_TMP", folder.Path().c_str(), 1);
            TableDocument mesh(GetParam());
            mesh.Save(Given().Table(), {{1, 2, 3, 20, 7, 8}, {4, 5, 6, 30, 9, 10}}, true, 2);
            mesh.Reopen();
            work(mesh);
        };
    }
    static Description Given() { return Description({2, 1}); }
    static void Associate(TableDocument& mesh, int type, int member, KOVSimPosition const& target) {
        auto const transaction = mesh.Write();
        mesh.behaviour.Associate(type, member, target);
        transaction->Commit();
        mesh.Reopen();
    }
    TempFolder const folder;
};
INSTANTIATE_TEST_SUITE_P(Media, MaterialTableDeath, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(MaterialTableDeath, FieldVariablesOverTheRowsAloneEndTheProcess) {
    auto const spoil = [](TableDocument& mesh) {
        Associate(mesh, schema::MaterialTable_fieldVariableData(), 3, mesh.Temperature());
    };
    ExpectCheckedAssertion("domain.Size() == 2", kSource, WithTable([=](TableDocument& mesh) {
                               spoil(mesh);
                               Given().Table().NumberFieldVariables(mesh.behaviour);
                           }));
    ExpectCheckedAssertion("domain.Size() == 2", kSource, WithTable([=](TableDocument& mesh) {
                               spoil(mesh);
                               mesh.Read(Given().Table());
                           }));
}

TEST_P(MaterialTableDeath, FieldVariablesAreLookedAtAgainWhenTheyAreRead) {
    ExpectCheckedAssertion("domain.Size() == 2", kSource, WithTable([](TableDocument& mesh) {
                               forgedSets = 1;
                               genuineAnswers = 5;
                               mesh.Read(Given().Table());
                           }));
}

TEST_P(MaterialTableDeath, TemperatureOverTwoCollectionsEndsTheProcess) {
    ExpectCheckedAssertion("domain.Size() == 1", kSource, WithTable([](TableDocument& mesh) {
                               Associate(mesh, schema::MaterialTable_temperatureData(), 2,
                                         mesh.Dependent(0));
                               mesh.Read(Given().Table());
                           }));
}

TEST_P(MaterialTableDeath, AppendToATableThatIsAbsentEndsTheProcess) {
    ExpectCheckedAssertion("ddesc.Size() == 1", kSource, WithTable([](TableDocument& mesh) {
                               Associate(mesh, schema::MaterialTable_dependentData(), 100,
                                         KOVSimPosition());
                               mesh.Append(Given().Table(), {}, true, 2);
                           }));
}

TEST_P(MaterialTableDeath, AppendWithoutDependentsEndsTheProcess) {
    ExpectCheckedAssertion("ddesc.Size() == 1", kSource, WithTable([](TableDocument& mesh) {
                               mesh.Append(Description({}).Table(), {{20, 7, 8}}, true, 2);
                           }));
}

TEST_P(MaterialTableDeath, AppendToATableOfTwoDrawersEndsTheProcess) {
    ExpectCheckedAssertion("ddesc.Size() == 1", kSource, WithTable([](TableDocument& mesh) {
                               auto const transaction = mesh.Write();
                               MeshDocument::NewDrawer<double>(
                                   mesh.Dependent(0).GetDistribution(),
                                   mesh.RowCollection().CreateCSetStrided(0, 1, 1, 1),
                                   mesh.Columns().CreateCSetStrided(0, 1, 1, 1), {1});
                               transaction->Commit();
                               mesh.Reopen();
                               mesh.Append(Given().Table(), {{1, 2, 3, 20, 7, 8}}, true, 2);
                           }));
}

TEST_P(MaterialTableDeath, ReadingATableWithoutItsFirstDependentEndsTheProcess) {
    ExpectCheckedAssertion("d1.IsNull() == false", kSource, WithTable([](TableDocument& mesh) {
                               Associate(mesh, schema::MaterialTable_dependentData(), 100,
                                         KOVSimPosition());
                               mesh.Read(Given().Table());
                           }));
    ExpectCheckedAssertion("d1.IsNull() == false", kSource, WithTable([](TableDocument& mesh) {
                               mesh.Read(Description({}).Table());
                           }));
}

TEST_P(MaterialTableDeath, DependentOverThreeCollectionsEndsTheProcess) {
    ExpectCheckedAssertion("ndomain == 2 || ndomain == 1", kSource,
                           WithTable([](TableDocument& mesh) {
                               forgedSets = 3;
                               genuineAnswers = 2;
                               mesh.Read(Given().Table());
                           }));
}

}  // namespace
}  // namespace kov::test
