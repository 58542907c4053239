// Assertions on what the document layer answers, which it never answers so by itself. The answers
// are forged here: this program's own definitions of two operations go before those of the library,
// which they call and whose answer they change when told to.
#include <dlfcn.h>

#include <cstring>
#include <memory>

#include "services/ClassFixture.h"
#include "services/CopyFixture.h"

namespace kov::test {
namespace {

enum class Forged { Nothing, NoMembership, OneDimension, GrowingWithoutChunks };
Forged forged = Forged::Nothing;

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
}  // namespace kov::test

using kov::test::Forged;
using kov::test::forged;

void KOVSimContext::GetCMembership(
    KOVSimArray<KOVSimDynamicID, KOVSimArrayCopyClassPolicy<KOVSimDynamicID>> const& records,
    KOVSimCollectionID& collection,
    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>& indices) const {
    static auto const genuine = kov::test::Genuine<decltype(&KOVSimContext::GetCMembership)>(
        "_ZNK13KOVSimContext14GetCMembershipERK11KOVSimArrayI15KOVSimDynamicID"
        "26KOVSimArrayCopyClassPolicyIS1_EER18KOVSimCollectionIDRS0_Ii"
        "24KOVSimArrayBuiltinPolicyIiEE");
    bool const expected = !collection.IsNull();
    (this->*genuine)(records, collection, indices);
    if (forged == Forged::NoMembership && expected) indices.SetSize(0);
}

void KOVSimDistribution::QueryDrawers(
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>&
        drawers) const {
    static auto const genuine = kov::test::Genuine<decltype(&KOVSimDistribution::QueryDrawers)>(
        "_ZNK18KOVSimDistribution12QueryDrawersER11KOVSimArrayI26KOVSimPersistentDrawerDesc"
        "22KOVSimArrayClassPolicyIS1_EE");
    (this->*genuine)(drawers);
    for (KOVSimPersistentDrawerDesc& drawer : drawers) {
        if (forged == Forged::GrowingWithoutChunks) drawer.extendableDim = 0;
        if (forged != Forged::OneDimension) continue;
        KOVBasVector<KOVSimCSet> sets;
        sets.PushBack(drawer.compartment.CSet(0));
        drawer.compartment = KOVSimOCompartment(sets);
    }
}

namespace kov::test {
namespace {

using ForgedAnswersDeath = testing::Test;

TEST(ForgedAnswersDeath, ClassThatIsNoMemberIsRefused) {
    auto const build = [] {
        ClassDocument const mesh;
        mesh.AddSpecifications({zdm_Shape_LINE_2});
        mesh.Assign({{0, {1}}});
        return mesh.Build().IsNull();
    };
    EXPECT_FALSE(build());
    ExpectCheckedAssertion("CMembers.Size() == 1", "KOVSrvEltClassBuilderImplShape", [&] {
        forged = Forged::NoMembership;
        build();
    });
}

// Copies a plain drawer of (nodes, components).
void CopyForged(Forged how) {
    MeshDocument const mesh;
    auto const transaction = mesh.Write();
    std::vector<KOVSimCSetID> const sets{mesh.Nodes({1, 2}), mesh.Components({0})};
    auto const read = NewDistribution(mesh.document, {mesh.nodes, mesh.components});
    AddDrawer<double>(read, {}, sets, {1, 2});
    auto const written = NewDistribution(mesh.document, {mesh.nodes, mesh.components});
    forged = how;
    Copy(written, read, sets, sets);
}

TEST(ForgedAnswersDeath, DrawerOfOtherDimensionsThanItsDistributionIsRefused) {
    CopyForged(Forged::Nothing);
    ExpectCopierAssertion("dim == readDistDims", [] { CopyForged(Forged::OneDimension); });
}

TEST(ForgedAnswersDeath, GrowingDrawerWithoutChunksIsRefused) {
    ExpectCopierAssertion("\"only chunked drawers are extendable\" == 0",
                          [] { CopyForged(Forged::GrowingWithoutChunks); });
}

}  // namespace
}  // namespace kov::test
