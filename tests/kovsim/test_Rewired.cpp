// Documents whose links lead to anything: cut and compared, or refused, and never more than that.

#include <gtest/gtest.h>

#include <exception>
#include <set>

#include "LabelComparison.h"
#include "NamedElements.h"
#include "RandomModel.h"
#include "SetMapping.h"
#include "SubModel.h"

namespace kov::test {
namespace {

struct Less {
    bool operator()(KOVSimPosition const& a, KOVSimPosition const& b) const {
        return a.ID().Compare(b.ID()) < 0;
    }
};

// Everything that links lead to.
std::vector<KOVSimPosition> AllObjects(KOVObjDocument const& document) {
    std::set<KOVSimPosition, Less> known;
    std::vector<KOVSimPosition> all;
    auto const add = [&](KOVSimPosition const& position) {
        if (!position.IsNull() && known.insert(position).second) all.push_back(position);
    };
    add(document.Focus());
    for (std::size_t i = 0; i < all.size(); ++i) {
        KOVSimPosition const owner = all[i];
        for (int const member : owner.Members()) {
            add(owner.GetPosition(member));
            for (auto at = owner.GetVector(member).Begin(); at.NotDone(); ++at) add(*at);
            for (auto at = owner.GetMap(member).Begin(); at.NotDone(); ++at) add(at.Value());
        }
    }
    return all;
}

// Sets some links to other objects than before, takes some away, and exchanges entries of maps.
void Rewire(RandomModel& model, int changes) {
    std::vector<KOVSimPosition> const all = AllObjects(model.document);
    auto const any = [&] {
        return all[static_cast<std::size_t>(model.Random(static_cast<int>(all.size())))];
    };
    KOVSimTransaction transaction(model.document.ContextID());
    for (int i = 0; i < changes; ++i) {
        KOVSimPosition const owner = any();
        KOVBasVector<int> const members = owner.Members();
        if (members.Size() == 0) continue;
        int const member = members[model.Random(members.Size())];
        switch (model.Random(4)) {
            case 0:
                owner.SetPosition(member, KOVSimPosition());
                break;
            case 1:
                owner.GetVector(member).PushBack(any());
                break;
            case 2: {
                KOVSimMap const map = owner.GetMap(member);
                for (KOVSimMapiterator at = map.Begin(); at.NotDone(); ++at) {
                    if (model.Random(3) == 0) map.Insert(at.Key(), any());
                }
                break;
            }
            default:
                owner.SetPosition(member, any());
        }
    }
    transaction.Commit();
}

TEST(Rewired, DocumentsAreCutOrRefused) {
    int cut = 0;
    int refused = 0;
    for (unsigned seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomModel model(seed, {2, 10, 10});
        Rewire(model, 1 + static_cast<int>(seed % 20));
        KOVObjDocument const target = KOVObjDocument::CreateInMemory();
        try {
            KOVSimTransaction transaction(target.ContextID());
            KOVSimCSet const elements =
                tool::ElementsNamed(model.document, seed % 2 == 0 ? "S-1" : "E3");
            tool::WriteSubModel(model.document, elements, target);
            transaction.Commit();
            EXPECT_TRUE(target.Verify([](char const* finding) { ADD_FAILURE() << finding; }));
            ++cut;
        } catch (std::exception const& refusal) {
            EXPECT_NE(std::string(refusal.what()), "");
            ++refused;
        }
    }
    // Both ways are walked.
    EXPECT_GT(cut, 10);
    EXPECT_GT(refused, 10);
}

TEST(Rewired, DocumentsAreComparedOrRefused) {
    int compared = 0;
    RandomModel const sound(1000, {2, 10, 10});
    for (unsigned seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomModel model(seed, {2, 10, 10});
        Rewire(model, 1 + static_cast<int>(seed % 20));
        for (auto const type : {KOVObjLabelerNodes, KOVObjLabelerElements}) {
            int const map =
                type == KOVObjLabelerNodes ? schema::Model_nodeSets() : schema::Model_elementSets();
            for (bool const forth : {true, false}) {
                KOVObjDocument const& a = forth ? model.document : sound.document;
                KOVObjDocument const& b = forth ? sound.document : model.document;
                try {
                    tool::CompareLabels(a, b, type);
                    for (KOVSimMapiterator at = a.GetModel().GetMap(map).Begin(); at.NotDone();
                         ++at) {
                        if (!KOVSimCSetID::CanBeConverted(at.Value().ID())) continue;
                        tool::MapSet(a, b, type, at.Value().GetCSet(), true);
                    }
                    ++compared;
                } catch (std::exception const& refusal) {
                    EXPECT_NE(std::string(refusal.what()), "");
                }
            }
        }
    }
    EXPECT_GT(compared, 50);
}

}  // namespace
}  // namespace kov::test
