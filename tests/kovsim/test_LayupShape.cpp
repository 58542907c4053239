#include "LayupShape.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "LayupPalette.h"

namespace kov::tool {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

LayerNumber Constant(double value) { return {LayerNumber::Variation::Constant, value, {}, {}}; }
LayerNumber Spread(double least, double greatest) {
    return {LayerNumber::Variation::ByElement, {}, std::pair(least, greatest), {}};
}

Layup WithThicknesses(std::vector<LayerNumber> const& thicknesses) {
    Layup layup;
    for (LayerNumber const& thickness : thicknesses) {
        layup.layers.emplace_back();
        layup.layers.back().thickness = thickness;
    }
    return layup;
}

double Sum(std::vector<double> const& numbers) {
    return std::accumulate(numbers.begin(), numbers.end(), 0.0);
}

TEST(LayupShape, NumbersThatCannotBeDrawnHaveNoExtent) {
    EXPECT_FALSE(ExtentOf({}));
    EXPECT_FALSE(ExtentOf({LayerNumber::Variation::ByElement, {}, {}, {}}));
    EXPECT_FALSE(ExtentOf(Constant(kNan)));
    EXPECT_FALSE(ExtentOf(Spread(0, kInfinity)));
    ASSERT_TRUE(ExtentOf(Spread(-3, 4)));
    EXPECT_EQ(ExtentOf(Spread(-3, 4))->least, -3);
    EXPECT_EQ(ExtentOf(Spread(-3, 4))->greatest, 4);
    EXPECT_FALSE(ExtentOf(Constant(2))->Varies());
}

TEST(LayupShape, TheNumberOfOneElementGoesBeforeTheRange) {
    LayerNumber number = Spread(1, 9);
    number.value = 4;
    EXPECT_EQ(ExtentOf(number)->least, 4);
    EXPECT_EQ(ExtentOf(number)->greatest, 4);
}

TEST(LayupShape, NegativeThicknessIsNone) {
    EXPECT_FALSE(ThicknessOf(WithThicknesses({Constant(-1)}).layers[0]));
    EXPECT_FALSE(ThicknessOf(WithThicknesses({Spread(-1, 2)}).layers[0]));
    EXPECT_FALSE(ThicknessOf(WithThicknesses({Spread(3, 2)}).layers[0]));
    EXPECT_TRUE(ThicknessOf(WithThicknesses({Constant(0)}).layers[0]));
}

TEST(BandHeights, AreInProportion) {
    auto const heights = BandHeights({1, 2, 5}, 400, 4);
    EXPECT_DOUBLE_EQ(heights[0], 50);
    EXPECT_DOUBLE_EQ(heights[1], 100);
    EXPECT_DOUBLE_EQ(heights[2], 250);
}

TEST(BandHeights, RaiseThinBandsAtTheCostOfTheOthersInProportion) {
    auto const heights = BandHeights({1e-9, 1, 3, 1e-9}, 408, 4);
    EXPECT_DOUBLE_EQ(heights[0], 4);
    EXPECT_DOUBLE_EQ(heights[3], 4);
    EXPECT_DOUBLE_EQ(heights[1], 100);
    EXPECT_DOUBLE_EQ(heights[2], 300);
}

TEST(BandHeights, RaisingOneCanMakeTheNextTooThin) {
    // To scale the second would have 10.1 pixels; what the first takes leaves less than 10.
    auto const heights = BandHeights({0.001, 1, 9}, 101, 10);
    EXPECT_DOUBLE_EQ(heights[0], 10);
    EXPECT_DOUBLE_EQ(heights[1], 10);
    EXPECT_DOUBLE_EQ(heights[2], 81);
}

TEST(BandHeights, OfNoThicknessAtAllAreEqual) {
    EXPECT_EQ(BandHeights({0, 0, 0, 0}, 100, 4), (std::vector<double>{25, 25, 25, 25}));
    EXPECT_TRUE(BandHeights({}, 100, 4).empty());
}

TEST(BandHeights, SumUpForAnyThicknesses) {
    std::mt19937 random(20240611);
    for (int run = 0; run < 300; ++run) {
        SCOPED_TRACE("run " + std::to_string(run) + " of seed 20240611");
        std::vector<double> thicknesses(1 + random() % 60);
        for (double& thickness : thicknesses) {
            double const power = std::uniform_real_distribution(-300.0, 308.0)(random);
            thickness = random() % 9 == 0 ? 0 : std::pow(10, run % 2 == 0 ? power : power / 300);
        }
        auto const heights = BandHeights(thicknesses, 1000, 4);
        EXPECT_NEAR(Sum(heights), 1000, 1e-6);
        for (std::size_t i = 0; i < heights.size(); ++i) {
            EXPECT_GE(heights[i], 4 - 1e-9);
            for (std::size_t k = 0; k < heights.size(); ++k)
                EXPECT_TRUE(thicknesses[i] >= thicknesses[k] || heights[i] <= heights[k] + 1e-9);
        }
    }
}

TEST(SpreadOut, LeavesPlacesThatHaveRoom) {
    std::vector<double> const wanted = {10, 30, 55, 90};
    auto const places = SpreadOut(wanted, 20, 5, 95);
    for (std::size_t i = 0; i < wanted.size(); ++i) EXPECT_DOUBLE_EQ(places[i], wanted[i]);
}

TEST(SpreadOut, MovesNeighboursApartAroundTheirMiddle) {
    auto const places = SpreadOut({48, 50, 52}, 20, 0, 100);
    EXPECT_DOUBLE_EQ(places[0], 30);
    EXPECT_DOUBLE_EQ(places[1], 50);
    EXPECT_DOUBLE_EQ(places[2], 70);
}

TEST(SpreadOut, StaysWithinTheEnds) {
    auto const places = SpreadOut({1, 2, 3, 99}, 10, 5, 95);
    EXPECT_EQ(places, (std::vector<double>{5, 15, 25, 95}));
    EXPECT_TRUE(SpreadOut({}, 10, 5, 95).empty());
}

TEST(SpreadOut, IsNearerThanOtherPlacesWouldBe) {
    std::mt19937 random(77);
    auto const distance = [](auto const& a, auto const& b) {
        double sum = 0;
        for (std::size_t i = 0; i < a.size(); ++i) sum += (a[i] - b[i]) * (a[i] - b[i]);
        return sum;
    };
    for (int run = 0; run < 200; ++run) {
        SCOPED_TRACE("run " + std::to_string(run) + " of seed 77");
        std::size_t const n = 1 + random() % 9;
        std::uniform_real_distribution<double> anywhere(0, 100);
        std::vector<double> wanted(n);
        for (double& place : wanted) place = anywhere(random);
        std::sort(wanted.begin(), wanted.end());
        auto const places = SpreadOut(wanted, 10, 2, 98);
        ASSERT_EQ(places.size(), n);
        EXPECT_GE(places.front(), 2 - 1e-9);
        EXPECT_LE(places.back(), 98 + 1e-9);
        for (std::size_t i = 1; i < n; ++i) EXPECT_GE(places[i] - places[i - 1], 10 - 1e-9);
        for (int other = 0; other < 50; ++other) {
            // Any places that keep the rules: gaps drawn at random, then put in order.
            std::vector<double> free(n);
            double const room = 96 - 10 * static_cast<double>(n - 1);
            for (double& place : free)
                place = 2 + std::uniform_real_distribution(0.0, room)(random);
            std::sort(free.begin(), free.end());
            for (std::size_t i = 0; i < n; ++i) free[i] += 10 * static_cast<double>(i);
            EXPECT_LE(distance(places, wanted), distance(free, wanted) + 1e-9);
        }
    }
}

TEST(LayupShape, ConstantThicknessesHaveLevelInterfaces) {
    LayupShape const shape = ShapeOf(WithThicknesses({Constant(1), Constant(3)}));
    EXPECT_EQ(shape.left, shape.right);
    EXPECT_EQ(shape.depths, (std::vector<double>{0, 1, 4}));
    EXPECT_FALSE(shape.varies);
    EXPECT_TRUE(shape.toScale[0] && shape.toScale[1]);
    EXPECT_NEAR(shape.right[1] * 4, shape.height, 1e-9);
}

TEST(LayupShape, ThicknessByElementSlantsTheInterfaces) {
    LayupShape const shape = ShapeOf(WithThicknesses({Constant(2), Spread(1, 2)}));
    EXPECT_TRUE(shape.varies);
    EXPECT_DOUBLE_EQ(shape.left[1], shape.right[1]);
    EXPECT_DOUBLE_EQ(2 * (shape.left[2] - shape.left[1]), shape.right[2] - shape.right[1]);
    EXPECT_EQ(shape.depths, (std::vector<double>{0, 2, 3}));
    EXPECT_EQ(shape.greatestDepths, (std::vector<double>{0, 2, 4}));
}

TEST(LayupShape, OneLayerWithoutThicknessTakesTheDepthsAway) {
    LayupShape const shape = ShapeOf(WithThicknesses({Constant(2), {}, Constant(4)}));
    EXPECT_TRUE(shape.depths.empty());
    EXPECT_FALSE(shape.toScale[1]);
    // It is drawn as the mean of the others.
    EXPECT_NEAR(shape.right[2] - shape.right[1], shape.height / 3, 1e-9);
}

TEST(LayupShape, ThinLayersAreMarked) {
    LayupShape const shape = ShapeOf(WithThicknesses({Constant(1), Constant(1e9), Constant(0)}));
    EXPECT_EQ(shape.toScale, (std::vector<bool>{false, true, false}));
    EXPECT_GE(shape.right[1], 3.9);
}

TEST(LayupShape, ManyLayersGetTheHeightTheirLinesNeed) {
    LayupShape const shape = ShapeOf(WithThicknesses(std::vector(200, Constant(0.1))));
    EXPECT_GE(shape.height, 200 * shape.pitch);
    ASSERT_EQ(shape.rows.size(), 200U);
    for (std::size_t i = 1; i < 200; ++i)
        EXPECT_GE(shape.rows[i] - shape.rows[i - 1], shape.pitch - 1e-9);
}

TEST(LayupShape, SumsBeyondTheLargestNumberHaveNoDepths) {
    LayupShape const shape = ShapeOf(WithThicknesses({Constant(1.7e308), Constant(1.7e308)}));
    EXPECT_TRUE(shape.depths.empty());
    EXPECT_NEAR(shape.right[1] * 2, shape.height, 1e-9);
}

TEST(LayupPalette, DirectionsAreReducedToAHalfTurn) {
    EXPECT_EQ(DirectionOf(0), 0);
    EXPECT_EQ(DirectionOf(-0.0), 0);
    EXPECT_FALSE(std::signbit(DirectionOf(-180)));
    EXPECT_EQ(DirectionOf(90), 90);
    EXPECT_EQ(DirectionOf(-90), 90);
    EXPECT_EQ(DirectionOf(135), -45);
    EXPECT_EQ(DirectionOf(-135), 45);
    EXPECT_EQ(DirectionOf(180), 0);
    EXPECT_EQ(DirectionOf(7 * 180 + 30), 30);
}

TEST(LayupPalette, TheUsualDirectionsKeepTheirColours) {
    EXPECT_EQ(DirectionColour(0), "#005fa0");
    EXPECT_EQ(DirectionColour(45), "#008c64");
    EXPECT_EQ(DirectionColour(90), "#cd5500");
    EXPECT_EQ(DirectionColour(-45), "#aa468c");
}

TEST(LayupPalette, OppositeDirectionsAreOneColour) {
    for (double angle = -360; angle <= 360; angle += 7.5)
        EXPECT_EQ(DirectionColour(angle), DirectionColour(angle + 180)) << angle;
    EXPECT_EQ(DirectionColour(1e308).size(), 7U);
    EXPECT_EQ(DirectionColour(-1e-320), DirectionColour(0));
}

TEST(LayupPalette, MaterialsRecurAfterTheLast) {
    EXPECT_NE(MaterialColour(0), MaterialColour(1));
    EXPECT_EQ(MaterialColour(0), MaterialColour(12));
    EXPECT_NE(MaterialColour(-1), MaterialColour(0));
}

}  // namespace
}  // namespace kov::tool
