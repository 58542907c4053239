#include "ResultSteps.h"

#include <cmath>

#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimVector.h"
#include "Names.h"
#include "ObjectContent.h"
#include "ResultRecords.h"
#include "ResultSeries.h"
#include "ResultVariables.h"

namespace kov::tool {
namespace {

constexpr double kTwoPi = 6.283185307179586476925286766559;
// Numbers of steps in a file that is damaged must not make millions of steps.
constexpr int kMostMissing = 1000;

struct KindOfStep {
    StepKind kind;
    int (*type)();
    FrameValue value;
    char const* text;
};

constexpr KindOfStep kKinds[] = {
    {StepKind::Unknown, schema::Step_Gen, FrameValue::Time, "a general step"},
    {StepKind::Static, schema::Step_Gen_Static, FrameValue::Time, "a static step"},
    {StepKind::Dynamic, schema::Step_Gen_DynamicImplicit, FrameValue::Time, "a dynamic step"},
    {StepKind::Frequency, schema::Step_Lin_Frequency, FrameValue::Frequency, "a frequency step"},
    {StepKind::Buckle, schema::Step_Lin_Buckle, FrameValue::LoadFactor, "a buckling step"},
    {StepKind::HeatTransfer, schema::Step_Gen_HeatTransfer, FrameValue::Time,
     "a heat transfer step"},
    {StepKind::Coupled, schema::Step_Gen_CoupledTempDisplacement, FrameValue::Time,
     "a coupled step"},
    {StepKind::SteadyState, schema::Step_Lin_SteadyState, FrameValue::Frequency,
     "a steady-state step"},
};

KindOfStep const& KindOf(StepKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

bool Same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// Only what oscillates or buckles has an eigenvalue: not the state that a buckling step begins at.
bool IsMode(ResultFrame const& frame, KOVSimPosition const& step) {
    if (FrameValueOf(step) == FrameValue::LoadFactor) return frame.increment > 0;
    return step.IsA(schema::Step_Lin_Frequency()) || step.IsA(schema::Step_Lin_ComplexFrequency());
}

}  // namespace

ResultSteps::ResultSteps(KOVObjDocument const& document) : m_document(document) {}

KOVSimPosition ResultSteps::Step(int number) const {
    int at = 0;
    KOVSimVector const steps = m_document.GetModel().GetVector(schema::Model_stepSequence());
    for (KOVSimVectoriterator step = steps.Begin(); step.NotDone(); ++step) {
        if (++at == number) return *step;
    }
    return {};
}

ResultSteps::Frames& ResultSteps::FramesOf(int step) {
    auto const at = m_known.find(step);
    if (at != m_known.end()) return at->second;
    Frames& known = m_known[step];
    KOVSimVector const frames = Step(step).GetVector(schema::Task_frames());
    for (KOVSimVectoriterator frame = frames.Begin(); frame.NotDone(); ++frame) {
        int increment = 0;
        double value = 0.0;
        KOVSimDataRecord const record = (*frame).GetDataRecord();
        record.GetInt(kFrameIncrement, increment);
        record.GetDouble(kFrameValue, value);
        known.emplace(increment, Known{value, *frame});
    }
    return known;
}

KOVSimPosition ResultSteps::Frame(ResultFrame const& frame) {
    return FramesOf(frame.step).at(frame.increment).frame;
}

bool ResultSteps::Has(ResultFrame const& frame) {
    std::string const name = "step " + std::to_string(frame.step);
    int const steps = m_document.GetModel().GetVector(schema::Model_stepSequence()).Size();
    if (frame.step < 1 || frame.step - kMostMissing > steps) {
        throw ResultFault(name + " comes where the model has " + CountText(steps, "step"));
    }
    KOVSimPosition const step = Step(frame.step);
    if (!step.IsNull() && frame.kind != StepKind::Unknown &&
        FrameValueOf(step) != KindOf(frame.kind).value) {
        throw ResultFault(name + " is " + KindOf(frame.kind).text + ", and '" +
                          Shown(Plain(step.Name(-1))) + "' of the model has " +
                          FrameValuesName(FrameValueOf(step)));
    }
    Frames const& known = FramesOf(frame.step);
    auto const there = known.find(frame.increment);
    if (there == known.end()) return false;
    if (Same(there->second.value, frame.value)) return true;
    throw ResultFault(name + ", increment " + std::to_string(frame.increment) +
                      " is in the document with the value " + NumberText(there->second.value) +
                      ", not " + NumberText(frame.value) + ": the results are of another run");
}

KOVSimPosition ResultSteps::MakeStep(StepKind kind) {
    KOVSimPosition const model = m_document.GetModel();
    KOVSimVector const sequence = model.GetVector(schema::Model_stepSequence());
    KOVSimMap const steps = model.GetMap(schema::Model_steps());
    std::string name = "Step-" + std::to_string(sequence.Size() + 1);
    while (!steps.Find(ToKOVString(name)).IsNull()) name += "-2";
    KOVSimPosition const step = m_document.CreateDataRecord(KindOf(kind).type()).Pos();
    step.SetName(ToKOVString(name));
    sequence.PushBack(step);
    steps.Insert(ToKOVString(name), step);
    m_document.Focus().GetSet(schema::Focus_externalTaskIds()).Insert(step);
    ++m_making;
    return step;
}

MadeFrame ResultSteps::Append(ResultFrame const& frame) {
    m_making = 0;
    int steps = m_document.GetModel().GetVector(schema::Model_stepSequence()).Size();
    MadeFrame made;
    made.step = Step(frame.step);
    while (steps < frame.step) {
        made.step = MakeStep(++steps == frame.step ? frame.kind : StepKind::Unknown);
    }
    KOVSimDataRecord const record = m_document.CreateDataRecord(schema::Frame());
    record.SetInt(kFrameIncrement, frame.increment);
    record.SetDouble(kFrameValue, frame.value);
    record.SetDouble(kFrameTotalTime, frame.totalTime);
    if (!frame.text.empty()) record.SetString(kFrameText, ToKOVString(frame.text));
    made.frame = record.Pos();
    made.step.GetVector(schema::Task_frames()).PushBack(made.frame);

    FrameValue const value = FrameValueOf(made.step);
    if (value == FrameValue::Time) AppendTime(made.step, frame.value);
    if (value == FrameValue::Frequency) AppendFrequency(made.step, frame.value);
    if (IsMode(frame, made.step)) {
        double const angular = kTwoPi * frame.value;
        AppendMode(made.step, value == FrameValue::Frequency ? angular * angular : frame.value);
    }
    return made;
}

void ResultSteps::Keep(ResultFrame const& frame, MadeFrame const& made) {
    FramesOf(frame.step).emplace(frame.increment, Known{frame.value, made.frame});
    m_made += m_making;
    m_making = 0;
}

}  // namespace kov::tool
