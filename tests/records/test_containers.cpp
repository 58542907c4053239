// The link containers: KOVSimVector, KOVSimSet, KOVSimMap.
#include <string>
#include <vector>

#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;

class Containers : public DocumentTest {
  protected:
    std::vector<KOVSimPosition> Records(int n) {
        std::vector<KOVSimPosition> records;
        for (int i = 0; i < n; ++i) records.push_back(NewRecord(schema::Layer()));
        return records;
    }
};
KOV_DOCUMENT_TESTS(Containers);

std::vector<int> Numbers(KOVSimVector const& vector) {
    std::vector<int> numbers;
    for (KOVSimVectoriterator at = vector.Begin(); at.NotDone(); ++at)
        numbers.push_back((*at).ID().data.minor);
    return numbers;
}

TEST_P(Containers, AVectorKeepsOrderAndRepeatedTargets) {
    KOVSimPosition section;
    std::vector<int> expected;
    Write([&] {
        section = NewRecord(schema::Section());
        std::vector<KOVSimPosition> const records = Records(3);
        for (int const i : {2, 0, 1, 0}) {
            section.GetVector(schema::Section_layers())
                .PushBack(records[static_cast<std::size_t>(i)]);
            expected.push_back(records[static_cast<std::size_t>(i)].ID().data.minor);
        }
    });
    Reopen();
    KOVSimVector const layers = Again(section).GetVector(schema::Section_layers());
    EXPECT_EQ(4, layers.Size());
    EXPECT_EQ(expected, Numbers(layers));
    Write([&] { layers.Remove(1); });
    expected.erase(expected.begin() + 1);
    Reopen();
    KOVSimVector const left = Again(section).GetVector(schema::Section_layers());
    EXPECT_EQ(expected, Numbers(left));
    Write([&] {
        left.Remove(2);
        left.PushBack(Again(section));
        EXPECT_NE("", RefusalOf([&] { left.Remove(3); }));
        EXPECT_NE("", RefusalOf([&] { left.Remove(-1); }));
    });
    EXPECT_EQ(3, left.Size());
    EXPECT_EQ(section.ID().data.minor, Numbers(left).back());
}

TEST_P(Containers, TwoViewsOfOneMemberSeeTheSame) {
    Write([&] {
        KOVSimPosition const section = NewRecord(schema::Section());
        KOVSimVector const a = section.GetVector(schema::Section_layers());
        KOVSimVector const b = section.GetVector(schema::Section_layers());
        KOVSimVectoriterator before = b.Begin();
        a.PushBack(section);
        EXPECT_EQ(1, b.Size());
        EXPECT_FALSE(before.NotDone());
        KOVSimSet const s = section.GetSet(schema::Section_layers());
        s.Insert(section);
        EXPECT_EQ(1, section.GetSet(schema::Section_layers()).Size());
        EXPECT_EQ(1, b.Size());
    });
}

TEST_P(Containers, ASetHoldsEachTargetOnce) {
    KOVSimPosition owner;
    KOVSimPosition target;
    Write([&] {
        owner = NewRecord(schema::Model());
        target = NewRecord(schema::FieldEntry());
        owner.GetSet(schema::Model_fieldEntries()).Insert(target);
        owner.GetSet(schema::Model_fieldEntries()).Insert(target);
        owner.GetSet(schema::Model_fieldEntries()).Insert(owner);
    });
    Reopen();
    KOVSimSet const set = Again(owner).GetSet(schema::Model_fieldEntries());
    EXPECT_EQ(2, set.Size());
    int found = 0;
    for (KOVSimSetiterator at = set.Begin(); !at.Done(); ++at)
        found += (*at).ID() == Again(target).ID();
    EXPECT_EQ(1, found);
    Write([&] {
        set.Remove(Again(target));
        set.Remove(Again(target));
        set.Remove(KOVSimPosition());
    });
    EXPECT_EQ(1, set.Size());
    EXPECT_EQ(0, Again(target).ReferrersSet(schema::Model_fieldEntries()).Size());
}

