#include "KOVSrvDiagnosticsHandler.h"

#include "KOVObjModel.h"
#include "KOVSimDataRecord.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "KOVString.h"
#include "zio_ostream.h"

namespace {

// Symbols of a condition's fields 0 and 1.
constexpr int kConditionKind = 3;
constexpr int kFlagSet = 0;
constexpr int kFlagNotSet = 3;

zio_ostream& endl(zio_ostream& stream) {
    stream.put('\n');
    stream.flush();
    return stream;
}

KOVString FromUTF8(char const* text) {
    KOVString string;
    string.BuildFromUTF8(text);
    return string;
}

}  // namespace

KOVSrvDiagnosticsHandler::KOVSrvDiagnosticsHandler() = default;
KOVSrvDiagnosticsHandler::~KOVSrvDiagnosticsHandler() = default;

void KOVSrvDiagnosticsHandler::SetDocument(KOVObjDocument& document) { m_document = document; }

void KOVSrvDiagnosticsHandler::SetJobStatus(int status) {
    if (m_document.IsClosed()) return;
    KOVSimTransaction transaction(m_document.ContextID());
    if (m_document.GetResults().IsNull()) {
        m_document.SetResults(m_document.CreateDataRecord(schema::Results()).Pos());
    }
    KOVSimPosition const focus = m_document.Focus();
    KOVSimPosition jobStatus = focus.GetPosition(schema::Focus_jobStatus());
    if (jobStatus.IsNull()) {
        jobStatus = m_document.CreateDataRecord(schema::JobStatus()).Pos();
        focus.SetPosition(schema::Focus_jobStatus(), jobStatus);
    }
    jobStatus.GetDataRecord().SetInt(0, status);
    transaction.Commit();
}

void KOVSrvDiagnosticsHandler::BeginStep(char const* name) {
    if (m_document.IsClosed()) return;
    m_step = KOVObjModel(m_document.GetModel()).GetStep(FromUTF8(name));
}

void KOVSrvDiagnosticsHandler::EndStep() { m_step = KOVSimPosition(); }

void KOVSrvDiagnosticsHandler::BeginIncrement(int number, double) {
    if (m_trace) endl(zio_cout.print("BeginIncrement ").print_int(number));
}

void KOVSrvDiagnosticsHandler::EndIncrement(double) {
    m_attempt = 0;
    if (m_trace) endl(zio_cout.print("EndIncrement"));
}

void KOVSrvDiagnosticsHandler::BeginAttempt(double) {
    ++m_attempt;
    if (m_trace) endl(zio_cout.print("BeginAttempt ").print_int(m_attempt));
}

void KOVSrvDiagnosticsHandler::EndAttempt() {
    m_iteration = 0;
    if (m_trace) endl(zio_cout.print("EndAttempt"));
}

void KOVSrvDiagnosticsHandler::BeginIteration() {
    ++m_iteration;
    if (m_trace) endl(zio_cout.print("BeginIteration ").print_int(m_iteration));
}

void KOVSrvDiagnosticsHandler::EndIteration() {
    if (m_trace) endl(zio_cout.print("EndIteration"));
}

void KOVSrvDiagnosticsHandler::BeginContactIteration() {}
void KOVSrvDiagnosticsHandler::EndContactIteration() {}

void KOVSrvDiagnosticsHandler::AddWarningError(int code, bool flag, int* ints, int nInts,
                                               double* doubles, int nDoubles, char** strings,
                                               int nStrings, int* elementSets, int nElementSets,
                                               int* nodeSets, int nNodeSets) {
    if (m_document.IsClosed()) return;
    KOVSimTransaction transaction(m_document.ContextID());
    KOVSimDataRecord const condition = m_document.CreateDataRecord(schema::Condition());
    condition.SetInt(2, code);
    condition.SetSymb(0, kConditionKind);
    condition.SetSymb(1, flag ? kFlagSet : kFlagNotSet);
    KOVSimPosition const position = condition.Pos();
    m_step.GetVector(schema::Step_conditions()).PushBack(position);
    KOVSimVector arguments = position.GetVector(schema::Condition_arguments());
    AddConditionIntArgs(arguments, ints, nInts);
    AddConditionDoubleArgs(arguments, doubles, nDoubles);
    AddConditionStringArgs(arguments, strings, nStrings);
    AddConditionElSetArgs(arguments, elementSets, nElementSets);
    AddConditionNodeSetArgs(arguments, nodeSets, nNodeSets);
    transaction.Commit();
}

void KOVSrvDiagnosticsHandler::AddConditionIntArgs(KOVSimVector& vector, int* values, int n) {
    for (int i = 0; i < n; ++i) {
        KOVSimDataRecord const record = m_document.CreateDataRecord(schema::ConditionArgInt());
        record.SetInt(0, values[i]);
        vector.PushBack(record.Pos());
    }
}

void KOVSrvDiagnosticsHandler::AddConditionDoubleArgs(KOVSimVector& vector, double* values, int n) {
    for (int i = 0; i < n; ++i) {
        KOVSimDataRecord const record = m_document.CreateDataRecord(schema::ConditionArgDouble());
        record.SetDouble(0, values[i]);
        vector.PushBack(record.Pos());
    }
}

void KOVSrvDiagnosticsHandler::AddConditionStringArgs(KOVSimVector& vector, char** values, int n) {
    for (int i = 0; i < n; ++i) {
        KOVSimDataRecord const record = m_document.CreateDataRecord(schema::ConditionArgString());
        record.SetString(0, FromUTF8(values[i]));
        vector.PushBack(record.Pos());
    }
}

void KOVSrvDiagnosticsHandler::AddConditionElSetArgs(KOVSimVector&, int*, int) {}
void KOVSrvDiagnosticsHandler::AddConditionNodeSetArgs(KOVSimVector&, int*, int) {}
