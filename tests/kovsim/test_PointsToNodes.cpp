// Values carried from integration points to nodes, on elements of all shapes at once.

#include "PointsToNodes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "ElementTypes.h"
#include "InMemory.h"
#include "IntegrationPoints.h"
#include "ResultBuilder.h"

namespace kov::test {
namespace {

using Place = std::array<double, 3>;
using tool::IntegrationPoints;

enum class Parent { Line, Triangle, Quad, Tetra, Pyramid, Wedge, Hexahedron };

struct Sample {
    char const* type;
    Parent parent;
    int points;
};

// Rules whose functions hold all that are linear in space, however the corners lie.
constexpr Sample kSamples[] = {
    {"C3D8", Parent::Hexahedron, 8},   {"C3D20R", Parent::Hexahedron, 8},
    {"C3D20", Parent::Hexahedron, 27}, {"C3D4", Parent::Tetra, 4},
    {"C3D10", Parent::Tetra, 4},       {"C3D5", Parent::Pyramid, 5},
    {"C3D6", Parent::Wedge, 6},        {"C3D15", Parent::Wedge, 9},
    {"S4", Parent::Quad, 4},           {"S8R", Parent::Quad, 9},
    {"S3", Parent::Triangle, 3},       {"STRI65", Parent::Triangle, 3},
    {"T3D2", Parent::Line, 2},         {"B32", Parent::Line, 3},
};

// How much each corner counts at a place of the parent element.
std::vector<double> Weights(Parent parent, Place const& at) {
    auto const [x, y, z] = at;
    double const a = (1 - x) / 2, b = (1 + x) / 2, c = (1 - y) / 2, d = (1 + y) / 2;
    double const e = (1 - z) / 2, f = (1 + z) / 2;
    switch (parent) {
        case Parent::Line:
            return {a, b};
        case Parent::Triangle:
            return {1 - x - y, x, y};
        case Parent::Quad:
            return {a * c, b * c, b * d, a * d};
        case Parent::Tetra:
            return {1 - x - y - z, x, y, z};
        case Parent::Pyramid: {
            double const h = 1 - z;
            if (h == 0) return {0, 0, 0, 0, 1};
            return {(h - x) * (h - y) / (4 * h), (h + x) * (h - y) / (4 * h),
                    (h + x) * (h + y) / (4 * h), (h - x) * (h + y) / (4 * h), z};
        }
        case Parent::Wedge:
            return {(1 - x - y) * e, x * e, y * e, (1 - x - y) * f, x * f, y * f};
        case Parent::Hexahedron:
            return {a * c * e, b * c * e, b * d * e, a * d * e,
                    a * c * f, b * c * f, b * d * f, a * d * f};
    }
    return {};
}

// One element of each type beside the others, with corners moved about and straight edges, and at
// its points the values of `field`.
class Elements {
  public:
    Elements(unsigned seed, std::function<double(Place const&)> const& field) {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> move(-0.2, 0.2);
        std::string nodes = "*NODE\n";
        std::string elements;
        int label = 0;
        for (Sample const& sample : kSamples) {
            tool::ElementType const& type = *tool::FindElementType(sample.type);
            IntegrationPoints const rule = *tool::FindIntegrationPoints(type, sample.points);
            // The corners: as in the parent element, moved.
            std::vector<Place> corners;
            for (Place const& node : rule.nodes) {
                bool corner = false;
                for (double const weight : Weights(sample.parent, node)) {
                    corner = corner || weight == 1;
                }
                if (!corner) continue;
                Place& moved = corners.emplace_back(node);
                for (double& each : moved) each += move(random);
                moved[0] += 10.0 * label;
            }
            auto const place = [&](Place const& at) {
                Place found{};
                std::vector<double> const weights = Weights(sample.parent, at);
                for (std::size_t i = 0; i < weights.size(); ++i) {
                    for (std::size_t k = 0; k < 3; ++k) found[k] += weights[i] * corners[i][k];
                }
                return found;
            };
            elements +=
                "*ELEMENT, TYPE=" + std::string(sample.type) + "\n" + std::to_string(++count);
            for (Place const& node : rule.nodes) {
                elements += ",\n" + std::to_string(++label);
                nodes += std::to_string(label) + ", 0, 0, 0\n";
                expected.push_back(field(place(node)));
            }
            elements += "\n";
            std::vector<double>& values = atPoints.emplace_back();
            for (Place const& point : rule.points) values.push_back(field(place(point)));
        }
        deck = nodes + elements;
    }

    std::string deck;
    int count = 0;
    std::vector<double> expected;               ///< at all nodes
    std::vector<std::vector<double>> atPoints;  ///< by element
};

std::vector<double> Carried(Elements const& elements, std::vector<std::string>& notes) {
    InMemory model(elements.deck);
    EXPECT_EQ(model.Error(), "");
    {
        KOVSimTransaction transaction(model.document.ContextID());
        ResultBuilder r(model.document);
        KOVSimPosition const step = r.Step("Load");
        KOVSimPosition const field = r.Field(step, r.Frame(step, 1, 1, 1), "PEEQ",
                                             zdm_Algebraic_SCALAR, schema::Grid_IntegrationPoint());
        for (int point = 1; point <= 27; ++point) {
            KOVSimPosition const serial = r.Serial(field, point);
            for (int element = 0; element < elements.count; ++element) {
                auto const& values = elements.atPoints[static_cast<std::size_t>(element)];
                if (point > static_cast<int>(values.size())) continue;
                r.Drawer(field, serial, {element}, ResultBuilder::Scalar(),
                         {values[static_cast<std::size_t>(point) - 1]});
            }
        }
        transaction.Commit();
    }
    tool::DocumentResults results(model.document);
    tool::FieldContent const field =
        results.Look(results.FieldsOf(results.Steps()[0].frames[0])[0]);
    tool::PointsToNodes points(model.document, field);
    std::vector<double> means = points.Means(model.Nodes().Space());
    notes = points.Notes();
    model.document.Close();
    return means;
}

void Compare(std::function<double(Place const&)> const& field) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Elements const elements(seed, field);
    std::vector<std::string> notes;
    std::vector<double> const means = Carried(elements, notes);
    EXPECT_THAT(notes, testing::IsEmpty());
    ASSERT_EQ(means.size(), elements.expected.size());
    for (std::size_t i = 0; i < means.size(); ++i) {
        EXPECT_NEAR(means[i], elements.expected[i], 1e-5 * (1 + std::abs(elements.expected[i])))
            << "node " << i + 1;
    }
}

TEST(PointsToNodes, ConstantsAreKept) {
    Compare([](Place const&) { return -7.25; });
}

TEST(PointsToNodes, WhatIsLinearInSpaceIsKeptOnDistortedElements) {
    Compare([](Place const& at) { return 2 + 0.01 * at[0] - 3 * at[1] + 0.5 * at[2]; });
}

}  // namespace
}  // namespace kov::test
