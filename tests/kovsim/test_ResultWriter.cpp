// Results on their way into a document, frame by frame.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "InMemory.h"
#include "KOVSrvFieldServices.h"
#include "KOVSrvLumenChecker.h"
#include "KOVSrvVariableMap.h"
#include "ResultSamples.h"
#include "ResultWriter.h"
#include "support/DocumentFixture.h"
#include "zdm_AlgebraicTypes.h"
#include "zdm_ComponentSymbols.h"

namespace kov::test {
namespace {

using tool::ResultOptions;
using tool::ResultPlace;
using tool::ResultSummary;
using tool::ResultWriter;
using tool::StepKind;

std::vector<std::string> const kU = {"U1", "U2", "U3"};

class Results : public DocumentTest {
  protected:
    /// Nodes with the labels 10, 20, 30, 5, by ordinal.
    void MakeMesh() {
        Write([&] { LabelNodes(Document(), "", {10, 20, 30, 5}); });
    }
    ResultSummary Add(std::vector<SampleFrame> frames, ResultOptions options = {}) {
        SampleSource source(std::move(frames));
        ResultWriter writer(Document(), std::move(options));
        writer.Add(source);
        return writer.Summary();
    }
    std::string Error(std::vector<SampleFrame> frames, ResultOptions options = {}) {
        try {
            Add(std::move(frames), std::move(options));
        } catch (tool::Failure const& failure) {
            return failure.what();
        }
        return "";
    }
    ResultLook Look() const { return ResultLook(Document()); }
    KOVSimPosition FirstFrame() const { return ResultLook::Frames(Look().Steps().at(0)).at(0); }
};
KOV_DOCUMENT_TESTS(Results);

TEST_P(Results, AVectorStandsByOrdinalAndComponent) {
    MakeMesh();
    ResultSummary const summary = Add({Sample(
        1, 3, 0.25, {AtNodes("U", kU, {10, 20, 30, 5}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})})});
    Reopen();
    EXPECT_EQ(summary.framesAdded, 1);
    EXPECT_EQ(summary.stepsMade, 1);
    ASSERT_EQ(Look().Steps().size(), 1U);
    KOVSimPosition const step = Look().Steps()[0];
    EXPECT_EQ(tool::Plain(step.Name(-1)), "Step-1");
    EXPECT_EQ(tool::Plain(step.Name(schema::Model_steps())), "Step-1");
    EXPECT_EQ(step.TypePosition(), schema::Step_Gen_Static());
    EXPECT_EQ(step.ReferrersSet(schema::Focus_externalTaskIds()).Size(), 1);
    KOVSimPosition const frame = FirstFrame();
    EXPECT_EQ(frame.TypePosition(), schema::Frame());
    EXPECT_EQ(ResultLook::Increment(frame), 3);
    EXPECT_EQ(ResultLook::Real(frame, 1), 0.25);
    EXPECT_EQ(ResultLook::Real(frame, 2), 10.25);
    KOVSimPosition const field = ResultLook::Field(frame, "U_D");
    ASSERT_FALSE(field.IsNull());
    EXPECT_EQ(field.TypePosition(), schema::Field_Meshed());
    EXPECT_EQ(field.Parent(schema::Task_fieldResults()).ID(), step.ID());
    EXPECT_EQ(field.GetPosition(schema::Field_fieldType()).TypePosition(),
              schema::FieldTypePrimary());
    EXPECT_EQ(ResultLook::Algebraic(field), zdm_Algebraic_VECTOR);
    KOVObjMeshedField const meshed(field);
    EXPECT_EQ(meshed.GetGridType(), schema::Grid_Node());
    EXPECT_EQ(meshed.GetDistribution().TypePosition(), schema::Grid_Node());
    FieldValues const expected = {{zdm_Component_C_1, {{0, {{0, 1}, {1, 4}, {2, 7}, {3, 10}}}}},
                                  {zdm_Component_C_2, {{0, {{0, 2}, {1, 5}, {2, 8}, {3, 11}}}}},
                                  {zdm_Component_C_3, {{0, {{0, 3}, {1, 6}, {2, 9}, {3, 12}}}}}};
    EXPECT_EQ(ResultLook::Values(field), expected);
    EXPECT_EQ(ResultLook::Drawers(field), 1);
}

TEST_P(Results, RowsInAnotherOrderStandWhereTheyBelong) {
    MakeMesh();
    SampleField field = AtNodes("NT", {"NT"}, {5, 20}, {1, 2});
    field.blocks.push_back(AtNodes("NT", {"NT"}, {30, 10}, {3, 4}).blocks[0]);
    Add({Sample(1, 1, 1, {field})});
    Reopen();
    FieldValues const expected = {
        {zdm_Component_C_SCALAR, {{0, {{3, 1}, {1, 2}, {2, 3}, {0, 4}}}}}};
    EXPECT_EQ(ResultLook::Values(ResultLook::Field(FirstFrame(), "NT")), expected);
}

TEST_P(Results, NodesWithoutAValueHaveNoRow) {
    MakeMesh();
    Add({Sample(1, 1, 1, {AtNodes("NT", {"NT"}, {30}, {3})})});
    Reopen();
    FieldValues const expected = {{zdm_Component_C_SCALAR, {{0, {{2, 3}}}}}};
    EXPECT_EQ(ResultLook::Values(ResultLook::Field(FirstFrame(), "NT")), expected);
}

TEST_P(Results, TensorsStandInTheOrderOfTheirSymbols) {
    MakeMesh();
    Add({Sample(1, 1, 1,
                {AtNodes("S", {"S11", "S22", "S33", "S12", "S23", "S13"}, {20},
                         {11, 22, 33, 12, 23, 13})})});
    Reopen();
    KOVSimPosition const field = ResultLook::Field(FirstFrame(), "S0");
    EXPECT_EQ(ResultLook::Algebraic(field), zdm_Algebraic_TENSOR2_SYMMETRIC);
    FieldValues const expected = {
        {zdm_Component_C_11, {{0, {{1, 11}}}}}, {zdm_Component_C_12, {{0, {{1, 12}}}}},
        {zdm_Component_C_13, {{0, {{1, 13}}}}}, {zdm_Component_C_22, {{0, {{1, 22}}}}},
        {zdm_Component_C_23, {{0, {{1, 23}}}}}, {zdm_Component_C_33, {{0, {{1, 33}}}}}};
    EXPECT_EQ(ResultLook::Values(field), expected);
}

TEST_P(Results, DisplacementsAndRotationsBecomeTwoFields) {
    MakeMesh();
    Add({Sample(1, 1, 1, {AtNodes("U", {"U1", "UR2"}, {10}, {1, 2})})});
    Reopen();
    FieldValues const u = {{zdm_Component_C_1, {{0, {{0, 1}}}}}};
    FieldValues const ur = {{zdm_Component_C_R2, {{0, {{0, 2}}}}}};
    EXPECT_EQ(ResultLook::Values(ResultLook::Field(FirstFrame(), "U_D")), u);
    EXPECT_EQ(ResultLook::Values(ResultLook::Field(FirstFrame(), "U_R")), ur);
    EXPECT_EQ(ResultLook::Algebraic(ResultLook::Field(FirstFrame(), "U_R")), zdm_Algebraic_VECTOR);
}

TEST_P(Results, UnknownVariablesStandUnderTheirOwnNames) {
    MakeMesh();
    ResultSummary const summary =
        Add({Sample(1, 1, 1,
                    {AtNodes("QQ", {"QQ"}, {10}, {1}), AtNodes("VV", {"VV1", "VV2"}, {10}, {2, 3}),
                     AtNodes("TT", {"TT11", "TT12"}, {10}, {4, 5}),
                     AtNodes("XX", {"XX-A", "XX-B"}, {10}, {6, 7})})});
    Reopen();
    struct Expected {
        char const* name;
        int algebraic;
    };
    for (Expected const& e :
         {Expected{"QQ", zdm_Algebraic_SCALAR}, Expected{"VV", zdm_Algebraic_VECTOR},
          Expected{"TT", zdm_Algebraic_TENSOR2_SYMMETRIC}, Expected{"XX-A", zdm_Algebraic_SCALAR},
          Expected{"XX-B", zdm_Algebraic_SCALAR}}) {
        KOVSimPosition const field = ResultLook::Field(FirstFrame(), e.name);
        ASSERT_FALSE(field.IsNull()) << e.name;
        EXPECT_EQ(ResultLook::Algebraic(field), e.algebraic) << e.name;
        EXPECT_EQ(field.GetPosition(schema::Field_fieldType()).TypePosition(),
                  schema::FieldType_unchecked());
    }
    ASSERT_EQ(summary.variables.size(), 4U);
    EXPECT_FALSE(summary.variables[0].targets[0].known);
}

TEST_P(Results, EveryBitOfANumberIsKept) {
    MakeMesh();
    double const nan = std::nan("7");
    double const infinity = std::numeric_limits<double>::infinity();
    std::vector<double> const values = {nan, -infinity, -0.0, 5e-324};
    Add({Sample(1, 1, 1, {AtNodes("NT", {"NT"}, {10, 20, 30, 5}, values)})});
    Reopen();
    FieldValues read = ResultLook::Values(ResultLook::Field(FirstFrame(), "NT"));
    for (int i = 0; i < 4; ++i) {
        double const value = read[zdm_Component_C_SCALAR][0][i];
        EXPECT_EQ(std::memcmp(&value, &values[static_cast<std::size_t>(i)], sizeof value), 0) << i;
    }
}

TEST_P(Results, AFrameThatIsThereIsPassedOver) {
    MakeMesh();
    SampleField const field = AtNodes("NT", {"NT"}, {10}, {1});
    Add({Sample(1, 1, 0.5, {field})});
    Reopen();
    ResultSummary const summary =
        Add({Sample(1, 1, 0.5, {field}), Sample(1, 2, 1.0, {field}), Sample(2, 1, 1.0, {field})});
    EXPECT_EQ(summary.framesThere, 1);
    EXPECT_EQ(summary.framesAdded, 2);
    EXPECT_EQ(summary.stepsMade, 1);
    Reopen();
    ASSERT_EQ(Look().Steps().size(), 2U);
    EXPECT_EQ(ResultLook::Frames(Look().Steps()[0]).size(), 2U);
    EXPECT_EQ(ResultLook::Frames(Look().Steps()[1]).size(), 1U);
}

TEST_P(Results, FieldsOfAFrameThatIsThereWithoutThemAreTold) {
    MakeMesh();
    SampleField const heat = AtNodes("NT", {"NT"}, {10}, {1});
    SampleField const shift = AtNodes("U", kU, {10}, {1, 2, 3});
    Add({Sample(1, 1, 0.5, {heat}), Sample(1, 2, 1.0, {heat})});
    Reopen();
    ResultSummary const summary =
        Add({Sample(1, 1, 0.5, {heat, shift}), Sample(1, 2, 1.0, {shift, heat})});
    EXPECT_EQ(summary.framesThere, 2);
    ASSERT_EQ(summary.notes.size(), 2U);  // behind that of the source
    EXPECT_EQ(summary.notes[1],
              "field 'U' was not added to 2 frames that were there already without it");
    EXPECT_EQ(Add({Sample(1, 1, 0.5, {heat})}).notes.size(), 1U);

    ResultSummary const repeated = Add({Sample(1, 3, 2.0, {heat}), Sample(1, 3, 2.0, {shift})});
    EXPECT_EQ(repeated.framesAdded, 1);
    ASSERT_EQ(repeated.notes.size(), 2U);
    EXPECT_EQ(repeated.notes[1],
              "field 'U' was not added to 1 frame that was there already without it");
}

TEST_P(Results, AnotherValueForAnIncrementIsRefused) {
    MakeMesh();
    Add({Sample(1, 1, 0.5)});
    EXPECT_EQ(Error({Sample(1, 1, 0.25)}),
              "s:1: step 1, increment 1 is in the document with the value 0.5, not 0.25: the "
              "results are of another run");
    EXPECT_EQ(
        Error({Sample(2, 1, 5), Sample(2, 1, 6)}),
        "s:2: step 2, increment 1 is in the document with the value 5, not 6: the results are "
        "of another run");
}

TEST_P(Results, TimesAreDescribed) {
    MakeMesh();
    Add({Sample(1, 1, 0.5), Sample(1, 2, 1.0)});
    Reopen();
    Add({Sample(1, 3, 1.5)});
    Reopen();
    KOVSimPosition const step = Look().Steps()[0];
    KOVSimCSet const times(step.GetPosition(schema::Task_times()));
    EXPECT_EQ(times.Size(), 3);
    KOVSimPosition const description =
        KOVSimPosition(times.CollectionID()).Parent(schema::TimeDescription_timeCollection());
    ASSERT_FALSE(description.IsNull());
    EXPECT_EQ(ResultLook::Numbers(description.GetPosition(schema::TimeDescription_data())),
              (std::vector<double>{0.5, 1.0, 1.5}));
    EXPECT_EQ(Document().Focus().GetSet(schema::Focus_timeDescriptions()).Size(), 1);
    EXPECT_TRUE(step.GetPosition(schema::Task_modes()).IsNull());
}

TEST_P(Results, FrequenciesHaveModesWithEigenvalues) {
    MakeMesh();
    Add({Sample(1, 1, 2.0, {}, StepKind::Frequency), Sample(1, 2, 3.0, {}, StepKind::Frequency)});
    Reopen();
    KOVSimPosition const step = Look().Steps()[0];
    EXPECT_EQ(step.TypePosition(), schema::Step_Lin_Frequency());
    EXPECT_TRUE(step.GetPosition(schema::Task_times()).IsNull());
    KOVSimCSet const frequencies(step.GetPosition(schema::Task_frequencies()));
    EXPECT_EQ(frequencies.Size(), 2);
    KOVSimPosition const description =
        KOVSimPosition(frequencies.CollectionID())
            .Parent(schema::FrequencyDescription_frequencyCollection());
    EXPECT_EQ(ResultLook::Numbers(description.GetPosition(schema::FrequencyDescription_data())),
              (std::vector<double>{2.0, 3.0}));
    KOVSimPosition const system = step.GetPosition(schema::Task_feSystem());
    EXPECT_TRUE(system.IsA(schema::ModalSystem()));
    EXPECT_EQ(KOVSimCSet(step.GetPosition(schema::Task_modes())).Size(), 2);
    std::vector<double> const eigenvalues =
        ResultLook::Numbers(system.GetPosition(schema::ModalSystem_eigenvalues()));
    ASSERT_EQ(eigenvalues.size(), 2U);
    EXPECT_DOUBLE_EQ(eigenvalues[0], 16.0 * M_PI * M_PI);
    EXPECT_DOUBLE_EQ(eigenvalues[1], 36.0 * M_PI * M_PI);
}

TEST_P(Results, TheStateABucklingStepBeginsAtIsNoMode) {
    MakeMesh();
    Add({Sample(1, 0, 0.0, {}, StepKind::Buckle), Sample(1, 1, 7.0, {}, StepKind::Buckle)});
    Reopen();
    KOVSimPosition const step = Look().Steps()[0];
    EXPECT_EQ(step.TypePosition(), schema::Step_Lin_Buckle());
    EXPECT_EQ(ResultLook::Frames(step).size(), 2U);
    EXPECT_EQ(KOVSimCSet(step.GetPosition(schema::Task_modes())).Size(), 1);
    EXPECT_EQ(ResultLook::Numbers(step.GetPosition(schema::Task_feSystem())
                                      .GetPosition(schema::ModalSystem_eigenvalues())),
              (std::vector<double>{7.0}));
    EXPECT_TRUE(step.GetPosition(schema::Task_times()).IsNull());
    EXPECT_TRUE(step.GetPosition(schema::Task_frequencies()).IsNull());
}

TEST_P(Results, StepsOfTheModelAreTakenByTheirNumber) {
    MakeMesh();
    Write([&] {
        KOVSimPosition const step = NewRecord(schema::Step_Gen_Static());
        step.SetName("Press");
        Document().GetModel().GetVector(schema::Model_stepSequence()).PushBack(step);
        Document().GetModel().GetMap(schema::Model_steps()).Insert("Press", step);
    });
    ResultSummary const summary = Add({Sample(1, 1, 1.0), Sample(3, 1, 1.0)});
    EXPECT_EQ(summary.stepsMade, 2);
    Reopen();
    ASSERT_EQ(Look().Steps().size(), 3U);
    EXPECT_EQ(tool::Plain(Look().Steps()[0].Name(-1)), "Press");
    EXPECT_EQ(tool::Plain(Look().Steps()[2].Name(-1)), "Step-3");
    EXPECT_EQ(ResultLook::Frames(Look().Steps()[0]).size(), 1U);
    EXPECT_TRUE(ResultLook::Frames(Look().Steps()[1]).empty());
    EXPECT_EQ(Error({Sample(1, 2, 1.0, {}, StepKind::Frequency)}),
              "s:1: step 1 is a frequency step, and 'Press' of the model has times");
}

TEST_P(Results, StepsThatAreFarOffAreRefused) {
    MakeMesh();
    EXPECT_EQ(Error({Sample(5000, 1, 1.0)}), "s:1: step 5000 comes where the model has 0 steps");
    EXPECT_EQ(Error({Sample(0, 1, 1.0)}), "s:1: step 0 comes where the model has 0 steps");
    EXPECT_TRUE(Look().Steps().empty());
}

TEST_P(Results, UnknownLabelsLeaveNothingOfTheirFrame) {
    MakeMesh();
    SampleField const good = AtNodes("NT", {"NT"}, {10}, {1});
    SampleField const bad = AtNodes("U", kU, {10, 7, 8, 20, 9, 11}, std::vector<double>(18, 1.0));
    std::vector<SampleFrame> const frames = {Sample(1, 1, 1.0, {good}),
                                             Sample(1, 2, 2.0, {good, bad})};
    EXPECT_EQ(Error(frames),
              "s:2: 4 of 6 nodes of field 'U' are not in the model: 7, 8, 9 and others; expected "
              "labels of the model, or --skip-unknown");
    Reopen();
    EXPECT_EQ(ResultLook::Frames(Look().Steps()[0]).size(), 1U);

    ResultOptions options;
    options.skipUnknown = true;
    ResultSummary const summary = Add(frames, options);
    EXPECT_EQ(summary.framesAdded, 1);
    ASSERT_EQ(summary.variables.size(), 2U);
    EXPECT_EQ(summary.variables[1].skipped, 4);
    EXPECT_EQ(summary.variables[1].firstSkipped, (std::vector<int>{7, 8, 9}));
    Reopen();
    KOVSimPosition const frame = ResultLook::Frames(Look().Steps()[0]).at(1);
    FieldValues values = ResultLook::Values(ResultLook::Field(frame, "U_D"));
    EXPECT_EQ(values[zdm_Component_C_1][0], (std::map<int, double>{{0, 1.0}, {1, 1.0}}));
}

TEST_P(Results, AFieldWithoutAKnownLabelIsNotThere) {
    MakeMesh();
    ResultOptions options;
    options.skipUnknown = true;
    Add({Sample(1, 1, 1.0, {AtNodes("U", kU, {7}, {1, 2, 3})})}, options);
    Reopen();
    EXPECT_EQ(FirstFrame().GetSet(schema::Frame_fields()).Size(), 0);
}

TEST_P(Results, ALabelThatStandsTwiceIsAnError) {
    MakeMesh();
    EXPECT_EQ(Error({Sample(1, 1, 1.0, {AtNodes("NT", {"NT"}, {10, 5, 10}, {1, 2, 3})})}),
              "s:1: node 10 stands twice in field 'NT'");
    SampleField field = AtNodes("NT", {"NT"}, {10}, {1});
    field.blocks.push_back(field.blocks[0]);
    EXPECT_EQ(Error({Sample(1, 1, 1.0, {field})}), "s:1: node 10 stands twice in field 'NT'");
    EXPECT_TRUE(Look().Steps().empty());
}

TEST_P(Results, AFieldThatComesTwiceIsAnError) {
    MakeMesh();
    SampleField const field = AtNodes("NT", {"NT"}, {10}, {1});
    EXPECT_EQ(Error({Sample(1, 1, 1.0, {field, field})}),
              "s:1: field type 'NT' comes twice in a frame, as 'NT' too");
    EXPECT_EQ(Error({Sample(1, 1, 1.0, {AtNodes("U", {"U1", "U1"}, {10}, {1, 2})})}),
              "s:1: component 'U1' of field 'U' stands there twice");
}

TEST_P(Results, ABlockThatIsNoRectangleIsAnError) {
    MakeMesh();
    EXPECT_EQ(Error({Sample(1, 1, 1.0, {AtNodes("NT", {"NT"}, {10, 20}, {1})})}),
              "s:1: the values of field 'NT' are no rows of components");
}

TEST_P(Results, AFieldTypeOfAnotherKindIsAnError) {
    MakeMesh();
    EXPECT_EQ(Error({Sample(1, 1, 1.0, {AtNodes("ANGLE", {"ANGLE1", "ANGLE2"}, {10}, {1, 2})})}),
              "s:1: field type 'ANGLE' of the document is another quantity: its algebraic type is "
              "1, not 9");
}

TEST_P(Results, AFailureLeavesWholeFrames) {
    MakeMesh();
    SampleField const field = AtNodes("NT", {"NT"}, {10}, {1});
    SampleSource source({Sample(1, 1, 1.0, {field}), Sample(1, 2, 2.0, {field})});
    source.breakAt = 1;
    ResultWriter writer(Document(), {});
    EXPECT_THROW(writer.Add(source), tool::Failure);
    EXPECT_EQ(writer.Summary().framesAdded, 1);
    Reopen();
    EXPECT_EQ(ResultLook::Frames(Look().Steps()[0]).size(), 1U);
    KOVSimCSet const times(Look().Steps()[0].GetPosition(schema::Task_times()));
    EXPECT_EQ(times.Size(), 1);
}

TEST_P(Results, AFileThatGrowsMayEndWithinAFrame) {
    MakeMesh();
    SampleField const field = AtNodes("NT", {"NT"}, {10}, {1});
    std::vector<SampleFrame> const frames = {Sample(1, 1, 1.0, {field}),
                                             Sample(1, 2, 2.0, {field})};
    ResultOptions options;
    options.growing = true;
    SampleSource cut(frames);
    cut.breakAt = 1;
    cut.unfinished = true;
    ResultWriter writer(Document(), options);
    writer.Add(cut);
    EXPECT_EQ(writer.Summary().framesAdded, 1);
    EXPECT_EQ(writer.Summary().notes, (std::vector<std::string>{"s:9: cut", "a note"}));
    SampleSource whole(frames);
    writer.Add(whole);
    EXPECT_EQ(writer.Summary().framesAdded, 2);
    EXPECT_EQ(writer.Summary().framesThere, 1);

    SampleSource again({Sample(1, 3, 3.0, {field})});
    again.breakAt = 0;
    again.unfinished = true;
    EXPECT_THROW(ResultWriter(Document(), {}).Add(again), tool::UnfinishedResults);
    EXPECT_EQ(ResultLook::Frames(Look().Steps()[0]).size(), 2U);
}

TEST_P(Results, LabelsOfSeveralInstancesMustBeChosen) {
    Write([&] {
        LabelNodes(Document(), "Left", {10, 20});
        LabelNodes(Document(), "Right", {10, 20}, 2);
    });
    std::vector<SampleFrame> const frames = {
        Sample(1, 1, 1.0, {AtNodes("NT", {"NT"}, {10, 20}, {1, 2})})};
    EXPECT_EQ(Error(frames),
              "labels in results are those of one instance, and the model has 2, Left, Right; "
              "expected --instance NAME");
    ResultOptions options;
    options.instance = "Rigth";
    EXPECT_EQ(Error(frames, options), "no instance named 'Rigth'; did you mean 'Right'?");
    options.instance = "Right";
    Add(frames, options);
    Reopen();
    FieldValues const expected = {{zdm_Component_C_SCALAR, {{0, {{2, 1}, {3, 2}}}}}};
    EXPECT_EQ(ResultLook::Values(ResultLook::Field(FirstFrame(), "NT")), expected);
}

TEST_P(Results, ADocumentWithoutMeshOrLabelsIsRefused) {
    EXPECT_EQ(Error({}), "it has no mesh that results could belong to");
    Write([&] {
        KOVSimCollection(Document().GetMesh().GetPosition(schema::Mesh_nodes()).GetCollection())
            .ExtendSpace(2);
    });
    EXPECT_EQ(Error({}), "its nodes and elements have no labels");
}

TEST_P(Results, AFieldTakesTheSetsOfItsDrawersAndNoMore) {
    MakeMesh();
    std::vector<int> const labels = {10, 30};
    Add({Sample(1, 1, 1.0, {AtNodes("NT", {"NT"}, labels, {1, 2})})});
    // A frame without fields takes sets for the times of its step.
    auto const first = Document().Statistics().sets;
    Add({Sample(1, 2, 2.0)});
    auto const second = Document().Statistics().sets;
    Add({Sample(1, 3, 3.0, {AtNodes("NT", {"NT"}, labels, {1, 2})})});
    EXPECT_EQ(Document().Statistics().sets - second, second - first + 2);
}

TEST_P(Results, TheCheckerFindsNothing) {
    MakeMesh();
    std::vector<double> const one = {1, 2, 3};
    std::vector<SampleField> const fields = {
        AtNodes("U", kU, {10}, one),
        AtNodes("UR", {"UR1", "UR2", "UR3"}, {10}, one),
        AtNodes("S", {"S11", "S22", "S33", "S12", "S13", "S23"}, {10}, {1, 2, 3, 4, 5, 6}),
        AtNodes("NT", {"NT"}, {10}, {1}),
        AtNodes("CONTACT", {"CPRESS", "CSHEAR1", "CSHEAR2", "COPEN"}, {10}, {1, 2, 3, 4}),
        AtNodes("ERROR", {"ERROR"}, {10}, {1}),
        AtNodes("DISPI", {"DISPI1", "DISPI2", "DISPI3"}, {10}, one),
        AtNodes("ZZSTR", {"ZZSTR11", "ZZSTR22", "ZZSTR12"}, {10}, one),
        AtNodes("GR", {"GR12", "GR21"}, {10}, {1, 2})};
    int step = 0;
    for (StepKind const kind :
         {StepKind::Unknown, StepKind::Static, StepKind::Dynamic, StepKind::Frequency,
          StepKind::Buckle, StepKind::HeatTransfer, StepKind::Coupled, StepKind::SteadyState}) {
        ++step;
        Add({Sample(step, 1, 0.5, fields, kind), Sample(step, 2, 1.0, fields, kind)});
    }
    Reopen();
    KOVSrvLumenChecker checker(Document());
    checker.Check_Lumen();  // the mesh of this model lacks this and that
    int const before = checker.GetFindings().Size();
    checker.Check_Steps();
    for (KOVSimPosition const& at : Look().Steps()) {
        for (KOVSimPosition const& frame : ResultLook::Frames(at)) {
            KOVSimSet const made = frame.GetSet(schema::Frame_fields());
            EXPECT_EQ(made.Size(), 10);
            for (KOVSimSetiterator field = made.Begin(); field.NotDone(); ++field) {
                checker.Check_Field(*field, "step",
                                    tool::ToKOVString(ResultLook::TypeName(*field)));
            }
        }
    }
    for (int i = 0; i < checker.GetFindings().Size(); ++i) {
        std::string const finding = tool::Plain(checker.GetFindings()[i]);
        if (i >= before || finding.find("Step") != std::string::npos) ADD_FAILURE() << finding;
    }
}

TEST(ResultVariables, OneNumberForAVectorStandsUnderItsOwnName) {
    std::vector<tool::ResultTarget> const targets =
        tool::TargetsOf({"U", ResultPlace::Node, {"U"}});
    ASSERT_EQ(targets.size(), 1U);
    EXPECT_EQ(targets[0].name, "U");
    EXPECT_FALSE(targets[0].known);
    EXPECT_EQ(targets[0].algebraicType, zdm_Algebraic_SCALAR);
}

TEST(ResultVariables, EveryLabelOfTheMapFitsItsAlgebraicType) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    KOVSrvLumenChecker checker(document);
    int known = 0;
    for (int i = 0; KOVSrvVariableMap::GetEntry(i)->label != nullptr; ++i) {
        std::string const label = KOVSrvVariableMap::GetEntry(i)->label;
        std::vector<tool::ResultTarget> const targets =
            tool::TargetsOf({label, ResultPlace::Node, {label}});
        ASSERT_EQ(targets.size(), 1U);
        // One number for a whole vector or tensor is none of its components.
        EXPECT_EQ(targets[0].name,
                  targets[0].known ? tool::Plain(KOVSrvFieldServices::GetFieldType(label.c_str()))
                                   : label);
        known += targets[0].known ? 1 : 0;
        KOVSrvLumenChecker::Symbols symbols(1);
        symbols.Get(0) = targets[0].symbols[0];
        checker.Check_Component(label.c_str(), targets[0].algebraicType, symbols, {});
    }
    EXPECT_GT(known, 4000);
    for (KOVString const& finding : checker.GetFindings()) ADD_FAILURE() << tool::Plain(finding);
}

