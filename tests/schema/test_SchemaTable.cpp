#include "document/schema/SchemaTable.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "agreed_pairs.h"

namespace {

using kov::schema::Kind;

TEST(SchemaTable, HasAllAgreedPairsUnderTheirNames) {
    EXPECT_EQ(std::size(agreed::kPairs), 147u);
    for (agreed::Pair const& pair : agreed::kPairs) {
        SCOPED_TRACE(pair.name);
        int const index = zdm_CoreFragmentTypeIndex(pair.fragment, pair.member);
        EXPECT_EQ(pair.function(), index);
        EXPECT_STREQ(kov::schema::NameOf(index), pair.name);
        EXPECT_EQ(kov::schema::KindOf(index), pair.kind);
        EXPECT_EQ(kov::schema::IsType(index), pair.kind == Kind::Type);
    }
}

TEST(SchemaTable, NamesAreUnique) {
    std::set<std::string> names;
    for (kov::schema::Entry const& entry : kov::schema::Entries()) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
    }
}

TEST(SchemaTable, IndicesAscendAndAreThoseOfTheirPairs) {
    int last = 0;
    for (kov::schema::Entry const& entry : kov::schema::Entries()) {
        EXPECT_LT(last, entry.index) << entry.name;
        EXPECT_EQ(entry.index, zdm_CoreFragmentTypeIndex(entry.pair.fragment, entry.pair.member));
        EXPECT_EQ(kov::schema::Find(entry.index), &entry);
        last = entry.index;
    }
}

TEST(SchemaTable, OwnThingsTakeNumbersFromOneThousand) {
    std::set<int> agreedIndices;
    for (agreed::Pair const& pair : agreed::kPairs) agreedIndices.insert(pair.function());
    for (kov::schema::Entry const& entry : kov::schema::Entries()) {
        bool const isGrid = std::string(entry.name).starts_with("Grid_");
        if (!agreedIndices.contains(entry.index) && !isGrid) {
            EXPECT_GE(entry.pair.member, 1000) << entry.name;
        }
    }
}

TEST(SchemaTable, GridsOfResultVariablesAreNamed) {
    constexpr kov::schema::Pair grids[] = {{14, 8},  {14, 9},  {14, 11}, {14, 13}, {14, 14},
                                           {14, 72}, {14, 74}, {24, 15}, {24, 17}, {24, 19},
                                           {24, 20}, {24, 28}, {24, 96}, {24, 98}, {49, 15},
                                           {49, 16}, {50, 15}, {50, 16}, {50, 19}};
    for (kov::schema::Pair const& pair : grids) {
        int const index = zdm_CoreFragmentTypeIndex(pair.fragment, pair.member);
        EXPECT_TRUE(kov::schema::IsType(index)) << pair.fragment << ':' << pair.member;
        EXPECT_EQ(kov::schema::BaseOf(index), schema::Grid());
    }
}

TEST(SchemaTable, IndexThatNoOneNamedIsUnknown) {
    int const index = zdm_CoreFragmentTypeIndex(3000, 7);
    EXPECT_EQ(kov::schema::Find(index), nullptr);
    EXPECT_EQ(kov::schema::NameOf(index), nullptr);
    EXPECT_EQ(kov::schema::KindOf(index), Kind::Unknown);
    EXPECT_FALSE(kov::schema::IsType(index));
    EXPECT_EQ(kov::schema::BaseOf(index), -1);
}

TEST(SchemaTable, NumberThatIsNoIndexIsUnknown) {
    for (int index : {-1, 0, 1, 4095}) {
        EXPECT_EQ(kov::schema::NameOf(index), nullptr);
        EXPECT_EQ(kov::schema::KindOf(index), Kind::Unknown);
    }
}

TEST(Derivation, TypeDerivesFromItself) {
    EXPECT_TRUE(kov::schema::DerivesFrom(schema::Field_Meshed(), schema::Field_Meshed()));
}

