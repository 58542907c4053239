#include "services/ScopedNamesFixture.h"

namespace kov::test {
namespace {

using testing::HasSubstr;

constexpr char const* kSource = "KOVSrvSsm.m/src/KOVSrvGetCSetIDFromScopedName";
constexpr char const* kIsASet = "KOVSimCSetID::CanBeConverted(setPos.ID())";

class ScopedNames : public ScopedNamesTest {};
KOV_DOCUMENT_TESTS(ScopedNames);

// ---- the name as it stands, and its separators ----

TEST_P(ScopedNames, NameIsFoundAsItStands) {
    MakeModel("", {"Set-1", "Set-2"});
    EXPECT_EQ(Find("Set-1"), "Set-1");
    EXPECT_EQ(Find("Set-2", "."), "Set-2");
    EXPECT_EQ(Find("Set-3"), kNothing);
}

TEST_P(ScopedNames, EmptyNameIsNullWithoutALookAtTheDocument) {
    MakeModel("", {"Set-1"});
    KOVSimPosition const focus = Document().Focus();
    Document().Close();
    int const map = schema::Model_elementSets();
    EXPECT_TRUE(KOVSrvGetIDFromScopedName(focus, "", map, ".", "", true).IsNull());
    EXPECT_TRUE(KOVSrvGetIDFromScopedName(focus, "", map, ".", "I", true).IsNull());
    EXPECT_TRUE(KOVSrvGetSurfaceIDFromScopedName(focus, "", ".", "").IsNull());
    EXPECT_TRUE(KOVSrvGetOrientationIDFromScopedName(focus, "", ".", "").IsNull());
    EXPECT_THAT(RefusalOf([&] { KOVSrvGetIDFromScopedName(focus, "Set-1", map, ".", "", true); }),
                HasSubstr("closed"));
}

TEST_P(ScopedNames, SeparatorsBecomeJoiners) {
    MakeModel("", {"Part-1_Set-1", "A_B_C", "D__E"});
    EXPECT_EQ(Find("Part-1.Set-1", "."), "Part-1_Set-1");
    EXPECT_EQ(Find("A.B.C", "."), "A_B_C");
    EXPECT_EQ(Find("A::B::C", "::"), "A_B_C");
    EXPECT_EQ(Find("D..E", "."), "D__E");
    EXPECT_EQ(Find("A.B_C", "."), "A_B_C");
}

TEST_P(ScopedNames, SeparatorsAreReplacedFromTheLeft) {
    MakeModel("", {"A_:B"});
    EXPECT_EQ(Find("A:::B", "::"), "A_:B");
}

TEST_P(ScopedNames, EmptySeparatorReplacesNothing) {
    MakeModel("", {"Part-1_Set-1"});
    EXPECT_EQ(Find("Part-1.Set-1", ""), kNothing);
    EXPECT_EQ(Find("Part-1_Set-1", ""), "Part-1_Set-1");
}

TEST_P(ScopedNames, SeparatorMayBeTheJoinerOrAnyText) {
    MakeModel("", {"A_B", "x_x"});
    EXPECT_EQ(Find("A_B", "_"), "A_B");
    EXPECT_EQ(Find("A\xe2\x86\x92"
                   "B",
                   "\xe2\x86\x92"),
              "A_B");
    EXPECT_EQ(Find("xSETx", "SET"), "x_x");
}

TEST_P(ScopedNames, NameAsItStandsComesBeforeItsJoinedForm) {
    MakeModel("", {"A.B", "A_B"});
    EXPECT_EQ(Find("A.B", "."), "A.B");
}

TEST_P(ScopedNames, CaseIsNotFolded) {
    MakeModel("Model-1", {"Set-1", "Model-1_Set-2"});
    EXPECT_EQ(Find("SET-1"), kNothing);
    EXPECT_EQ(Find("set-2"), kNothing);
    EXPECT_EQ(Find("model-1_Set-1"), kNothing);
}

// ---- quotes ----

TEST_P(ScopedNames, QuotedNameIsFoundWithoutItsQuotes) {
    MakeModel("", {"My Set", "My Part_Set", "My PartSet"});
    EXPECT_EQ(Find("\"My Set\""), "My Set");
    EXPECT_EQ(Find("\"My Part\".Set", "."), "My Part_Set");
    EXPECT_EQ(Find("\"My Part\"Set"), "My PartSet");
}

TEST_P(ScopedNames, QuotedNameIsNotFoundWithItsQuotes) {
    MakeModel("", {"\"My Set\""});
    EXPECT_EQ(Find("\"My Set\""), kNothing);
}

TEST_P(ScopedNames, LaterQuotesStay) {
    MakeModel("", {"Ab\"c\"", "A\"b\""});
    EXPECT_EQ(Find("\"A\"b\"c\""), "Ab\"c\"");
    EXPECT_EQ(Find("A\"b\""), "A\"b\"");
}

TEST_P(ScopedNames, QuoteThatIsNeverClosedStays) {
    MakeModel("", {"\"Set", "\"", "Set"});
    EXPECT_EQ(Find("\"Set"), "\"Set");
    EXPECT_EQ(Find("\""), "\"");
}

TEST_P(ScopedNames, QuotesAroundNothingLeaveTheEmptyKey) {
    MakeModel("M", {"", "M_"});
    EXPECT_EQ(Find("\"\""), "");
}

TEST_P(ScopedNames, QuotesAroundNothingAreNotFoundWithoutAnEmptyKey) {
    MakeModel("M", {"Set"});
    EXPECT_EQ(Find("\"\""), kNothing);
    EXPECT_EQ(Find("\"\"\"\""), kNothing);
}

TEST_P(ScopedNames, SeparatorsInsideQuotesCount) {
    MakeModel("", {"My_Part_Set"});
    EXPECT_EQ(Find("\"My.Part\".Set", "."), "My_Part_Set");
}

TEST_P(ScopedNames, LettersBeyondAsciiAndOtherEncodingsAreKept) {
    MakeModel("M", {"Gr\xc3\xb6\xc3\x9f"
                    "e_Fl\xc3\xa4"
                    "che",
                    "\xb5m_Set", "Part_\xb5Set", "M_\xb0"});
    EXPECT_EQ(Find("\"Gr\xc3\xb6\xc3\x9f"
                   "e\".Fl\xc3\xa4"
                   "che",
                   "."),
              "Gr\xc3\xb6\xc3\x9f"
              "e_Fl\xc3\xa4"
              "che");
    EXPECT_EQ(Find("\"\xb5m\".Set", "."), "\xb5m_Set");
    EXPECT_EQ(Find("Part_\"\xb5Set\""), "Part_\xb5Set");
    EXPECT_EQ(Find("\xb0"), "M_\xb0");
    EXPECT_EQ(Find("M_\xb5m_Set"), "\xb5m_Set");
}

// ---- the model's name ----

TEST_P(ScopedNames, KeyMayBeginWithTheModelsName) {
    MakeModel("Model-1", {"Model-1_Set-1", "Model-1_Part_Set"});
    EXPECT_EQ(Find("Set-1"), "Model-1_Set-1");
    EXPECT_EQ(Find("Part.Set", "."), "Model-1_Part_Set");
    EXPECT_EQ(Find("\"Set-1\""), "Model-1_Set-1");
}

TEST_P(ScopedNames, NameMayBeginWithTheModelsName) {
    MakeModel("Model-1", {"Set-1"});
    EXPECT_EQ(Find("Model-1_Set-1"), "Set-1");
    EXPECT_EQ(Find("Model-1.Set-1", "."), "Set-1");
    EXPECT_EQ(Find("\"Model-1\".Set-1", "."), "Set-1");
}

TEST_P(ScopedNames, ModelWithoutANameTriesNoFurtherForm) {
    MakeModel("", {"_Set-1", "Part_My Set", "Set-2"});
    EXPECT_EQ(Find("Set-1"), kNothing);
    EXPECT_EQ(Find("_Set-2"), kNothing);
    EXPECT_EQ(Find("Part_\"My Set\""), kNothing);
}

TEST_P(ScopedNames, HeadOfTheNameEndsWithTheJoiner) {
    MakeModel("M", {"Set", "", "MSet2"});
    EXPECT_EQ(Find("MSet"), kNothing);
    EXPECT_EQ(Find("M"), kNothing);
    EXPECT_EQ(Find("M_"), "") << "nothing is left of the name";
}

TEST_P(ScopedNames, HeadIsTakenOffOnce) {
    MakeModel("M", {"M_Set", "Other"});
    EXPECT_EQ(Find("M_M_Set"), "M_Set");
    EXPECT_EQ(Find("M_M_Other"), kNothing);
}

TEST_P(ScopedNames, KeyWithTheModelsNameComesBeforeTheKeyWithout) {
    MakeModel("M", {"M_M_Set", "Set", "M_Other", "Other"});
    EXPECT_EQ(Find("M_Set"), "M_M_Set");
    EXPECT_EQ(Find("M_Other"), "M_Other");
    EXPECT_EQ(Find("Other"), "Other");
}

// The model's own name is not joined.
TEST_P(ScopedNames, SeparatorsInTheModelsNameStay) {
    MakeModel("a.b", {"a.b_Set", "Other"});
    EXPECT_EQ(Find("Set", "."), "a.b_Set");
    EXPECT_EQ(Find("a.b.Other", "."), kNothing);
    EXPECT_EQ(Find("a.b_Other", ""), "Other");
}

// ---- sets that became surfaces ----

TEST_P(ScopedNames, RegionsMadeFromSetsAreFoundUnderTheModelsName) {
    MakeModel("Model-1", schema::Model_regions(),
              {"INP2SIM_ELSET_Top", "INP2SIM_NSET_Top", "INP2SIM_NSET_Bottom"});
    int const regions = schema::Model_regions();
    EXPECT_EQ(FindIn(regions, "Model-1_Top"), "INP2SIM_ELSET_Top");
    EXPECT_EQ(FindIn(regions, "Model-1_Bottom"), "INP2SIM_NSET_Bottom");
    EXPECT_EQ(FindIn(regions, "Model-1.Bottom", "."), "INP2SIM_NSET_Bottom");
    EXPECT_EQ(FindIn(regions, "Model-1_Left"), kNothing);
}

TEST_P(ScopedNames, RegionsMadeFromSetsNeedTheModelsName) {
    MakeModel("Model-1", schema::Model_regions(), {"INP2SIM_ELSET_Top", "INP2SIM_NSET_Bottom"});
    EXPECT_EQ(FindIn(schema::Model_regions(), "Top"), kNothing);
    EXPECT_EQ(FindIn(schema::Model_regions(), "Bottom"), kNothing);
}

TEST_P(ScopedNames, PlainRegionComesBeforeOneMadeFromASet) {
    MakeModel("M", schema::Model_regions(), {"INP2SIM_ELSET_Top", "Top"});
    EXPECT_EQ(FindIn(schema::Model_regions(), "M_Top"), "Top");
}

TEST_P(ScopedNames, OtherMapsHaveNothingMadeFromSets) {
    for (int const map : {schema::Model_elementSets(), schema::Model_otherElementSets(),
                          schema::Model_nodeSets(), schema::Model_orientationsByName()}) {
        Reopen();
        MakeModel("M", map, {"INP2SIM_ELSET_Top", "INP2SIM_NSET_Top"});
        EXPECT_EQ(FindIn(map, "M_Top"), kNothing);
    }
}

// ---- quotes inside the name ----

TEST_P(ScopedNames, QuotedPieceInsideTheNameIsFoundByTheRetry) {
    MakeModel("M", {"Part_My Set", "M_A_B C_D E"});
    EXPECT_EQ(Find("Part_\"My Set\""), "Part_My Set");
    EXPECT_EQ(Find("Part.\"My Set\"", "."), "Part_My Set");
    EXPECT_EQ(Find("A_\"B C\"_\"D E\""), "M_A_B C_D E");
}

TEST_P(ScopedNames, RetryIsMadeOnDemandOnly) {
    MakeModel("M", {"Part_My Set"});
    int const map = schema::Model_elementSets();
    EXPECT_EQ(FindIn(map, "Part_\"My Set\"", "", "", false), kNothing);
    EXPECT_EQ(FindIn(map, "Part_\"My Set\"", "", "", true), "Part_My Set");
}

TEST_P(ScopedNames, RetryIsMadeOnce) {
    MakeModel("M", {"Part_ab", "Part_\"c\"d", "Part_cd"});
    EXPECT_EQ(Find("Part_\"\"\"a\"b"), kNothing) << "the second round would find Part_ab";
    EXPECT_EQ(Find("Part_\"\"\"c\"d"), "Part_\"c\"d");
}

TEST_P(ScopedNames, RetryTriesEveryForm) {
    MakeModel("M", schema::Model_regions(), {"INP2SIM_NSET_My Set", "Plain One", "M_Own Set"});
    int const regions = schema::Model_regions();
    EXPECT_EQ(FindIn(regions, "M_\"My Set\""), "INP2SIM_NSET_My Set");
    EXPECT_EQ(FindIn(regions, "M_\"Plain One\""), "Plain One");
    EXPECT_EQ(FindIn(regions, "M_\"Own Set\""), "M_Own Set");
}

// What the quotes kept apart may be a separator when they are gone.
TEST_P(ScopedNames, RetryReplacesSeparatorsAgain) {
    MakeModel("M", {"P__S"});
    EXPECT_EQ(Find("P_\".\".S", ".."), "P__S");
}

TEST_P(ScopedNames, PiecesAreCutAtEachJoinerEvenInQuotes) {
    MakeModel("M", {"P_My_Set"});
    EXPECT_EQ(Find("P_\"My_Set\""), kNothing) << "no piece has two quotes";
    EXPECT_EQ(Find("P_\"My\"_Set"), "P_My_Set");
}

TEST_P(ScopedNames, FormsWithQuotesComeBeforeTheRetry) {
    MakeModel("M", {"P_\"S\"", "P_S"});
    EXPECT_EQ(Find("P_\"S\""), "P_\"S\"");
}

TEST_P(ScopedNames, NameOfVeryManyPiecesIsResolved) {
    std::string name = "P", key = "P";
    for (int i = 0; i < 100'000; ++i) {
        name += ".\"a\"";
        key += "_a";
    }
    MakeModel("M", {key});
    EXPECT_EQ(Find(name, "."), key);
}

// ---- instances ----

TEST_P(ScopedNames, InstanceStandsBeforeTheName) {
    MakeModel("", {"Inst-1_Set-1", "Set-1", "My Inst_Set-1"});
    EXPECT_EQ(Find("Set-1", ".", "Inst-1"), "Inst-1_Set-1");
    EXPECT_EQ(Find("\"Set-1\"", ".", "Inst-1"), "Inst-1_Set-1");
    EXPECT_EQ(Find("Set-1", ".", "\"My Inst\""), "My Inst_Set-1");
}

TEST_P(ScopedNames, ModelsNameStandsBeforeTheInstance) {
    MakeModel("M", {"M_I_Set-1", "I_Set-1", "I_Set-2"});
    EXPECT_EQ(Find("Set-1", ".", "I"), "M_I_Set-1");
    EXPECT_EQ(Find("Set-2", ".", "I"), kNothing) << "the model's name is lacking";
}

TEST_P(ScopedNames, NothingElseIsTriedWithAnInstance) {
    MakeModel("M", {"Set-1", "M_Set-1", "I_Set-1", "M_I_A_B", "M_I_P_My Set"});
    EXPECT_EQ(Find("Set-1", ".", "I"), kNothing);
    EXPECT_EQ(Find("M_Set-1", ".", "I"), kNothing);
    EXPECT_EQ(Find("A.B", ".", "I"), kNothing) << "separators are not replaced";
    EXPECT_EQ(Find("P_\"My Set\"", ".", "I"), kNothing) << "there is no retry";
}

TEST_P(ScopedNames, SeparatorStaysInTheNameBehindAnInstance) {
    MakeModel("", {"I_A.B", "I_A_B", "I.J_Set"});
    EXPECT_EQ(Find("A.B", ".", "I"), "I_A.B");
    EXPECT_EQ(Find("Set", ".", "I.J"), "I.J_Set");
}

TEST_P(ScopedNames, InstanceOfQuotesAloneIsNone) {
    MakeModel("", {"Set-1", "_Set-1"});
    EXPECT_EQ(Find("Set-1", ".", "\"\""), "Set-1");
}

TEST_P(ScopedNames, QuotesAroundNothingNameTheInstanceItself) {
    MakeModel("M", {"M_I_"});
    EXPECT_EQ(Find("\"\"", ".", "I"), "M_I_");
}

// ---- absent things ----

TEST_P(ScopedNames, NullSeparatorOrInstanceIsRefused) {
    MakeModel("", {"Set-1"});
    KOVSimPosition const focus = Document().Focus();
    int const map = schema::Model_elementSets();
    EXPECT_EQ(RefusalOf([&] { KOVSrvGetIDFromScopedName(focus, "Set-1", map, nullptr, "", true); }),
              "cannot resolve a scoped name: the scope separator is null; it may be empty");
    EXPECT_EQ(RefusalOf([&] { KOVSrvGetIDFromScopedName(focus, "Set-1", map, "", nullptr, true); }),
              "cannot resolve a scoped name: the instance name is null; it may be empty");
    EXPECT_NE(RefusalOf([&] { KOVSrvGetSurfaceIDFromScopedName(focus, "S", nullptr, ""); }), "");
    EXPECT_NE(RefusalOf([&] { KOVSrvGetOrientationIDFromScopedName(focus, "S", "", nullptr); }),
              "");
    EXPECT_NE(RefusalOf([&] { KOVSrvGetElementSetIDFromScopedName(focus, "S", nullptr, ""); }), "");
    EXPECT_NE(RefusalOf([&] { KOVSrvGetNodeSetIDFromScopedName(focus, "S", "", nullptr); }), "");
}

TEST_P(ScopedNames, NullFocusHasNoModel) {
    MakeModel("", {"Set-1"});
    for (char const* const instance : {"", "I"}) {
        EXPECT_TRUE(
            KOVSrvGetIDFromScopedName({}, "Set-1", schema::Model_elementSets(), ".", instance, true)
                .IsNull());
        EXPECT_TRUE(KOVSrvGetSurfaceIDFromScopedName({}, "Set-1", ".", instance).IsNull());
    }
}

TEST_P(ScopedNames, EmptyMapHasNothing) {
    MakeModel("M", {"Set"});
    EXPECT_EQ(FindIn(schema::Model_regions(), "M_\"Set\"", "."), kNothing);
}

// ---- the functions for one kind of object ----

TEST_P(ScopedNames, SurfacesAndOrientationsHaveMapsOfTheirOwn) {
    Write([&] {
        SetModelName(Document(), "M");
        Put(Document(), schema::Model_regions(), {"S", "INP2SIM_ELSET_T", "P_Q R", "M_I_S"});
        Put(Document(), schema::Model_orientationsByName(), {"O", "P_Q R", "M_I_O"});
    });
    Reopen(KOVObjDocument::ReadOnly);
    KOVSimPosition const focus = Document().Focus();
    auto const surface = [&](char const* name, char const* instance = "") {
        return MapAndKey(KOVSrvGetSurfaceIDFromScopedName(focus, name, ".", instance));
    };
    auto const orientation = [&](char const* name, char const* instance = "") {
        return MapAndKey(KOVSrvGetOrientationIDFromScopedName(focus, name, ".", instance));
    };
    int const regions = schema::Model_regions();
    int const orientations = schema::Model_orientationsByName();
    EXPECT_EQ(surface("S"), std::pair(regions, std::string("S")));
    EXPECT_EQ(surface("M.T"), std::pair(regions, std::string("INP2SIM_ELSET_T")));
    EXPECT_EQ(surface("P.\"Q R\""), std::pair(regions, std::string("P_Q R")));
    EXPECT_EQ(surface("S", "I"), std::pair(regions, std::string("M_I_S")));
    EXPECT_EQ(surface("O").second, kNothing);
    EXPECT_EQ(orientation("O"), std::pair(orientations, std::string("O")));
    EXPECT_EQ(orientation("P.\"Q R\""), std::pair(orientations, std::string("P_Q R")));
    EXPECT_EQ(orientation("O", "I"), std::pair(orientations, std::string("M_I_O")));
    EXPECT_EQ(orientation("S").second, kNothing);
    EXPECT_EQ(orientation("M.T").second, kNothing);
}

TEST_P(ScopedNames, SurfaceNeedNotBeASet) {
    KOVSimPosition region;
    Write([&] {
        region = NewRecord(schema::Mapper());
        Document().GetModel().GetMap(schema::Model_regions()).Insert("S", region);
    });
    Reopen();
    EXPECT_EQ(KOVSrvGetSurfaceIDFromScopedName(Document().Focus(), "S", "", "").ID(),
              Again(region).ID());
}

using GetSet = KOVSimPosition (*)(KOVSimPosition const&, KOVString const&, char const*,
                                  char const*);
struct SetKind {
    GetSet get;
    int first;
    int second;
};
std::vector<SetKind> SetKinds() {
    return {{KOVSrvGetElementSetIDFromScopedName, schema::Model_elementSets(),
             schema::Model_otherElementSets()},
            {KOVSrvGetNodeSetIDFromScopedName, schema::Model_nodeSets(),
             schema::Model_otherNodeSets()}};
}

TEST_P(ScopedNames, SetsAreSoughtInTwoMaps) {
    Write([&] {
        SetModelName(Document(), "M");
        for (SetKind const& kind : SetKinds()) {
            Put(Document(), kind.first, {"Both", "First", "P_Q R", "M_I_S"});
            Put(Document(), kind.second, {"Both", "Second", "P_\"Q R\"", "M_I_T"});
        }
    });
    Reopen(KOVObjDocument::ReadOnly);
    for (SetKind const& kind : SetKinds()) {
        auto const found = [&](char const* name, char const* instance = "") {
            return MapAndKey(kind.get(Document().Focus(), name, ".", instance));
        };
        EXPECT_EQ(found("First"), std::pair(kind.first, std::string("First")));
        EXPECT_EQ(found("Second"), std::pair(kind.second, std::string("Second")));
        EXPECT_EQ(found("M.Second"), std::pair(kind.second, std::string("Second")));
        EXPECT_EQ(found("Both"), std::pair(kind.first, std::string("Both")));
        EXPECT_EQ(found("S", "I"), std::pair(kind.first, std::string("M_I_S")));
        EXPECT_EQ(found("T", "I"), std::pair(kind.second, std::string("M_I_T")));
        // All forms in the first map come before any in the second.
        EXPECT_EQ(found("P.\"Q R\""), std::pair(kind.first, std::string("P_Q R")));
    }
}

class ScopedNamesAssertions : public ScopedNamesTest {
  protected:
    void Expect(DocumentWork const& build, GetSet get, char const* name) {
        ExpectAssertion(kIsASet, kSource, build, [&](KOVObjDocument const& document) {
            get(document.Focus(), name, ".", "");
        });
    }
};
KOV_DOCUMENT_TESTS(ScopedNamesAssertions);

TEST_P(ScopedNamesAssertions, UnknownElementSetFails) {
    Expect([&](auto& document) { Put(document, schema::Model_nodeSets(), {"S"}); },
           KOVSrvGetElementSetIDFromScopedName, "S");
}

TEST_P(ScopedNamesAssertions, UnknownNodeSetFails) {
    Expect([&](auto& document) { Put(document, schema::Model_elementSets(), {"S"}); },
           KOVSrvGetNodeSetIDFromScopedName, "S");
}

TEST_P(ScopedNamesAssertions, EmptyNameOfAnElementSetFails) {
    Expect([](auto&) {}, KOVSrvGetElementSetIDFromScopedName, "");
}

TEST_P(ScopedNamesAssertions, EmptyNameOfANodeSetFails) {
    Expect([](auto&) {}, KOVSrvGetNodeSetIDFromScopedName, "");
}

// The second map is not asked once the first has the name.
TEST_P(ScopedNamesAssertions, ElementSetThatIsNoSetFails) {
    Expect(
        [&](KOVObjDocument const& document) {
            document.GetModel()
                .GetMap(schema::Model_elementSets())
                .Insert("S", document.CreateDataRecord(schema::Mapper()).Pos());
            Put(document, schema::Model_otherElementSets(), {"S"});
        },
        KOVSrvGetElementSetIDFromScopedName, "S");
}

TEST_P(ScopedNamesAssertions, NodeSetThatIsNoSetFails) {
    Expect(
        [&](KOVObjDocument const& document) {
            document.GetModel()
                .GetMap(schema::Model_otherNodeSets())
                .Insert("S", document.GetMesh());
        },
        KOVSrvGetNodeSetIDFromScopedName, "S");
}

}  // namespace
}  // namespace kov::test
