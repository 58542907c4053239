// Pictures of layups that are large, odd or drawn at random: whether all is there and on the page.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "LayupSamples.h"
#include "PictureReader.h"

namespace kov::tool {
namespace {

using test::Composite;
using test::Constant;
using test::OfAngles;
using test::OfElement;
using test::Ply;
using Picture = test::PictureReader;
using test::Spread;
using test::XmlElement;
using testing::AllOf;
using testing::Contains;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// All that is drawn is made of finite numbers, and labels begin and end on the page.
void ExpectSound(Layup const& layup) {
    Picture const picture(layup);
    EXPECT_EQ(picture.Bands().size(), layup.layers.size());
    std::string lower = picture.Text();
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_EQ(lower.find("nan"), std::string::npos);
    EXPECT_EQ(lower.find("inf"), std::string::npos);
    double const width = picture.Root().Number("width");
    double const height = picture.Root().Number("height");
    EXPECT_LT(width, 2500);
    for (XmlElement const* label : picture.Tags("text")) {
        if (label->Number("x") == 42) continue;  // within a line of the legend
        EXPECT_GE(label->Number("x"), 0) << label->text;
        EXPECT_LE(label->Number("x"), width) << label->text;
        EXPECT_GE(label->Number("y"), 0) << label->text;
        EXPECT_LE(label->Number("y"), height) << label->text;
    }
    for (std::size_t i = 0; i < layup.layers.size(); ++i) {
        EXPECT_GE(picture.RightHeight(i), 3.8) << i;
        EXPECT_GE(picture.LeftHeight(i), 0.8) << i;
    }
    auto const& lines = picture.Lines();
    for (std::size_t i = 1; i < lines.size(); ++i) {
        double const below = lines[i - 1]->children.at(1).Number("y");
        EXPECT_GE(below - lines[i]->children.at(1).Number("y"), 14.9) << i;
    }
}

TEST(LayupPictureRandom, TwoHundredLayersStayReadable) {
    std::vector<double> angles;
    for (int i = 0; i < 200; ++i) angles.push_back(15 * (i % 12));
    Layup const layup = OfAngles(angles);
    ExpectSound(layup);
    Picture const picture(layup);
    EXPECT_THAT(picture.Labels(), AllOf(Contains("P1"), Contains("P117"), Contains("P200")));
}

TEST(LayupPictureRandom, ExtremeNumbersAreDrawnAllTheSame) {
    for (double const odd : {kNan, kInfinity, -kInfinity, -1.0, 0.0, 5e-324, 1.7e308, -1.7e308}) {
        SCOPED_TRACE(odd);
        Layup layup = OfAngles({0, 45, odd, odd});
        layup.layers[1].thickness = Constant(odd);
        layup.layers[2].thickness = Spread(-odd, odd);
        layup.layers[3].thickness = Constant(odd);
        layup.layers[2].angle = Spread(-1e300, odd);
        for (double const offset : {0.0, odd, 0.5, 0.75}) {
            layup.offset = offset;
            ExpectSound(layup);
        }
        layup.layers.resize(1);
        layup.layers[0].thickness = Constant(odd);
        ExpectSound(layup);
        layup.kind = Layup::Kind::Solid;
        ExpectSound(layup);
    }
}

TEST(LayupPictureRandom, AnyLayupIsDrawnSoundly) {
    std::mt19937 random(5);
    for (int run = 0; run < 150; ++run) {
        SCOPED_TRACE("run " + std::to_string(run) + " of seed 5");
        Layup layup = Composite();
        if (run % 4 == 0) layup.kind = Layup::Kind::Solid;
        layup.offset = std::uniform_real_distribution(-1.2, 1.2)(random);
        auto const number = [&](double least, double greatest) {
            std::uniform_real_distribution<double> any(least, greatest);
            double const a = any(random);
            double const b = any(random);
            switch (random() % 6) {
                case 0:
                    return LayerNumber{};
                case 1:
                    return Spread(std::min(a, b), std::max(a, b));
                case 2:
                    return OfElement(a);
                default:
                    return Constant(a);
            }
        };
        for (std::size_t n = random() % 60; n > 0; --n) {
            auto const material = "M" + std::to_string(random() % 9);
            double const scale = std::pow(10, std::uniform_real_distribution(-9.0, 9.0)(random));
            layup.layers.push_back(
                Ply("P", material, number(0, run % 3 == 0 ? 1 : scale), number(-200, 200)));
        }
        ExpectSound(layup);
    }
}

}  // namespace
}  // namespace kov::tool