TEST(Derivation, UnknownTypeDerivesFromItselfOnly) {
    int const own = zdm_CoreFragmentTypeIndex(3000, 7);
    EXPECT_TRUE(kov::schema::DerivesFrom(own, own));
    EXPECT_FALSE(kov::schema::DerivesFrom(own, schema::Field()));
    EXPECT_FALSE(kov::schema::DerivesFrom(schema::Field_Meshed(), own));
}

TEST(Derivation, NoTypeDerivesFromNothing) {
    EXPECT_FALSE(kov::schema::DerivesFrom(-1, -1));
    EXPECT_FALSE(kov::schema::DerivesFrom(-1, schema::Field()));
    EXPECT_FALSE(kov::schema::DerivesFrom(schema::Field(), -1));
}

TEST(Derivation, GoesUpOnlyNeverDown) {
    EXPECT_TRUE(kov::schema::DerivesFrom(schema::Step_Lin_Buckle(), schema::Task()));
    EXPECT_FALSE(kov::schema::DerivesFrom(schema::Task(), schema::Step_Lin_Buckle()));
}

TEST(Derivation, RiksStepIsAGeneralStaticStepAndNoBucklingStep) {
    EXPECT_TRUE(kov::schema::DerivesFrom(schema::Step_Gen_StaticRiks(), schema::Step_Gen_Static()));
    EXPECT_TRUE(kov::schema::DerivesFrom(schema::Step_Gen_StaticRiks(), schema::Step()));
    EXPECT_FALSE(kov::schema::DerivesFrom(schema::Step_Gen_StaticRiks(), schema::Step_Lin()));
    EXPECT_FALSE(
        kov::schema::DerivesFrom(schema::Step_Gen_StaticRiks(), schema::Step_Lin_Buckle()));
}

TEST(Derivation, FieldKindsAreApartFromOneAnother) {
    int const fields[] = {schema::Field_Meshed(), schema::Field_FTable(),
                          schema::Field_UniformScalar(), schema::Field_UniformValues(),
                          schema::Field_UniformArray()};
    for (int one : fields) {
        EXPECT_TRUE(kov::schema::DerivesFrom(one, schema::Field()));
        for (int other : fields) EXPECT_EQ(kov::schema::DerivesFrom(one, other), one == other);
    }
}

TEST(Derivation, AnalyticSurfacesAreRegionsApartFromOneAnother) {
    int const surfaces[] = {schema::AnalyticSurface_TypeA(), schema::AnalyticSurface_TypeB(),
                            schema::AnalyticSurface_TypeC(), schema::AnalyticSurface_Revolution()};
    for (int one : surfaces) {
        EXPECT_TRUE(kov::schema::DerivesFrom(one, schema::Region()));
        EXPECT_TRUE(kov::schema::DerivesFrom(one, schema::Surface_ClusterFree()));
        EXPECT_FALSE(kov::schema::DerivesFrom(one, schema::Region_ClusterFree()));
        for (int other : surfaces) EXPECT_EQ(kov::schema::DerivesFrom(one, other), one == other);
    }
}

TEST(Derivation, OrdinaryRegionsAndSurfacesNeedTheirClusters) {
    for (int region : {schema::Region(), schema::Surface()}) {
        EXPECT_FALSE(kov::schema::DerivesFrom(region, schema::Region_ClusterFree()));
        EXPECT_FALSE(kov::schema::DerivesFrom(region, schema::Surface_ClusterFree()));
    }
}

TEST(Derivation, OnlyTheShellSectionIsAShellSection) {
    for (int section : {schema::Section(), schema::Section_Solid(), schema::Section_Beam(),
                        schema::Section_Membrane(), schema::Section_Surface()}) {
        EXPECT_TRUE(kov::schema::DerivesFrom(section, schema::Section()));
        EXPECT_FALSE(kov::schema::DerivesFrom(section, schema::Section_Shell()));
    }
    EXPECT_TRUE(kov::schema::DerivesFrom(schema::Section_Shell(), schema::Section()));
}

TEST(Derivation, MembersDeriveFromNothing) {
    EXPECT_EQ(kov::schema::BaseOf(schema::Task_modes()), -1);
}

}  // namespace
