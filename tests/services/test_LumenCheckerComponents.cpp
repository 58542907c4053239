// Component symbols against algebraic types, by their numbers.
#include <set>
#include <vector>

#include "KOVSrvLumenChecker.h"
#include "services/MeshFixture.h"

namespace kov::test {
namespace {

using Set = std::vector<int>;

Set const kSets[] = {
    {0, 12, 20},
    {31, 32, 33},
    {1, 14, 23, 5, 10, 18, 13, 21, 22},
    {1, 14, 23, 9, 11, 19},
    {35, 36, 37},
    {24, 25, 26},
    {27, 28, 29, 30},
    {1, 14, 23, 5, 10, 18},
    {2, 4, 3, 15, 17, 16, 6, 8, 7},
};

struct Type {
    int number;
    char const* name;
    std::vector<int> sets;  // places in kSets
};

Type const kTypes[] = {
    {0, "POSITION", {0, 1}},
    {2, "TENSOR2_GENERAL", {1, 3, 4, 5, 6, 7}},
    {3, "TENSOR2_ORTHOGONAL", {1, 6}},
    {4, "TENSOR2_SYMMETRIC", {2, 3, 4, 5}},
    {6, "TENSOR4", {8}},
    {9, "VECTOR", {0, 1}},
};

Ints Symbols(std::vector<int> const& symbols) {
    Ints array(static_cast<int>(symbols.size()), 0);
    std::copy(symbols.begin(), symbols.end(), array.begin());
    return array;
}

class LumenComponents : public testing::Test {
  protected:
    // The finding that these symbols give; empty if they fit.
    std::string Check(int type, std::vector<int> const& symbols,
                      KOVSimPosition const& fieldType = KOVSimPosition()) {
        KOVSrvLumenChecker checker(mesh.document);
        checker.Check_Component("HEAD", type, Symbols(symbols), fieldType);
        EXPECT_LE(checker.GetFindings().Size(), 1);
        return checker.GetFindings().Size() ? checker.GetFindings()[0].TextOrEmpty() : "";
    }
    KOVSimPosition FieldType(int type) {
        auto const transaction = mesh.Write();
        KOVSimPosition const made = mesh.document.CreateDataRecord(type).Pos();
        transaction->Commit();
        return made;
    }
    static std::string Misfit(Type const& type) {
        std::string const text =
            std::string(" components are not consistent with algebraicType ") + type.name + ".";
        return type.number == 3 ? text + "HEAD." : "HEAD" + text;
    }

    MeshDocument mesh;
};

TEST_F(LumenComponents, EachTypeTakesItsSetsAndTheirParts) {
    for (Type const& type : kTypes) {
        EXPECT_EQ(Check(type.number, {}), "");
        for (int const place : type.sets) {
            Set const& whole = kSets[place];
            EXPECT_EQ(Check(type.number, whole), "") << type.name << " set " << place;
            EXPECT_EQ(Check(type.number, {whole.back(), whole.front(), whole.back()}), "");
            for (int const one : whole) EXPECT_EQ(Check(type.number, {one}), "") << one;
        }
    }
}

TEST_F(LumenComponents, AllSymbolsMustStandInOneSet) {
    for (Type const& type : kTypes) {
        // Each pair of symbols, and each set.
        std::vector<Set> tried(std::begin(kSets), std::end(kSets));
        for (int a = 0; a < 38; ++a) {
            for (int b = 0; b < 38; ++b) tried.push_back({a, b});
        }
        for (Set const& symbols : tried) {
            bool fits = false;
            for (int const place : type.sets) {
                std::set<int> const allowed(kSets[place].begin(), kSets[place].end());
                bool all = true;
                for (int const symbol : symbols) all = all && allowed.count(symbol) > 0;
                fits = fits || all;
            }
            EXPECT_EQ(Check(type.number, symbols), fits ? "" : Misfit(type))
                << type.name << testing::PrintToString(symbols);
        }
    }
}

TEST_F(LumenComponents, AScalarHasItsOneComponentOrNone) {
    EXPECT_EQ(Check(1, {}), "");
    EXPECT_EQ(Check(1, {34}), "");
    EXPECT_EQ(Check(1, {0}),
              "HEAD; componentSymbol Size: #1; componentSymbol[0]: #0; zdm_Component_C_SCALAR: "
              "#34; components are not consistent with algebraicType SCALAR.");
    EXPECT_EQ(Check(1, {34, 34}),
              "HEAD; componentSymbol Size: #2; componentSymbol[0]: #34; zdm_Component_C_SCALAR: "
              "#34; components are not consistent with algebraicType SCALAR.");
}

TEST_F(LumenComponents, OtherTypesAreNotSupported) {
    KOVSimPosition const primary = FieldType(schema::FieldTypePrimary());
    KOVSimPosition const unchecked = FieldType(schema::FieldType_unchecked());
    for (int const type : {-1, 5, 7, 8, 10, 1000}) {
        EXPECT_EQ(Check(type, {0}, unchecked), "");
        EXPECT_EQ(Check(type, {0}, primary),
                  "algebraicType index# " + std::to_string(type) +
                      " is not supported; field: HEAD subtype: FieldTypePrimary.");
        EXPECT_EQ(Check(type, {}, KOVSimPosition()),
                  "algebraicType index# " + std::to_string(type) +
                      " is not supported; field: HEAD subtype: .");
    }
    // What is known is tested, whatever the field type.
    EXPECT_EQ(Check(9, {34}, unchecked), Misfit(kTypes[5]));
}

TEST_F(LumenComponents, MembershipTakesNoNoteOfOrderAndRepeats) {
    KOVSrvLumenChecker const checker(mesh.document);
    int allowed[] = {3, 1, 2};
    EXPECT_TRUE(checker.Check_Component_Impl(Symbols({1, 1, 2}), allowed, 3));
    EXPECT_FALSE(checker.Check_Component_Impl(Symbols({1, 4}), allowed, 3));
    EXPECT_FALSE(checker.Check_Component_Impl(Symbols({2}), allowed, 2));
    EXPECT_TRUE(checker.Check_Component_Impl(Symbols({}), allowed, 3));
    EXPECT_TRUE(checker.Check_Component_Impl(Symbols({}), nullptr, 0));
    EXPECT_FALSE(checker.Check_Component_Impl(Symbols({3}), allowed, 0));
    EXPECT_FALSE(checker.Check_Component_Impl(Symbols({3}), allowed, -1));
}

}  // namespace
}  // namespace kov::test