TEST_P(Containers, AMapComparesKeysByteForByte) {
    KOVSimPosition model;
    std::vector<std::string> const keys = {
        "", "A", "Step-1", "a", "step-1", "é", std::string("x\0y", 3), "\xff"};
    Write([&] {
        model = NewRecord(schema::Model());
        for (std::string const& key : keys) {
            KOVString text;
            text.BuildFromUTF8(key.data(), static_cast<int>(key.size()));
            KOVSimPosition const step = NewRecord(schema::Step());
            step.SetName(text);
            model.GetMap(schema::Model_steps()).Insert(text, step);
        }
    });
    Reopen();
    KOVSimMap const steps = Again(model).GetMap(schema::Model_steps());
    EXPECT_EQ(static_cast<int>(keys.size()), steps.Size());
    std::string last;
    int seen = 0;
    for (KOVSimMapiterator at = steps.Begin(); at.NotDone(); ++at, ++seen) {
        KOVString const key = at.Key();
        std::string const bytes(key.TextOrEmpty(), static_cast<std::size_t>(key.GetLengthInByte()));
        EXPECT_TRUE(seen == 0 || last < bytes);
        last = bytes;
        EXPECT_EQ(key, at.Value().Name(-1));
        EXPECT_EQ(key, at.Value().Name(schema::Model_steps()));
        EXPECT_EQ(at.Value().ID(), steps.Find(key).ID());
    }
    EXPECT_EQ(static_cast<int>(keys.size()), seen);
    EXPECT_TRUE(steps.Find("STEP-1").IsNull());
    EXPECT_TRUE(steps.Find("x").IsNull());
}

TEST_P(Containers, InsertingUnderAKeyThatExistsReplacesIt) {
    KOVSimPosition first;
    KOVSimPosition second;
    KOVSimMap const steps = Document().GetModel().GetMap(schema::Model_steps());
    Write([&] {
        first = NewRecord(schema::Step());
        second = NewRecord(schema::Step());
        steps.Insert("s", first);
        EXPECT_EQ("s", first.GetReferenceKey(schema::Model_steps()));
        steps.Insert("s", second);
        EXPECT_TRUE(first.GetReferenceKey(schema::Model_steps()).IsEmpty());
        EXPECT_EQ("s", second.GetReferenceKey(schema::Model_steps()));
        EXPECT_NE("", RefusalOf([&] { steps.Insert("t", KOVSimPosition()); }));
    });
    EXPECT_EQ(1, steps.Size());
    EXPECT_EQ(second.ID(), steps.Find("s").ID());
    Write([&] {
        steps.Remove("s");
        steps.Remove("s");
    });
    EXPECT_EQ(0, steps.Size());
    EXPECT_TRUE(second.Parent(schema::Model_steps()).IsNull());
}

TEST_P(Containers, ReferrersFollowChangesAndRollbacks) {
    KOVSimPosition shape;
    std::vector<KOVSimPosition> specs;
    Write([&] {
        shape = NewRecord(schema::ShapeSymbol());
        for (int i = 0; i < 3; ++i) {
            specs.push_back(NewRecord(schema::ElementSpec()));
            specs.back().SetPosition(schema::ElementSpec_shape(), shape);
        }
    });
    EXPECT_EQ(3, shape.ReferrersSet(schema::ElementSpec_shape()).Size());
    EXPECT_EQ(specs[0].ID(), shape.Parent(schema::ElementSpec_shape()).ID());
    WriteAndDrop([&] {
        specs[0].SetPosition(schema::ElementSpec_shape(), specs[1]);
        specs[2].SetPosition(schema::ElementSpec_shape(), KOVSimPosition());
        EXPECT_EQ(1, shape.ReferrersSet(schema::ElementSpec_shape()).Size());
        EXPECT_EQ(specs[0].ID(), specs[1].Parent(schema::ElementSpec_shape()).ID());
    });
    EXPECT_EQ(3, shape.ReferrersSet(schema::ElementSpec_shape()).Size());
    EXPECT_TRUE(specs[1].Parent(schema::ElementSpec_shape()).IsNull());
}

}  // namespace
