#include "document/schema/Symbols.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "zdm_AlgebraicTypes.h"
#include "zdm_ComponentSymbols.h"
#include "zdm_DofSymbols.h"
#include "zdm_ShapeSymbols.h"

namespace {

template <class Table>
void ExpectNamesFilledAndUnique(Table const& table) {
    std::set<std::string> names;
    for (auto const& entry : table) {
        ASSERT_NE(entry.name, nullptr);
        EXPECT_NE(*entry.name, '\0');
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
    }
}

TEST(ComponentSymbols, FillAllPositionsWithNamesOfTheirOwn) {
    EXPECT_EQ(kov::schema::ComponentSymbols().size(), 38u);
    ExpectNamesFilledAndUnique(kov::schema::ComponentSymbols());
}

TEST(ComponentSymbols, VectorAndScalarStandAtTheirPositions) {
    auto const table = kov::schema::ComponentSymbols();
    EXPECT_STREQ(table[0].name, "C_1");
    EXPECT_STREQ(table[12].name, "C_2");
    EXPECT_STREQ(table[20].name, "C_3");
    EXPECT_STREQ(table[34].name, "C_SCALAR");
    EXPECT_EQ(zdm_Component_C_SCALAR, 34);
    EXPECT_EQ(zdm_Component_NONE, 38);
}

TEST(ComponentSymbols, TensorTermsStandAtTheirPositions) {
    auto const table = kov::schema::ComponentSymbols();
    std::map<std::size_t, char const*> const expected = {{1, "C_11"},  {14, "C_22"}, {23, "C_33"},
                                                         {5, "C_12"},  {10, "C_13"}, {18, "C_23"},
                                                         {13, "C_21"}, {21, "C_31"}, {22, "C_32"}};
    for (auto const& [position, name] : expected) EXPECT_STREQ(table[position].name, name);
}

TEST(DofSymbols, DisplacementsAndRotationsStandAtTheirPositions) {
    auto const table = kov::schema::DofSymbols();
    ASSERT_GE(table.size(), 12u);
    EXPECT_STREQ(table[2].name, "DISPLACEMENT_1");
    EXPECT_STREQ(table[3].name, "DISPLACEMENT_2");
    EXPECT_STREQ(table[4].name, "DISPLACEMENT_3");
    EXPECT_STREQ(table[9].name, "ROTATION_ANGLE_1");
    EXPECT_STREQ(table[10].name, "ROTATION_ANGLE_2");
    EXPECT_STREQ(table[11].name, "ROTATION_ANGLE_3");
}

TEST(DofSymbols, FillAllPositionsWithNamesOfTheirOwn) {
    ExpectNamesFilledAndUnique(kov::schema::DofSymbols());
}

TEST(ShapeSymbols, FillAllPositionsWithNamesOfTheirOwn) {
    EXPECT_EQ(kov::schema::ShapeSymbols().size(), 49u);
    ExpectNamesFilledAndUnique(kov::schema::ShapeSymbols());
}

TEST(ShapeSymbols, HaveTheAgreedNumbersOfPoints) {
    std::map<int, std::set<int>> const agreed = {
        {1, {0}},
        {2, {2, 6}},
        {3, {7, 8, 16}},
        {4, {11, 13, 43}},
        {5, {12, 40}},
        {6, {9, 17, 47}},
        {8, {14, 38}},
        {9, {10, 15, 31, 48}},
        {10, {41, 42}},
        {12, {28, 32, 34, 44}},
        {13, {39}},
        {15, {45}},
        {18, {29, 33}},
        {20, {35}},
        {24, {30}},
        {27, {37}},
        {0, {1, 3, 4, 5, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 36, 46}}};
    auto const table = kov::schema::ShapeSymbols();
    int counted = 0;
    for (auto const& [points, shapes] : agreed) {
        for (int shape : shapes) {
            EXPECT_EQ(table[static_cast<std::size_t>(shape)].points, points) << shape;
            ++counted;
        }
    }
    EXPECT_EQ(counted, 49);
}

TEST(ShapeSymbols, NamesThatEndInANumberTellTheNumberOfPoints) {
    for (kov::schema::ShapeEntry const& shape : kov::schema::ShapeSymbols()) {
        std::string const name = shape.name;
        std::size_t const digits = name.find_last_not_of("0123456789") + 1;
        int const told = digits < name.size() ? std::stoi(name.substr(digits)) : 0;
        EXPECT_EQ(told, shape.points) << name;
    }
}

TEST(ShapeSymbols, DimensionsFollowTheKindOfShape) {
    auto const dimension = [](zdm_ShapeSymbolsEnm shape) {
        return kov::schema::ShapeSymbols()[static_cast<std::size_t>(shape)].dimension;
    };
    EXPECT_EQ(dimension(zdm_Shape_POINT_1), 0);
    EXPECT_EQ(dimension(zdm_Shape_LINE_3), 1);
    EXPECT_EQ(dimension(zdm_Shape_AXISYMMETRIC_LINE_2), 1);
    EXPECT_EQ(dimension(zdm_Shape_TRIANGLE_6), 2);
    EXPECT_EQ(dimension(zdm_Shape_CYLINDRICAL_QUADRILATERAL_9), 2);
    EXPECT_EQ(dimension(zdm_Shape_TETRAHEDRON_4), 3);
    EXPECT_EQ(dimension(zdm_Shape_LAYERED_WEDGE_9), 3);
}

TEST(AlgebraicTypes, HaveTheAgreedNumbers) {
    EXPECT_EQ(zdm_Algebraic_POSITION, 0);
    EXPECT_EQ(zdm_Algebraic_SCALAR, 1);
    EXPECT_EQ(zdm_Algebraic_TENSOR2_GENERAL, 2);
    EXPECT_EQ(zdm_Algebraic_TENSOR2_ORTHOGONAL, 3);
    EXPECT_EQ(zdm_Algebraic_TENSOR2_SYMMETRIC, 4);
    EXPECT_EQ(zdm_Algebraic_TENSOR4, 6);
    EXPECT_EQ(zdm_Algebraic_VECTOR, 9);
}

}  // namespace