TEST_P(Results, LargeFieldsGoThroughInPieces) {
    constexpr int kNodes = 1000;
    std::vector<int> labels;
    for (int i = 0; i < kNodes; ++i) labels.push_back(1 + (i * 7) % 1009 + (i % 3) * 2000);
    Write([&] { LabelNodes(Document(), "", labels); });
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::vector<std::size_t> order(kNodes);
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::shuffle(order.begin(), order.end(), random);
    tool::ResultLabels byLabel(Document(), KOVObjLabelerNodes, "");
    for (int i = 0; i < kNodes; ++i)
        EXPECT_EQ(byLabel.Find(labels[static_cast<std::size_t>(i)]), i);
    EXPECT_EQ(byLabel.Find(0), -1);
    EXPECT_EQ(byLabel.Find(2147483647), -1);
    std::map<int, double> expected;
    tool::MadeFrame made;
    Write([&] {
        tool::ResultSteps steps(Document());
        made = steps.Append(Sample(1, 1, 1.0).frame);
        tool::ResultFieldWriter writer(Document(), made, {"NT", ResultPlace::Node, {"NT"}}, byLabel,
                                       /*values=*/64);
        for (std::size_t at = 0; at < order.size();) {
            tool::ResultBlock block;
            std::size_t const size = 1 + random() % 90;
            for (std::size_t i = 0; i < size && at < order.size(); ++i, ++at) {
                block.labels.push_back(labels[order[at]]);
                block.values.push_back(0.5 * static_cast<double>(order[at]));
                expected[static_cast<int>(order[at])] = block.values.back();
            }
            writer.Add(block, "s");
        }
        writer.Finish();
        EXPECT_EQ(writer.Rows(), kNodes);
    });
    Reopen();
    FieldValues values = ResultLook::Values(ResultLook::Field(FirstFrame(), "NT"));
    EXPECT_EQ(values[zdm_Component_C_SCALAR][0], expected);
    EXPECT_EQ(ResultLook::Drawers(ResultLook::Field(FirstFrame(), "NT")), (kNodes + 63) / 64);
}

