#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "KOVSrvBasic.h"
#include "KOVSrvDiagnosticsHandler.h"
#include "services/MeshFixture.h"

namespace kov::test {
namespace {

using testing::ElementsAre;

class DiagnosticsHandler : public OnEachMedium {
  protected:
    using Single = omi_Singleton<KOVSrvDiagnosticsHandler>;

    DiagnosticsHandler() {
        auto const transaction = mesh.Write();
        for (char const* name : {"Step-1", "Schritt-\xc3\xa4"}) {
            Steps().Insert(name, mesh.document.CreateDataRecord(schema::Step_Gen()).Pos());
        }
        transaction->Commit();
        Handler().SetDocument(mesh.document);
    }
    ~DiagnosticsHandler() override { omi_SingletonBase<KOVSrvDiagnosticsHandler>::Finalize(); }

    static KOVSrvDiagnosticsHandler& Handler() { return *Single::Instance(); }
    void Reopen() {
        mesh.Reopen();
        Handler().SetDocument(mesh.document);
    }
    KOVSimMap Steps() const { return mesh.document.GetModel().GetMap(schema::Model_steps()); }
    std::vector<KOVSimPosition> Conditions(char const* step = "Step-1") const {
        return List(Steps().Find(step).GetVector(schema::Step_conditions()));
    }
    static std::vector<KOVSimPosition> Arguments(KOVSimPosition const& condition) {
        return List(condition.GetVector(schema::Condition_arguments()));
    }
    static std::vector<KOVSimPosition> List(KOVSimVector const& vector) {
        std::vector<KOVSimPosition> list;
        for (auto at = vector.Begin(); at.NotDone(); ++at) list.push_back(*at);
        return list;
    }
    void AddPlain(int code, bool flag = true) {
        Handler().AddWarningError(code, flag, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                                  nullptr, 0);
    }
    static int Int(KOVSimPosition const& record, int field) {
        int value = -77;
        record.GetDataRecord().GetInt(field, value);
        return value;
    }
    static int Symbol(KOVSimPosition const& record, int field) {
        int value = -77;
        record.GetDataRecord().GetSymb(field, value);
        return value;
    }
    int Status() const {
        return Int(mesh.document.Focus().GetPosition(schema::Focus_jobStatus()), 0);
    }
};
INSTANTIATE_TEST_SUITE_P(Media, DiagnosticsHandler, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(DiagnosticsHandler, StatusIsWrittenIntoTheDocument) {
    EXPECT_TRUE(mesh.document.GetResults().IsNull());
    Handler().SetJobStatus(4);
    Reopen();
    EXPECT_EQ(Status(), 4);
    EXPECT_TRUE(mesh.document.GetResults().IsA(schema::Results()));
    EXPECT_TRUE(
        mesh.document.Focus().GetPosition(schema::Focus_jobStatus()).IsA(schema::JobStatus()));
}

TEST_P(DiagnosticsHandler, SecondStatusOverwritesTheSameRecord) {
    Handler().SetJobStatus(4);
    KOVSimDynamicID const results = mesh.document.GetResults().ID();
    KOVSimDynamicID const status =
        mesh.document.Focus().GetPosition(schema::Focus_jobStatus()).ID();
    Handler().SetJobStatus(-1);
    EXPECT_EQ(mesh.document.GetResults().ID(), results);
    EXPECT_EQ(mesh.document.Focus().GetPosition(schema::Focus_jobStatus()).ID(), status);
    Reopen();
    EXPECT_EQ(Status(), -1);
}

TEST_P(DiagnosticsHandler, ConditionsStandOnTheStepOldestFirst) {
    Handler().BeginStep("Step-1");
    AddPlain(100, true);
    AddPlain(200, false);
    Reopen();
    std::vector<KOVSimPosition> const conditions = Conditions();
    ASSERT_EQ(conditions.size(), 2u);
    EXPECT_TRUE(conditions[0].IsA(schema::Condition()));
    EXPECT_EQ(Int(conditions[0], 2), 100);
    EXPECT_EQ(Int(conditions[1], 2), 200);
    EXPECT_TRUE(Conditions("Schritt-\xc3\xa4").empty());
}

TEST_P(DiagnosticsHandler, FlagTrueGivesSymbolZeroAndFalseThree) {
    Handler().BeginStep("Step-1");
    AddPlain(1, true);
    AddPlain(2, false);
    std::vector<KOVSimPosition> const conditions = Conditions();
    ASSERT_EQ(conditions.size(), 2u);
    EXPECT_EQ(Symbol(conditions[0], 0), 3);
    EXPECT_EQ(Symbol(conditions[0], 1), 0);
    EXPECT_EQ(Symbol(conditions[1], 0), 3);
    EXPECT_EQ(Symbol(conditions[1], 1), 3);
}

TEST_P(DiagnosticsHandler, ArgumentsStandAsIntsThenDoublesThenStrings) {
    Handler().BeginStep("Schritt-\xc3\xa4");
    int ints[] = {7, -8};
    double doubles[] = {0.5};
    std::string first = "kn\xc3\xb6tchen", second;
    char* strings[] = {first.data(), second.data()};
    int sets[] = {1, 2, 3};
    Handler().AddWarningError(9, true, ints, 2, doubles, 1, strings, 2, sets, 3, sets, 2);
    Reopen();
    ASSERT_EQ(Conditions("Schritt-\xc3\xa4").size(), 1u);
    std::vector<KOVSimPosition> const arguments = Arguments(Conditions("Schritt-\xc3\xa4")[0]);
    ASSERT_EQ(arguments.size(), 5u) << "arguments of sets are dropped";
    EXPECT_EQ(arguments[0].TypePosition(), schema::ConditionArgInt());
    EXPECT_EQ(arguments[1].TypePosition(), schema::ConditionArgInt());
    EXPECT_EQ(arguments[2].TypePosition(), schema::ConditionArgDouble());
    EXPECT_EQ(arguments[3].TypePosition(), schema::ConditionArgString());
    EXPECT_EQ(arguments[4].TypePosition(), schema::ConditionArgString());
    EXPECT_EQ(Int(arguments[0], 0), 7);
    EXPECT_EQ(Int(arguments[1], 0), -8);
    double real = 0;
    arguments[2].GetDataRecord().GetDouble(0, real);
    EXPECT_EQ(real, 0.5);
    EXPECT_EQ(arguments[3].GetDataRecord().ReturnString(0), first.c_str());
    EXPECT_EQ(arguments[4].GetDataRecord().ReturnString(0), "");
}

TEST_P(DiagnosticsHandler, ConditionWithoutArgumentsHasAnEmptyVector) {
    Handler().BeginStep("Step-1");
    AddPlain(1);
    Reopen();
    ASSERT_EQ(Conditions().size(), 1u);
    EXPECT_TRUE(Arguments(Conditions()[0]).empty());
}

TEST_P(DiagnosticsHandler, NegativeCountsActAsZero) {
    Handler().BeginStep("Step-1");
    Handler().AddWarningError(1, true, nullptr, -1, nullptr, -5, nullptr, -2, nullptr, -1, nullptr,
                              -1);
    ASSERT_EQ(Conditions().size(), 1u);
    EXPECT_TRUE(Arguments(Conditions()[0]).empty());
}

TEST_P(DiagnosticsHandler, ArraysOfSetsAreNeverRead) {
    Handler().BeginStep("Step-1");
    Handler().AddWarningError(1, true, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 1000000,
                              nullptr, 1000000);
    ASSERT_EQ(Conditions().size(), 1u);
    EXPECT_TRUE(Arguments(Conditions()[0]).empty());
}

TEST_P(DiagnosticsHandler, ArgumentPartsWorkInsideATransactionOfTheCallers) {
    auto const transaction = mesh.Write();
    KOVSimPosition const condition = mesh.document.CreateDataRecord(schema::Condition()).Pos();
    KOVSimVector vector = condition.GetVector(schema::Condition_arguments());
    int ints[] = {1, 2, 3};
    Handler().AddConditionIntArgs(vector, ints, 3);
    Handler().AddConditionElSetArgs(vector, nullptr, 4);
    Handler().AddConditionNodeSetArgs(vector, nullptr, 4);
    EXPECT_EQ(vector.Size(), 3);
    transaction->Commit();
}

TEST_P(DiagnosticsHandler, ArgumentPartsOutsideATransactionAreRefused) {
    KOVSimVector vector = mesh.document.Focus().GetVector(schema::Condition_arguments());
    int ints[] = {1};
    EXPECT_THROW(Handler().AddConditionIntArgs(vector, ints, 1), KOVSimException);
}

TEST_P(DiagnosticsHandler, ConditionWithoutAStepIsRefusedAndLeavesNothing) {
    EXPECT_THROW(AddPlain(1), KOVSimException);
    Handler().BeginStep("no such step");
    EXPECT_THROW(AddPlain(1), KOVSimException);
    Handler().BeginStep("Step-1");
    AddPlain(2);
    Handler().EndStep();
    EXPECT_THROW(AddPlain(3), KOVSimException);
    Reopen();
    ASSERT_EQ(Conditions().size(), 1u);
    EXPECT_EQ(Int(Conditions()[0], 2), 2);
}

TEST_P(DiagnosticsHandler, OpenTransactionOfTheCallersRefusesAnother) {
    Handler().BeginStep("Step-1");
    auto const transaction = mesh.Write();
    EXPECT_THROW(AddPlain(1), KOVSimException);
    EXPECT_THROW(Handler().SetJobStatus(1), KOVSimException);
}

TEST_P(DiagnosticsHandler, ClosedDocumentMakesWritingNothing) {
    Handler().BeginStep("Step-1");
    mesh.document.Close();
    EXPECT_NO_THROW({
        Handler().SetJobStatus(1);
        Handler().BeginStep("no such step");
        AddPlain(1);
        Handler().EndStep();
    });
    if (GetParam() == Medium::Memory) return;
    mesh.Reopen();
    EXPECT_TRUE(mesh.document.GetResults().IsNull());
    EXPECT_TRUE(Conditions().empty());
}

TEST_P(DiagnosticsHandler, TakingTheModulesDownLeavesItsDocumentAndStep) {
    Handler().BeginStep("Step-1");
    int count = 0;
    for (int round = 0; round < 2; ++round) {
        KOVSrvBasic_initialize(count);
        AddPlain(round);
        KOVSrvBasic_finalize(count);
    }
    AddPlain(2);
    Handler().SetJobStatus(6);
    EXPECT_EQ(Conditions().size(), 3u);
    EXPECT_EQ(Status(), 6);
}

TEST_P(DiagnosticsHandler, NullTextsCountAsEmptyOnes) {
    Handler().BeginStep("Step-1");
    char* strings[] = {nullptr};
    Handler().AddWarningError(1, true, nullptr, 0, nullptr, 0, strings, 1, nullptr, 0, nullptr, 0);
    ASSERT_EQ(Conditions().size(), 1u);
    ASSERT_EQ(Arguments(Conditions()[0]).size(), 1u);
    EXPECT_EQ(Arguments(Conditions()[0])[0].GetDataRecord().ReturnString(0), "");
    Handler().BeginStep(nullptr);
    EXPECT_THROW(AddPlain(1), KOVSimException) << "no step has an empty name";
}

// The current step stays that of the document it was found in.
TEST_P(DiagnosticsHandler, StepOfAnotherDocumentIsRefused) {
    Handler().BeginStep("Step-1");
    MeshDocument other(GetParam());
    Handler().SetDocument(other.document);
    EXPECT_THROW(AddPlain(1), KOVSimException);
    EXPECT_TRUE(Conditions().empty());
    Handler().SetDocument(mesh.document);
    AddPlain(2);
    EXPECT_EQ(Conditions().size(), 1u);
}

TEST_P(DiagnosticsHandler, ClosedDocumentLeavesTheCurrentStep) {
    Handler().BeginStep("Step-1");
    KOVObjDocument none;
    Handler().SetDocument(none);
    Handler().BeginStep("no such step");
    Handler().SetDocument(mesh.document);
    AddPlain(5);
    EXPECT_EQ(Conditions().size(), 1u);
}

TEST_P(DiagnosticsHandler, HandlerKeepsTheDocumentAliveUntilItTakesAnother) {
    KOVObjDocument other = KOVObjDocument::CreateInMemory();
    KOVSimPosition const focus = other.Focus();
    Handler().SetDocument(other);
    Handler().SetDocument(other);
    other = KOVObjDocument();
    Handler().SetJobStatus(8);
    EXPECT_EQ(Int(focus.GetPosition(schema::Focus_jobStatus()), 0), 8);
    Handler().SetDocument(mesh.document);
    EXPECT_THROW(focus.GetPosition(schema::Focus_jobStatus()), KOVSimException);
}

TEST_P(DiagnosticsHandler, WithoutTracingNothingIsPrinted) {
    testing::internal::CaptureStdout();
    Handler().SetJobStatus(1);
    Handler().BeginStep("Step-1");
    Handler().BeginIncrement(1, 0.1);
    Handler().BeginAttempt(0.1);
    Handler().BeginIteration();
    Handler().BeginContactIteration();
    Handler().EndContactIteration();
    Handler().EndIteration();
    Handler().EndAttempt();
    Handler().EndIncrement(0.1);
    AddPlain(1);
    Handler().EndStep();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(DiagnosticsSingleton, InstanceIsOneObjectUntilItIsFinalized) {
    using Base = omi_SingletonBase<KOVSrvDiagnosticsHandler>;
    EXPECT_EQ(Base::Instance(), nullptr);
    KOVSrvDiagnosticsHandler* const handler = omi_Singleton<KOVSrvDiagnosticsHandler>::Instance();
    EXPECT_EQ(omi_Singleton<KOVSrvDiagnosticsHandler>::Instance(), handler);
    EXPECT_EQ(Base::Instance(), handler);
    int count = 0;
    KOVSrvBasic_initialize(count);
    KOVSrvBasic_finalize(count);
    EXPECT_EQ(Base::Instance(), handler) << "taking the modules down leaves it";
    Base::Finalize();
    EXPECT_EQ(Base::Instance(), nullptr);
}

TEST(DiagnosticsSingleton, ReadOnlyDocumentRefusesTheStatus) {
    MeshDocument mesh(Medium::Disk);
    mesh.Reopen(KOVObjDocument::ReadOnly);
    KOVSrvDiagnosticsHandler& handler = *omi_Singleton<KOVSrvDiagnosticsHandler>::Instance();
    handler.SetDocument(mesh.document);
    EXPECT_THROW(handler.SetJobStatus(1), KOVSimException);
    omi_SingletonBase<KOVSrvDiagnosticsHandler>::Finalize();
}

TEST(DiagnosticsSingleton, HandlerWithoutADocumentWritesNothing) {
    KOVSrvDiagnosticsHandler& handler = *omi_Singleton<KOVSrvDiagnosticsHandler>::Instance();
    EXPECT_NO_THROW({
        handler.SetJobStatus(1);
        handler.BeginStep("Step-1");
        handler.AddWarningError(1, true, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr,
                                0);
    });
    omi_SingletonBase<KOVSrvDiagnosticsHandler>::Finalize();
}

// A handler with tracing on, and its counters to be seen.
class Traced : public KOVSrvDiagnosticsHandler {
  public:
    Traced() { m_trace = true; }
    ~Traced() { omi_SingletonBase<KOVSrvDiagnosticsHandler>::instance = nullptr; }
    int Attempt() const { return m_attempt; }
    int Iteration() const { return m_iteration; }
    template <class Calls>
    std::string Printed(Calls calls) {
        testing::internal::CaptureStdout();
        calls(*this);
        return testing::internal::GetCapturedStdout();
    }
};

TEST(DiagnosticsRhythm, AttemptsAreCountedWithinTheIncrement) {
    Traced handler;
    EXPECT_EQ(handler.Printed([](auto& h) {
        h.BeginIncrement(12, 0.5);
        h.BeginAttempt(0.5);
        h.BeginAttempt(0.25);
        h.EndIncrement(0.25);
        h.BeginAttempt(0.25);
    }),
              "BeginIncrement 12\nBeginAttempt 1\nBeginAttempt 2\nEndIncrement\nBeginAttempt 1\n");
}

TEST(DiagnosticsRhythm, IterationsAreCountedWithinTheAttempt) {
    Traced handler;
    EXPECT_EQ(handler.Printed([](auto& h) {
        h.BeginIteration();
        h.EndIteration();
        h.BeginIteration();
        h.EndAttempt();
        h.BeginIteration();
    }),
              "BeginIteration 1\nEndIteration\nBeginIteration 2\nEndAttempt\nBeginIteration 1\n");
}

TEST(DiagnosticsRhythm, OtherEndsLeaveTheCounters) {
    Traced handler;
    handler.Printed([](auto& h) {
        h.BeginAttempt(0);
        h.BeginIteration();
        h.BeginIncrement(3, 0);
        h.EndIteration();
        h.EndStep();
    });
    EXPECT_EQ(handler.Attempt(), 1);
    EXPECT_EQ(handler.Iteration(), 1);
    handler.Printed([](auto& h) { h.EndAttempt(); });
    EXPECT_EQ(handler.Attempt(), 1);
    EXPECT_EQ(handler.Iteration(), 0);
    handler.Printed([](auto& h) {
        h.BeginIteration();
        h.EndIncrement(0);
    });
    EXPECT_EQ(handler.Attempt(), 0);
    EXPECT_EQ(handler.Iteration(), 1);
}

TEST(DiagnosticsRhythm, StepsAndContactIterationsPrintNothing) {
    Traced handler;
    EXPECT_EQ(handler.Printed([](auto& h) {
        h.BeginStep("Step-1");
        h.BeginContactIteration();
        h.EndContactIteration();
        h.EndStep();
    }),
              "");
}

}  // namespace
}  // namespace kov::test
