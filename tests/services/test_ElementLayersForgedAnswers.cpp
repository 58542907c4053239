// The assertions of an element layer property. The document layer never answers a view's size
// wrongly by itself: the answer is forged here, by this program's own definition of the operation,
// which goes before that of the library and calls it.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "services/ElementLayerFixture.h"

namespace {

bool forged = false;

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
    return (this->*genuine)(buffer) + (forged ? 4 : 0);
}

namespace kov::test {
namespace {

constexpr char const* kSource = "KOVSrvElementLayerProperty";

// Documents are made in the process that ends, below a folder of this one.
class ElementLayerPropertyDeath : public testing::TestWithParam<Medium> {
  protected:
    template <class Work>
    auto WithDocument(Work work) {
        return [=, this] {
            ::setenv("KOV_TEST_TMP", folder.Path().c_str(), 1);
            ElementLayerDocument mesh(GetParam());
            auto transaction = mesh.Write();
            KOVSrvElementLayerProperty first = mesh.Property();
            first.Add(mesh.Elements({1, 2}), mesh.LayerSet({0, 1}), mesh.Value(3));
            first.Save(*transaction);
            transaction->Commit();
            transaction.reset();
            mesh.Reopen();
            KOVSrvElementLayerProperty property = mesh.Property();
            transaction = mesh.Write();
            work(mesh, property);
        };
    }
    TempFolder const folder;
};
INSTANTIATE_TEST_SUITE_P(Media, ElementLayerPropertyDeath,
                         testing::Values(Medium::Memory, Medium::Disk), MediumName);

TEST_P(ElementLayerPropertyDeath, ElementsThatDoNotAscendEndTheProcess) {
    ExpectCheckedAssertion(
        "KOVSimCSet(elsetID).IsAscending()", kSource,
        WithDocument([](ElementLayerDocument& mesh, KOVSrvElementLayerProperty& property) {
            // The elements are looked at first.
            property.Add(MeshDocument::Ordered(mesh.elements, {2, 1}),
                         MeshDocument::Ordered(mesh.Layers(), {1, 0}), mesh.Value(1));
        }));
}

TEST_P(ElementLayerPropertyDeath, LayersThatDoNotAscendEndTheProcess) {
    ExpectCheckedAssertion(
        "KOVSimCSet(layersID).IsAscending()", kSource,
        WithDocument([](ElementLayerDocument& mesh, KOVSrvElementLayerProperty& property) {
            property.Add(mesh.Elements({1, 2}), MeshDocument::Ordered(mesh.Layers(), {1, 0}),
                         mesh.Value(1));
        }));
}

TEST_P(ElementLayerPropertyDeath, AddOfAViewOfAnotherSizeEndsTheProcess) {
    ExpectCheckedAssertion(
        "n*sizeof(int) == len", kSource,
        WithDocument([](ElementLayerDocument& mesh, KOVSrvElementLayerProperty& property) {
            forged = true;
            property.Add(mesh.Elements({1, 2}), mesh.LayerSet({0, 1}), mesh.Value(1));
        }));
}

TEST_P(ElementLayerPropertyDeath, LookupOfAViewOfAnotherSizeEndsTheProcess) {
    ExpectCheckedAssertion(
        "n*sizeof(int) == len", kSource,
        WithDocument([](ElementLayerDocument& mesh, KOVSrvElementLayerProperty& property) {
            int values[4];
            forged = true;
            property.Lookup(mesh.Elements({1, 2}), mesh.LayerSet({0, 1}), values);
        }));
}

// What the document has when the process ends by a failed assertion.
KOVObjDocument const* atTheEnd = nullptr;

std::string WhatThereIs(KOVObjDocument const& document) {
    KOVObjDocumentStatistics const now = document.Statistics();
    return "distributions " + std::to_string(now.distributions) + ", drawers " +
           std::to_string(now.drawers) + ", datasets " + std::to_string(now.datasets) + "\n";
}

void SayWhatThereIs() { std::fputs(WhatThereIs(*atTheEnd).c_str(), stderr); }

TEST_P(ElementLayerPropertyDeath, SetThatDoesNotAscendIsRefusedBeforeAnythingIsMade) {
    ElementLayerDocument const fresh(Medium::Memory);
    std::string const nothingMade = WhatThereIs(fresh.document);
    {
        auto const transaction = fresh.Write();
        KOVSrvElementLayerProperty property = fresh.Property();
        property.Add(fresh.Elements({1}), fresh.LayerSet({0}), fresh.Value(1));
        // It is told before a commit.
        EXPECT_NE(WhatThereIs(fresh.document), nothingMade);
    }
    auto const add = [&](bool elementsAscend) {
        ::setenv("KOV_TEST_TMP", folder.Path().c_str(), 1);
        ElementLayerDocument mesh(GetParam());
        auto const transaction = mesh.Write();
        KOVSrvElementLayerProperty property = mesh.Property();
        atTheEnd = &mesh.document;
        std::atexit(SayWhatThereIs);
        property.Add(
            elementsAscend ? mesh.Elements({1, 2}) : MeshDocument::Ordered(mesh.elements, {2, 1}),
            elementsAscend ? MeshDocument::Ordered(mesh.Layers(), {1, 0}) : mesh.LayerSet({0, 1}),
            mesh.Value(1));
    };
    EXPECT_EXIT(add(false), testing::ExitedWithCode(1), testing::HasSubstr(nothingMade));
    EXPECT_EXIT(add(true), testing::ExitedWithCode(1), testing::HasSubstr(nothingMade));
}

}  // namespace
}  // namespace kov::test