TEST(ResultsAtPoints, EachPointAndElementTypeHasADrawer) {
    InMemory model(
        "*NODE\n1, 0, 0\n2, 1, 0\n3, 2, 0\n4, 0, 1\n"
        "*ELEMENT, TYPE=T3D2\n7, 1, 2\n8, 2, 3\n*ELEMENT, TYPE=S3\n5, 1, 2, 4\n"
        "*ELEMENT, TYPE=T3D2\n6, 3, 4\n");
    model.Translate();
    SampleField field;
    field.field = {"S", ResultPlace::IntegrationPoint, {"S11", "S22"}};
    tool::ResultBlock block;
    block.labels = {6, 5, 8};
    block.points = 2;
    block.values = {61, 62, 63, 64, 51, 52, 53, 54, 81, 82, 83, 84};
    field.blocks.push_back(block);
    block.labels = {7};
    block.points = 1;
    block.values = {71, 72};
    field.blocks.push_back(block);
    SampleSource source({Sample(1, 1, 1.0, {field})});
    ResultWriter writer(model.document, {});
    writer.Add(source);

    KOVSimPosition const frame = ResultLook::Frames(ResultLook(model.document).Steps().at(0)).at(0);
    KOVSimPosition const stress = ResultLook::Field(frame, "S0");
    EXPECT_EQ(KOVObjMeshedField(stress).GetGridType(), schema::Grid_IntegrationPoint());
    EXPECT_EQ(stress.GetSet(schema::Field_serialFields()).Size(), 2);
    EXPECT_EQ(ResultLook::Drawers(stress), 5);
    // Ordinals: 7 is 0, 8 is 1, 5 is 2, 6 is 3.
    FieldValues const expected = {
        {zdm_Component_C_11,
         {{1, {{3, 61}, {2, 51}, {1, 81}, {0, 71}}}, {2, {{3, 63}, {2, 53}, {1, 83}}}}},
        {zdm_Component_C_22,
         {{1, {{3, 62}, {2, 52}, {1, 82}, {0, 72}}}, {2, {{3, 64}, {2, 54}, {1, 84}}}}}};
    EXPECT_EQ(ResultLook::Values(stress), expected);
    for (KOVSimSetiterator at = stress.GetSet(schema::Field_serialFields()).Begin(); at.NotDone();
         ++at) {
        EXPECT_EQ(KOVSimCSet((*at).GetPosition(schema::SerialField_components())).Size(), 2);
    }
    EXPECT_EQ(writer.Summary().variables.at(0).values, 14);
    EXPECT_TRUE(writer.Summary().variables.at(0).targets.at(0).knownThere);
}

TEST(ResultsOfElements, HaveOneSerialFieldWithoutAPoint) {
    InMemory model("*NODE\n1, 0, 0\n2, 1, 0\n*ELEMENT, TYPE=T3D2\n7, 1, 2\n8, 2, 1\n");
    model.Translate();
    SampleField field;
    field.field = {"ELSE", ResultPlace::Element, {"ELSE"}};
    tool::ResultBlock block;
    block.labels = {8, 7};
    block.values = {8, 7};
    field.blocks.push_back(block);
    SampleSource source({Sample(1, 1, 1.0, {field})});
    ResultWriter(model.document, {}).Add(source);
    KOVSimPosition const frame = ResultLook::Frames(ResultLook(model.document).Steps().at(0)).at(0);
    KOVSimPosition const energy = ResultLook::Field(frame, "STRAIN_ENERGY");
    EXPECT_EQ(KOVObjMeshedField(energy).GetGridType(), schema::Grid_Element());
    FieldValues const expected = {{zdm_Component_C_SCALAR, {{0, {{0, 7}, {1, 8}}}}}};
    EXPECT_EQ(ResultLook::Values(energy), expected);
}

}  // namespace
}  // namespace kov::test
