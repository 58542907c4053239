// What is wrong with the sections of a deck is told with file and line.

#include <gtest/gtest.h>

#include <string>

#include "SectionDeck.h"

namespace kov::test {
namespace {

struct SectionError {
    char const* name;
    std::string deck;  ///< behind a mesh and materials: its first line is line 27 of the deck
    char const* error;
};

void PrintTo(SectionError const& c, std::ostream* out) { *out << c.name; }

class SectionErrors : public ::testing::TestWithParam<SectionError> {};

std::string const kShell = "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel";
std::string const kLayers = "*SHELL SECTION, ELSET=LEFT, COMPOSITE\n";
std::string const kD =
    "*DISTRIBUTION TABLE, NAME=T\nLENGTH\n*DISTRIBUTION, NAME=D, LOCATION=ELEMENT, TABLE=T\n";

SectionError const kCases[] = {
    // ---- materials ----
    {"MaterialWithoutName", "*MATERIAL\n",
     "deck.inp:27: *MATERIAL without NAME; expected *MATERIAL, NAME=..."},
    {"MaterialTwice", "*MATERIAL, NAME=sTEEL\n",
     "deck.inp:27: material 'sTEEL' is defined a second time, first at line 26; expected each name "
     "once"},
    {"MaterialWithData", "*MATERIAL, NAME=M\n1, 2\n",
     "deck.inp:28: a data line behind *MATERIAL; expected a keyword"},
    {"MaterialUnknownParameter", "*MATERIAL, NAME=M, COLOUR=RED\n",
     "deck.inp:27: *MATERIAL has no parameter 'COLOUR'; expected NAME, RTOL, SRATE FACTOR"},
    {"UnknownMaterial", "*SHELL SECTION, ELSET=LEFT, MATERIAL=Stell\n1\n",
     "deck.inp:27: material 'Stell' is not defined; expected a material of the deck; did you mean "
     "'Steel'?"},
    {"UnknownMaterialOfLayer", kLayers + "1,, Steel\n2,, Wood\n3,, Wood\n",
     "deck.inp:29: material 'Wood' is not defined; expected a material of the deck"},
    // ---- parameters ----
    {"NoElementSet", "*SHELL SECTION, MATERIAL=Steel\n1\n",
     "deck.inp:27: *SHELL SECTION without ELSET; expected *SHELL SECTION, ELSET=..."},
    {"NoMaterial", "*SHELL SECTION, ELSET=LEFT\n1\n",
     "deck.inp:27: *SHELL SECTION without MATERIAL; expected *SHELL SECTION, MATERIAL=..."},
    {"CompositeWithMaterial", kShell + ", COMPOSITE\n1,, Steel\n",
     "deck.inp:27: *SHELL SECTION with COMPOSITE and MATERIAL; expected the materials in the lines "
     "of the layers"},
    {"SymmetricAlone", kShell + ", SYMMETRIC\n1\n",
     "deck.inp:27: *SHELL SECTION with SYMMETRIC but without COMPOSITE; expected both or neither"},
    {"LayupAlone", "*SOLID SECTION, ELSET=LEFT, MATERIAL=Steel, LAYUP=L\n1\n",
     "deck.inp:27: *SOLID SECTION with LAYUP but without COMPOSITE; expected both or neither"},
    {"CompositeWithValue", "*SHELL SECTION, ELSET=LEFT, COMPOSITE=NO\n1,, Steel\n",
     "deck.inp:27: parameter COMPOSITE has the value 'NO'; expected COMPOSITE alone"},
    {"CompositeWithEmptyValue", "*SOLID SECTION, ELSET=LEFT, COMPOSITE=\n1,, Steel\n",
     "deck.inp:27: parameter COMPOSITE has the value ''; expected COMPOSITE alone"},
    {"SymmetricWithValue", "*SOLID SECTION, ELSET=LEFT, COMPOSITE, SYMM = yes\n1,, Steel\n",
     "deck.inp:27: parameter SYMMETRIC has the value 'yes'; expected SYMMETRIC alone"},
    {"NodalThicknessWithValue",
     "*MEMBRANE SECTION, ELSET=LEFT, MATERIAL=Steel, NODAL THICKNESS=1\n1\n",
     "deck.inp:27: parameter NODAL THICKNESS has the value '1'; expected NODAL THICKNESS alone"},
    {"UnknownParameterWithBlanks",
     "*BEAM SECTION, ELSET=LEFT,\n** more\n MATERIAL=Steel, \t Shell  Thickness = "
     "D,\nSECTION=RECT\n1, 1\n",
     "deck.inp:27: *BEAM SECTION has no parameter 'Shell  Thickness'; expected ELSET, MATERIAL, "
     "SECTION, ORIENTATION, CONTROLS, DENSITY, LUMPED, POISSON, ROTARY INERTIA, TEMPERATURE"},
    {"ParameterTwice", kShell + ", SHELL THICKNESS=D, SHELLTHICKNESS=E\n",
     "deck.inp:27: parameter SHELL THICKNESS is given twice; expected it once"},
    {"UnknownParameter", "*MEMBRANE SECTION, ELSET=LEFT, COMPOSITE\n",
     "deck.inp:27: *MEMBRANE SECTION has no parameter 'COMPOSITE'; expected ELSET, MATERIAL, "
     "ORIENTATION, MEMBRANE THICKNESS, CONTROLS, DENSITY, NODAL THICKNESS, POISSON"},
    {"EmptyThicknessName", kShell + ", SHELL THICKNESS=\n",
     "deck.inp:27: parameter SHELL THICKNESS has no value; expected SHELL THICKNESS=..."},
    {"Offset", kShell + ", OFFSET=MIDDLE\n1\n",
     "deck.inp:27: 'MIDDLE' is no offset; expected a number, SPOS or SNEG"},
    {"OffsetWithTail", kShell + ", OFFSET=0.5x\n1\n",
     "deck.inp:27: '0.5x' is no offset; expected a number, SPOS or SNEG"},
    {"OffsetInfinite", kShell + ", OFFSET=1e999\n1\n",
     "deck.inp:27: '1e999' is no offset; expected a number, SPOS or SNEG"},
    {"Integration", kShell + ", SECTION INTEGRATION=TRAPEZOID\n1\n",
     "deck.inp:27: 'TRAPEZOID' is not known; expected SECTION INTEGRATION=SIMPSON or GAUSS"},
    {"StackDirection", "*SOLID SECTION, ELSET=LEFT, COMPOSITE, STACK DIRECTION=4\n1,, Steel\n",
     "deck.inp:27: '4' is not known; expected STACK DIRECTION=1, 2, 3 or ORIENTATION"},
    {"StackDirectionWithoutOrientation",
     "*SOLID SECTION, ELSET=LEFT, COMPOSITE, STACK DIRECTION=ORIENTATION\n1,, Steel\n",
     "deck.inp:27: *SOLID SECTION with STACK DIRECTION=ORIENTATION but without ORIENTATION; "
     "expected both"},
    // ---- sets ----
    {"UnknownSet", "*SHELL SECTION, ELSET=LEFTT, MATERIAL=Steel\n1\n",
     "deck.inp:27: 'LEFTT' is no element set; expected an element set of the deck; did you mean "
     "'LEFT'?"},
    {"ElementAsSet", "*SHELL SECTION, ELSET=11, MATERIAL=Steel\n1\n",
     "deck.inp:27: '11' is no element set; expected an element set of the deck"},
    {"ElementTwice",
     kShell + "\n1\n*ELSET, ELSET=MIX\n13, 12\n*MEMBRANE SECTION, ELSET=MIX, MATERIAL=Steel\n1\n",
     "deck.inp:31: element 12 is in two sections, first in that of line 27; expected one"},
    {"SetTwice", kShell + "\n1\n" + kShell + "\n1\n",
     "deck.inp:29: element 11 is in two sections, first in that of line 27; expected one"},
    {"EmptySetTwice",
     "*ELSET, ELSET=NO\n*SHELL SECTION, ELSET=NO, MATERIAL=Steel\n1\n*SOLID SECTION, ELSET=no, "
     "MATERIAL=Steel\n",
     "deck.inp:30: element set 'NO' has a section already, of line 28; expected one section for "
     "each set"},
    {"RegionNamedAsSurface", "*SURFACE, NAME=INP2SIM_ELSET_LEFT\n11, SPOS\n" + kShell + "\n1\n",
     "deck.inp:29: the name 'INP2SIM_ELSET_LEFT' of the section's region is that of a surface; "
     "expected a surface of another name"},
    // ---- homogeneous shells ----
    {"NoLine", kShell + "\n",
     "deck.inp:27: *SHELL SECTION without a data line; expected THICKNESS, SECTION POINTS"},
    {"NoThickness", kShell + "\n, 5\n",
     "deck.inp:28: the thickness is missing; expected THICKNESS, SECTION POINTS"},
    {"ZeroThickness", kShell + "\n0.\n",
     "deck.inp:28: '0.' is no number above 0; expected a thickness"},
    {"NegativeThickness", kShell + "\n-1\n",
     "deck.inp:28: '-1' is no number above 0; expected a thickness"},
    {"TextThickness", kShell + "\nthick\n",
     "deck.inp:28: 'thick' is no number; expected a thickness"},
    {"InfiniteThickness", kShell + "\ninf\n",
     "deck.inp:28: 'inf' is no number; expected a thickness"},
    {"HugeThickness", kShell + "\n1e400\n",
     "deck.inp:28: '1e400' is too large a number; expected a thickness"},
    {"TinyThickness", kShell + "\n1e-400\n",
     "deck.inp:28: '1e-400' is no number above 0; expected a thickness"},
    {"NoPoints", kShell + "\n1, 0\n",
     "deck.inp:28: '0' is no number of section points; expected a whole number from 1 to 1000"},
    {"RealPoints", kShell + "\n1, 2.5\n",
     "deck.inp:28: '2.5' is no number of section points; expected a whole number from 1 to 1000"},
    {"TooManyPoints", kShell + "\n1, 1001\n",
     "deck.inp:28: '1001' is no number of section points; expected a whole number from 1 to 1000"},
    {"ThirdField", kShell + "\n1, 5, Steel\n",
     "deck.inp:28: 'Steel' is one field too many; expected THICKNESS, SECTION POINTS"},
    {"SecondLine", kShell + "\n1\n2\n",
     "deck.inp:29: one data line too many; expected one, as COMPOSITE is not given"},
    {"ZeroThicknessBesideDistribution", kShell + ", SHELL THICKNESS=D\n0\n",
     "deck.inp:28: '0' is no number above 0; expected a thickness"},
    // ---- layers ----
    {"NoLayer", kLayers,
     "deck.inp:27: shell section with COMPOSITE but without a layer; expected lines of THICKNESS, "
     "SECTION POINTS, MATERIAL, ANGLE OR ORIENTATION, PLY"},
    {"NoLayerOfSolid", "*SOLID SECTION, ELSET=LEFT, COMPOSITE\n*NODE\n90\n",
     "deck.inp:27: solid section with COMPOSITE but without a layer; expected lines of THICKNESS, "
     "SECTION POINTS, MATERIAL, ANGLE OR ORIENTATION, PLY"},
    {"LayerWithoutThickness", kLayers + ", 3, Steel\n",
     "deck.inp:28: the thickness of the layer is missing; expected THICKNESS, SECTION POINTS, "
     "MATERIAL, ANGLE OR ORIENTATION, PLY"},
    {"LayerWithoutMaterial", kLayers + "1, 3\n",
     "deck.inp:28: the material of the layer is missing; expected THICKNESS, SECTION POINTS, "
     "MATERIAL, ANGLE OR ORIENTATION, PLY"},
    {"LayerOfZero", kLayers + "1,, Steel\n0,, Steel\n",
     "deck.inp:29: '0' is no number above 0; expected a thickness"},
    {"LayerTooLarge", kLayers + "1e999,, Steel\n",
     "deck.inp:28: '1e999' is too large a number; expected a thickness"},
    {"LayerPoints", kLayers + "1, three, Steel\n",
     "deck.inp:28: 'three' is no number of section points; expected a whole number from 1 to 1000"},
    {"LayerAngleTooLarge", kLayers + "1,, Steel, -1e999\n",
     "deck.inp:28: '-1e999' is too large a number; expected an angle in degrees"},
    {"LayerSixthField", kLayers + "1,, Steel, 0, P, 7\n",
     "deck.inp:28: '7' is one field too many; expected THICKNESS, SECTION POINTS, MATERIAL, ANGLE "
     "OR ORIENTATION, PLY"},
    {"LayerEighthField", kLayers + "1,, Steel, 0, P,, Q\n",
     "deck.inp:28: 'Q' is one field too many; expected THICKNESS, SECTION POINTS, MATERIAL, ANGLE "
     "OR ORIENTATION, PLY"},
    {"OpenQuoteOfMaterial", kLayers + "1,, \"Steel\n",
     "deck.inp:28: the quotes of a material's name are not closed"},
    {"OpenQuoteOfPly", kLayers + "1,, Steel, 0, \"P\n",
     "deck.inp:28: the quotes of a ply's name are not closed"},
    {"OpenQuoteOfAngle", kLayers + "1,, Steel, \"A\n",
     "deck.inp:28: the quotes of a name are not closed"},
    {"ControlInPly", kLayers + "1,, Steel, 0, \"P\x01\"\n",
     "deck.inp:28: a control character in a ply's name; expected text without them"},
    {"ControlInMaterial", kLayers + "1,, Steel\x01\n",
     "deck.inp:28: a control character in a material's name; expected text without them"},
    {"TabInMaterial", kLayers + "1,, \"Steel\t\"\n",
     "deck.inp:28: a control character in a material's name; expected text without them"},
    {"ControlInAngle", kLayers + "1,, Steel, O\x7f\n",
     "deck.inp:28: a control character in a name; expected text without them"},
    {"ControlInThickness", kLayers + "D\x02,, Steel\n",
     "deck.inp:28: a control character in a name; expected text without them"},
    // ---- orientations and distributions ----
    {"UnknownOrientation",
     kShell + ", ORIENTATION=O2\n1\n*ORIENTATION, NAME=O1\n1, 0, 0, 0, 1, 0\n",
     "deck.inp:27: orientation 'O2' is not defined; expected an orientation of the deck; did you "
     "mean 'O1'?"},
    {"UnknownAngle", kLayers + "1,, Steel, 45x\n2,, Steel, 45x\n",
     "deck.inp:28: '45x' is no number; expected an angle in degrees, or an orientation or a "
     "distribution of the deck"},
    {"UnknownThickness", kLayers + "1,, Steel\n0.1.2,, Steel\n",
     "deck.inp:29: '0.1.2' is no number; expected a thickness, or a distribution of the deck"},
    {"InfiniteLayer", kLayers + "inf, 3, Steel\n",
     "deck.inp:28: 'inf' is no number; expected a thickness, or a distribution of the deck"},
    {"UnknownThicknessNearAnother",
     kLayers + "Thik,, Steel\n*DISTRIBUTION TABLE, NAME=T\nLENGTH\n"
               "*DISTRIBUTION, NAME=Thick, LOCATION=ELEMENT, TABLE=T\n, 1\n",
     "deck.inp:28: 'Thik' is no number; expected a thickness, or a distribution of the deck; did "
     "you mean 'Thick'?"},
    {"UnknownThicknessOfBoth",
     kShell + ", SHELL THICKNESS=E\n*SHELL SECTION, ELSET=RIGHT, COMPOSITE\nE,, Steel\n",
     "deck.inp:27: 'E' is no distribution; expected a distribution of the deck"},
    {"UnknownShellThickness", kShell + ", SHELL THICKNESS=E\n" + kD + ", 1\n",
     "deck.inp:27: 'E' is no distribution; expected a distribution of the deck"},
    {"DistributionAtNodes",
     kShell + ", SHELL THICKNESS=e\n*DISTRIBUTION, NAME=E, LOCATION=NODE, TABLE=T\n1, 2\n",
     "deck.inp:27: distribution 'E' of line 28 gives no values to elements; expected a "
     "distribution with LOCATION=ELEMENT"},
    {"OrientationAndDistribution",
     kLayers + "1,, Steel, D\n*ORIENTATION, NAME=D\n1, 0, 0, 0, 1, 0\n" + kD + ", 1\n",
     "deck.inp:28: 'D' is an orientation and a distribution; expected names that differ"},
    {"NamedShareOfThickness",
     "*SHELL SECTION, ELSET=LEFT, COMPOSITE, SHELL THICKNESS=D\nD,, Steel\n" + kD + ", 1\n",
     "deck.inp:28: 'D' is no number; expected the share that the layer has of the SHELL THICKNESS"},
    {"ThicknessOfSeveralNumbers",
     kShell + ", SHELL THICKNESS=C\n*DISTRIBUTION TABLE, NAME=T\nCOORD3D\n*DISTRIBUTION, NAME=C, "
              "LOCATION=ELEMENT, TABLE=T\n, 1, 1, 1\n",
     "deck.inp:27: distribution 'C' gives several numbers; expected one for a thickness"},
    {"AngleOfSeveralNumbers",
     kLayers + "1,, Steel, C\n*DISTRIBUTION TABLE, NAME=T\nCOORD3D\n*DISTRIBUTION, NAME=C, "
               "LOCATION=ELEMENT, TABLE=T\n, 1, 1, 1\n",
     "deck.inp:28: distribution 'C' gives several numbers; expected one for an angle"},
    {"NoValueOfElement", kShell + ", SHELL THICKNESS=D\n" + kD + "11, 1\n",
     "deck.inp:27: shell section of 'LEFT': distribution 'D' gives element 12 no value, and has no "
     "default; expected a value for each element"},
    {"NoValueOfElementInLayer", kLayers + "1,, Steel\nD,, Steel\n" + kD + "11, 1\n",
     "deck.inp:29: shell section of 'LEFT': distribution 'D' gives element 12 no value, and has no "
     "default; expected a value for each element"},
    {"ZeroValueOfElement", kLayers + "D,, Steel\n" + kD + ", 1\n12, 0\n",
     "deck.inp:28: shell section of 'LEFT': distribution 'D' gives element 12 the value 0; "
     "expected "
     "values above 0"},
    {"NegativeDefault", kShell + ", SHELL THICKNESS=D\n" + kD + ", -1\n11, 2\n",
     "deck.inp:27: shell section of 'LEFT': distribution 'D' gives element 12 its default -1; "
     "expected values above 0"},
    {"NoAngleOfElement", kLayers + "1,, Steel, D\n" + kD + "12, -5\n",
     "deck.inp:28: shell section of 'LEFT': distribution 'D' gives element 11 no value, and has no "
     "default; expected a value for each element"},
    {"SharesBeyondNumbers",
     "*SHELL SECTION, ELSET=LEFT, COMPOSITE, SHELL THICKNESS=D\n1e308,, Steel\n1e308,, Steel\n" +
         kD + ", 1\n",
     "deck.inp:27: the thicknesses of the layers differ beyond the range of numbers; expected "
     "shares of one thickness"},
    // ---- solids, membranes, beams ----
    {"SolidZero", "*SOLID SECTION, ELSET=LEFT, MATERIAL=Steel\n0\n",
     "deck.inp:28: '0' is no number above 0; expected an area or thickness"},
    {"SolidSecondField", "*SOLID SECTION, ELSET=LEFT, MATERIAL=Steel\n1, 2\n",
     "deck.inp:28: '2' is one field too many; expected AREA OR THICKNESS"},
    {"SolidSecondLine", "*SOLID SECTION, ELSET=LEFT, MATERIAL=Steel\n1\n2\n",
     "deck.inp:29: one data line too many; expected one at most, as COMPOSITE is not given"},
    {"MembraneNoLine", "*MEMBRANE SECTION, ELSET=LEFT, MATERIAL=Steel\n",
     "deck.inp:27: *MEMBRANE SECTION without a data line; expected THICKNESS"},
    {"MembraneNoThickness", "*MEMBRANE SECTION, ELSET=LEFT, MATERIAL=Steel\n,\n",
     "deck.inp:28: the thickness is missing; expected THICKNESS"},
    {"MembraneSecondField", "*MEMBRANE SECTION, ELSET=LEFT, MATERIAL=Steel\n1, 5\n",
     "deck.inp:28: '5' is one field too many; expected THICKNESS"},
    {"MembraneSecondLine", "*MEMBRANE SECTION, ELSET=LEFT, MATERIAL=Steel\n1\n5\n",
     "deck.inp:29: one data line too many; expected one"},
    {"BeamNoProfile", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel\n1\n",
     "deck.inp:27: *BEAM SECTION without SECTION; expected *BEAM SECTION, SECTION=..."},
    {"BeamNoLine", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n",
     "deck.inp:27: *BEAM SECTION without a data line; expected the dimensions of the profile"},
    {"BeamDimension", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=RECT\n1, b\n",
     "deck.inp:28: 'b' is no number; expected a dimension of the profile"},
    {"BeamInfiniteDimension", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=I\n1, inf\n",
     "deck.inp:28: 'inf' is no number; expected a dimension of the profile"},
    {"BeamNoDimension", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n,\n",
     "deck.inp:28: dimension 1 of the profile is missing; expected a number"},
    {"BeamGap", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=BOX\n1,, 2\n",
     "deck.inp:28: dimension 2 of the profile is missing; expected a number"},
    {"BeamGapInFront", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=ARBITRARY\n, 2\n",
     "deck.inp:28: dimension 1 of the profile is missing; expected a number"},
    {"BeamZeroRadius", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n0\n",
     "deck.inp:28: '0' is no number above 0; expected a dimension of the profile"},
    {"BeamNegativeWidth", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=rect\n1, -1\n",
     "deck.inp:28: '-1' is no number above 0; expected a dimension of the profile"},
    {"BeamZeroWall", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=PIPE\n1, 0\n",
     "deck.inp:28: '0' is no number above 0; expected a dimension of the profile"},
    {"BeamZeroLastWall",
     "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=BOX\n1, 2, .1, .1, .1, 0\n",
     "deck.inp:28: '0' is no number above 0; expected a dimension of the profile"},
    {"BeamZeroHexagon", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=HEX\n0, 1\n",
     "deck.inp:28: '0' is no number above 0; expected a dimension of the profile"},
    {"BeamZeroTrapezoid",
     "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=TRAPEZOID\n1, 2, 0, -1\n",
     "deck.inp:28: '0' is no number above 0; expected a dimension of the profile"},
    {"BeamZeroDirection", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n1\n0, 0, 0\n",
     "deck.inp:29: the direction is 0; expected N1X, N1Y, N1Z"},
    {"BeamLongDirection",
     "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n1\n0, 0, 1, 2\n",
     "deck.inp:29: '2' is one field too many; expected N1X, N1Y, N1Z"},
    {"BeamDirectionText", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n1\n0, z\n",
     "deck.inp:29: 'z' is no number; expected a number of the direction"},
    {"BeamPoints", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n1\n0, 1\n3, 0\n",
     "deck.inp:30: '0' is no number of integration points; expected a whole number from 1 to "
     "1000"},
    {"BeamPointsText", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n1\n0, 1\nabc, 3\n",
     "deck.inp:30: 'abc' is no number of integration points; expected a whole number from 1 to "
     "1000"},
    {"BeamPointsGap", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n1\n0, 1\n3,, 8\n",
     "deck.inp:30: number 2 of the integration points is missing; expected a whole number from 1 "
     "to 1000"},
    {"BeamFourthLine", "*BEAM SECTION, ELSET=LEFT, MATERIAL=Steel, SECTION=CIRC\n1\n0, 1\n3\n4\n",
     "deck.inp:31: one data line too many; expected dimensions, a direction and integration points "
     "at most"},
};

TEST_P(SectionErrors, AreToldAtTheirLine) {
    InMemory deck(kStrip + "*MATERIAL, NAME=Steel\n" + GetParam().deck);
    EXPECT_EQ(deck.Error(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Decks, SectionErrors, ::testing::ValuesIn(kCases),
                         [](auto const& each) { return std::string(each.param.name); });

// ---- decks of several files and scopes ----

std::string const kSkinPart = "*PART, NAME=Skin\n" + kStrip;  // lines 1 to 26
std::string const kTwo =
    "*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=Skin\n*END INSTANCE\n*INSTANCE, NAME=J, "
    "PART=Skin\n*END INSTANCE\n*END ASSEMBLY\n";

std::string ErrorOf(std::string const& text) { return InMemory(text).Error(); }

TEST(SectionErrors, OfAnIncludedFileNameThatFile) {
    InMemory deck(kStrip + "*MATERIAL, NAME=Steel\n*INCLUDE, INPUT=more.inp\n" + kShell + "\n1\n");
    deck.File("more.inp", "** sections\n*SHELL SECTION, ELSET=LEFT, COMPOSITE\n1,, Steel\n");
    EXPECT_EQ(deck.Error(),
              "deck.inp:28: element 11 is in two sections, first in that of more.inp:2; expected "
              "one");
    deck.File("more.inp", "*SHELL SECTION, ELSET=RIGHT, COMPOSITE\n1,, Steel\n2,, Wood\n");
    EXPECT_EQ(deck.Error(),
              "more.inp:3: material 'Wood' is not defined; expected a material of the deck");
    deck.File("more.inp", "*MATERIAL, NAME=STEEL\n");
    EXPECT_EQ(deck.Error(),
              "more.inp:1: material 'STEEL' is defined a second time, first at deck.inp:26; "
              "expected each name once");
}

TEST(SectionErrors, OfInstancesNameTheInstance) {
    std::string const steel = "*MATERIAL, NAME=Steel\n";
    EXPECT_EQ(ErrorOf(kSkinPart + kShell + "\n1\n" + kTwo + steel +
                      "*SHELL SECTION, ELSET=J.LEFT, MATERIAL=Steel\n1\n"),
              "deck.inp:37: element 11 of instance 'J' is in two sections, first in that of line "
              "27; expected one");
    EXPECT_EQ(ErrorOf(kSkinPart + "*SHELL SECTION, ELSET=NONE, MATERIAL=Steel\n1\n" + kTwo + steel),
              "deck.inp:27: 'NONE' is no element set; expected an element set of instance 'I'");
    EXPECT_EQ(ErrorOf(kSkinPart + kTwo + steel + "*SHELL SECTION, ELSET=J.11, MATERIAL=Steel\n1\n"),
              "deck.inp:35: 'J.11' is a single element; expected an element set");
    EXPECT_EQ(
        ErrorOf(kSkinPart + kTwo + steel + "*SHELL SECTION, ELSET=K.LEFT, MATERIAL=Steel\n1\n"),
        "deck.inp:35: 'K.LEFT': instance 'K' is not there; expected an instance of the "
        "assembly");
    EXPECT_EQ(ErrorOf(kSkinPart + kTwo + steel + "*SHELL SECTION, ELSET=LEFT, MATERIAL=Steel\n1\n"),
              "deck.inp:35: 'LEFT' is no element set; expected an element set of the deck; did you "
              "mean 'I.LEFT' or 'J.LEFT'?");
    EXPECT_EQ(ErrorOf(kSkinPart + kTwo + steel + "*SHELL SECTION, ELSET=J.99, MATERIAL=Steel\n1\n"),
              "deck.inp:35: instance 'J' has no element set '99'; expected a set of the instance");
    EXPECT_EQ(ErrorOf(kSkinPart + kShell + ", ORIENTATION=O\n1\n" + kTwo + steel),
              "deck.inp:27: orientation 'O' is not defined; expected an orientation of instance "
              "'I'");
}

TEST(SectionErrors, ANameThatFitsOrientationsOfTwoScopesAsksForQuotes) {
    std::string const point = "\n1, 0, 0, 0, 1, 0\n";
    std::string const deck = kSkinPart + "*ORIENTATION, NAME=O" + point + kTwo +
                             "*MATERIAL, NAME=Steel\n*ORIENTATION, NAME=\"I.O\"" + point;
    std::string const section = "*SHELL SECTION, ELSET=I.LEFT, MATERIAL=Steel, ORIENTATION=";
    EXPECT_EQ(
        ErrorOf(deck + section + "I.O\n1\n"),
        "deck.inp:39: 'I.O' is orientation 'I.O' and orientation 'O' of instance 'I'; expected "
        "quotes, as in \"I.O\" or \"I\".\"O\"");
    EXPECT_EQ(ErrorOf(deck + section + "\"I.O\"\n1\n"), "");
    EXPECT_EQ(ErrorOf(deck + section + "\"I\".\"O\"\n1\n"), "");
    EXPECT_EQ(ErrorOf(deck + section + "J.O\n1\n"), "");
}

TEST(SectionErrors, PliesOfOneKeyAreTold) {
    EXPECT_EQ(
        ErrorOf(kSkinPart + kLayers + "1,, Steel, 0, P\n" + kTwo +
                "*MATERIAL, NAME=Steel\n*SHELL SECTION, ELSET=I.RIGHT, COMPOSITE\n1,, Steel, "
                "0, J_P\n"),
        "deck.inp:38: ply 'J_P' and ply 'P' of instance 'J' both have the key 'J_P'; expected "
        "names that differ");
}

TEST(SectionErrors, AMaterialOfAPartIsDefinedOnceForAllInstances) {
    EXPECT_EQ(ErrorOf(kSkinPart + "*MATERIAL, NAME=Steel\n" + kShell + "\n1\n" + kTwo), "");
    EXPECT_EQ(ErrorOf(kSkinPart + "*MATERIAL, NAME=Steel\n*MATERIAL, NAME=Steel\n" + kTwo),
              "deck.inp:28: material 'Steel' is defined a second time, first at line 27; expected "
              "each name once");
    EXPECT_EQ(ErrorOf(kSkinPart + "*MATERIAL, NAME=Steel\n" + kTwo + "*MATERIAL, NAME=Steel\n"),
              "deck.inp:35: material 'Steel' is defined a second time, first at line 27; expected "
              "each name once");
}

TEST(SectionErrors, WhatIsNotKeptIsAnErrorWhereDecksAreReadStrictly) {
    tool::TranslationOptions options;
    options.strict = true;
    InMemory deck(kStrip + "*MATERIAL, NAME=Steel\n" + kShell + ", NODAL THICKNESS\n1\n");
    EXPECT_EQ(deck.Error(options),
              "deck.inp:27: parameter NODAL THICKNESS of *SHELL SECTION is not kept; expected kept "
              "ones only");
    InMemory other(kStrip + "*MATERIAL, NAME=Steel, RTOL=0.1\n");
    EXPECT_EQ(other.Error(options),
              "deck.inp:26: parameter RTOL of *MATERIAL is not kept; expected kept ones only");
}

TEST(SectionErrors, NothingOfAFailedDeckReachesTheNext) {
    InMemory failed(kStrip + "*MATERIAL, NAME=Steel\n" + kLayers + "1,, Steel\n2,, Wood\n");
    EXPECT_NE(failed.Error(), "");
    InMemory deck(kStrip + "*MATERIAL, NAME=Steel\n" + kShell + "\n4\n");
    deck.Translate();
    KOVSimVector const assignments =
        deck.document.GetModel().GetVector(schema::Model_sectionAssignments());
    KOVSrvShellSection const layers(*assignments.Begin());
    EXPECT_EQ(Plainly(layers.GetConstThicknesses()), (Reals{4}));
}

}  // namespace
}  // namespace kov::test
