// Results of a document against what was put in, on random fields.

#include "DocumentResults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "FieldRanges.h"
#include "PointsToNodes.h"
#include "ResultBuilder.h"
#include "support/DocumentFixture.h"

namespace kov::test {
namespace {

class Results : public DocumentTest {
  protected:
    void MakeMesh(int nodes, int elements) {
        Write([&] {
            KOVObjMesh const mesh(Document().GetMesh());
            KOVSimCollection(mesh.GetNodeCollection().GetCollection()).ExtendSpace(nodes);
            KOVSimCollection(mesh.GetElementCollection().GetCollection()).ExtendSpace(elements);
        });
    }
    tool::FieldContent Only() const {
        tool::DocumentResults results(Document());
        return results.Look(results.FieldsOf(results.Steps()[0].frames[0])[0]);
    }
};
KOV_DOCUMENT_TESTS(Results);

// Values by point, item and component.
using Values = std::map<std::pair<int, int>, std::vector<double>>;

struct Extremes {
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    std::pair<int, int> lowAt{-1, 0};  // item and point
    std::pair<int, int> highAt{-1, 0};
    int nans = 0;
};

Extremes ExtremesOf(Values const& values, std::size_t component) {
    Extremes found;
    for (auto const& [at, row] : values) {
        double const value = row[component];
        std::pair<int, int> const place{at.second, at.first};
        if (std::isnan(value)) {
            ++found.nans;
            continue;
        }
        if (found.lowAt.first < 0 || value < found.low ||
            (value == found.low && place < found.lowAt)) {
            found.low = value;
            found.lowAt = place;
        }
        if (found.highAt.first < 0 || value > found.high ||
            (value == found.high && place < found.highAt)) {
            found.high = value;
            found.highAt = place;
        }
    }
    return found;
}

TEST_P(Results, RangesAreThoseOfTheValues) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    auto const upTo = [&random](int n) {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    };
    // More items than a block has, far apart.
    int const space = 3 * tool::kFieldBlock;
    MakeMesh(space, space);
    int const points = 1 + upTo(3);
    int const width = 1 + upTo(3);
    std::vector<int> const all = ResultBuilder::Tensor();
    std::vector<int> const components(all.begin(), all.begin() + width);
    Values values;
    Write([&] {
        ResultBuilder r(Document());
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const field =
            r.Field(step, r.Frame(step, 1, 1, 1), "X", -1, schema::Grid_IntegrationPoint());
        for (int point = 1; point <= points; ++point) {
            KOVSimPosition const serial = r.Serial(field, point);
            int first = 0;
            for (int drawer = 0; drawer < 3; ++drawer) {
                std::vector<int> items;
                int const count = 1 + upTo(2000);
                for (int i = 0; i < count && first < space; ++i) {
                    items.push_back(first);
                    first += 1 + upTo(150);
                }
                if (items.empty()) continue;
                std::shuffle(items.begin(), items.end(), random);
                std::vector<double> numbers;
                for (int const item : items) {
                    std::vector<double>& row = values[{point, item}];
                    for (int c = 0; c < width; ++c) {
                        bool const none = upTo(20) == 0;
                        row.push_back(none ? std::numeric_limits<double>::quiet_NaN()
                                           : upTo(40) - 20);
                        numbers.push_back(row.back());
                    }
                }
                r.Drawer(field, serial, items, components, numbers);
            }
        }
    });
    Reopen();
    tool::FieldContent const field = Only();
    EXPECT_EQ(field.fault, "");
    EXPECT_EQ(field.rows, static_cast<std::int64_t>(values.size()));
    EXPECT_EQ(field.points, points);
    std::vector<tool::FieldRange> const ranges = tool::RangesOf(field);
    ASSERT_EQ(ranges.size(), static_cast<std::size_t>(width));
    for (tool::FieldRange const& range : ranges) {
        // The order of viewers may be another one than that of the symbols.
        std::size_t component = 0;
        while (field.components[component].name != range.symbol) ++component;
        Extremes const wanted = ExtremesOf(values, component);
        EXPECT_EQ(range.nans, wanted.nans);
        EXPECT_EQ(range.lowest.value, wanted.low);
        EXPECT_EQ(std::pair(range.lowest.item, range.lowest.point), wanted.lowAt);
        EXPECT_EQ(range.highest.value, wanted.high);
        EXPECT_EQ(std::pair(range.highest.item, range.highest.point), wanted.highAt);
    }
}

TEST_P(Results, StepsStandInTheirSequence) {
    MakeMesh(1, 1);
    Write([&] {
        ResultBuilder r(Document());
        r.Step("Z");
        KOVSimPosition const buckle = r.Step("A", schema::Step_Lin_Buckle());
        r.Frame(buckle, 4, 1.5, 9, "text");
        r.Step("M", schema::Step_Lin_Frequency());
    });
    Reopen();
    tool::DocumentResults const results(Document());
    ASSERT_EQ(results.Steps().size(), 3U);
    EXPECT_EQ(results.Steps()[0].name, "Z");
    EXPECT_EQ(results.Steps()[1].name, "A");
    EXPECT_EQ(results.Steps()[0].value, tool::FrameValue::Time);
    EXPECT_EQ(results.Steps()[1].value, tool::FrameValue::LoadFactor);
    EXPECT_EQ(results.Steps()[2].value, tool::FrameValue::Frequency);
    tool::FrameHead const head = tool::DocumentResults::ReadFrame(results.Steps()[1].frames[0]);
    EXPECT_EQ(head.increment, 4);
    EXPECT_EQ(head.value, 1.5);
    EXPECT_EQ(head.totalTime, 9.0);
    EXPECT_EQ(head.text, "text");
}

TEST_P(Results, AFrameWithoutATotalTimeHasItsValue) {
    Write([&] {
        ResultBuilder r(Document());
        KOVSimPosition const frame = r.New(schema::Frame());
        frame.GetDataRecord().SetDouble(1, 2.5);
        r.Step("A").GetVector(schema::Task_frames()).PushBack(frame);
    });
    Reopen();
    tool::DocumentResults const results(Document());
    tool::FrameHead const head = tool::DocumentResults::ReadFrame(results.Steps()[0].frames[0]);
    EXPECT_EQ(head.totalTime, 2.5);
    EXPECT_EQ(head.increment, 0);
}

TEST_P(Results, FieldsAreCountedOnce) {
    MakeMesh(3, 1);
    Write([&] {
        ResultBuilder r(Document());
        KOVSimPosition const step = r.Step("A");
        KOVSimPosition const frame = r.Frame(step, 1, 1, 1);
        r.Field(step, frame, "U_D", zdm_Algebraic_VECTOR, schema::Grid_Node());
        r.Field(step, {}, "V_D", zdm_Algebraic_VECTOR, schema::Grid_Node());
        // One that the step does not name.
        frame.GetSet(schema::Frame_fields()).Insert(r.New(schema::Field_Meshed()));
    });
    Reopen();
    EXPECT_EQ(tool::DocumentResults(Document()).CountFields(), 3);
}

TEST_P(Results, ADocumentWithoutAModelHasNone) {
    KOVObjDocument const bare = KOVObjDocument::CreateInMemory(KOVObjDocument::Bare);
    EXPECT_TRUE(tool::DocumentResults(bare).Steps().empty());
    EXPECT_EQ(tool::DocumentResults(bare).CountFields(), 0);
    bare.Close();
}

}  // namespace
}  // namespace kov::test
