#include "Faces.h"

#include <gtest/gtest.h>

namespace kov::test {
namespace {

using namespace tool;

std::string FacesOfType(char const* name) { return FacesOf(*FindElementType(name)); }

TEST(Faces, SolidsHaveThemByShape) {
    EXPECT_EQ(FacesOfType("C3D4"), "S1, S2, S3 or S4");
    EXPECT_EQ(FacesOfType("C3D10M"), "S1, S2, S3 or S4");
    EXPECT_EQ(FacesOfType("C3D5"), "S1, S2, S3, S4 or S5");
    EXPECT_EQ(FacesOfType("C3D15"), "S1, S2, S3, S4 or S5");
    EXPECT_EQ(FacesOfType("C3D20R"), "S1, S2, S3, S4, S5 or S6");
}

TEST(Faces, PlaneElementsHaveTheirEdges) {
    EXPECT_EQ(FacesOfType("CPS3"), "S1, S2 or S3");
    EXPECT_EQ(FacesOfType("CPE8R"), "S1, S2, S3 or S4");
    EXPECT_EQ(FacesOfType("CAX6"), "S1, S2 or S3");
}

TEST(Faces, ShellsHaveSidesAndEdges) {
    EXPECT_EQ(FacesOfType("S3"), "SPOS, SNEG, E1, E2 or E3");
    EXPECT_EQ(FacesOfType("S9R5"), "SPOS, SNEG, E1, E2, E3 or E4");
    EXPECT_EQ(FacesOfType("SAX2"), "SPOS or SNEG");
}

TEST(Faces, MembranesAndRigidFacesHaveSides) {
    EXPECT_EQ(FacesOfType("M3D4"), "SPOS or SNEG");
    EXPECT_EQ(FacesOfType("R3D3"), "SPOS or SNEG");
    EXPECT_EQ(FacesOfType("RAX2"), "SPOS or SNEG");
    EXPECT_EQ(FacesOfType("R2D2"), "SPOS or SNEG");
}

TEST(Faces, OtherElementsHaveNone) {
    for (char const* const name : {"B31", "T3D2", "MASS", "SPRING2", "RB3D2", "CONN3D2"}) {
        EXPECT_EQ(FacesOfType(name), "no faces") << name;
    }
}

TEST(Faces, AreFoundInAnyCase) {
    EXPECT_EQ(FindFace("S1"), 0);
    EXPECT_EQ(FindFace("s6"), 5);
    EXPECT_EQ(FindFace("sPoS"), 6);
    EXPECT_EQ(FindFace("SNEG"), 7);
    EXPECT_EQ(FindFace("e4"), 11);
    EXPECT_EQ(FindFace("S7"), -1);
    EXPECT_EQ(FindFace("S"), -1);
    EXPECT_EQ(FindFace(""), -1);
    EXPECT_EQ(FindFace("S12"), -1);
}

TEST(Faces, EachNameIsFoundUnderItsNumber) {
    for (int face = 0; face < kFaceNames; ++face) EXPECT_EQ(FindFace(FaceName(face)), face);
}

}  // namespace
}  // namespace kov::test
