// KOVSrvDiagnosticsHandler: the process-wide recorder through which a running job tells its
// document how it is doing: status, current step, warnings and errors with their arguments.
//
// Called in the rhythm of the solver: step, increment, attempt, iteration. Only what must last is
// written, each time in a transaction of its own; the rhythm calls merely count. A closed document
// turns all writing into nothing. The order of calls is not checked. One thread at a time.
#pragma once

#include "KOVExport.h"
#include "KOVObjDocument.h"
#include "KOVSimDatabase.h"
#include "KOVSimPosition.h"
#include "KOVSimVector.h"
#include "omi_Singleton.h"

class KOV_EXPORT KOVSrvDiagnosticsHandler : public omi_Singleton<KOVSrvDiagnosticsHandler> {
  public:
    KOVSrvDiagnosticsHandler();
    ~KOVSrvDiagnosticsHandler();

    /// Shares the document's database, and keeps it alive; an earlier one is let go.
    void SetDocument(KOVObjDocument& document);
    /// Writes the job's status; the number means what the job wants it to mean.
    void SetJobStatus(int status);

    /// Makes the model's step of that name (UTF-8) the current one; a null step if there is none.
    void BeginStep(char const* name);
    /// There is no current step from now on.
    void EndStep();

    /// The rhythm. Attempts are counted within the increment, iterations within the attempt.
    void BeginIncrement(int number, double time);
    void EndIncrement(double time);
    void BeginAttempt(double time);
    void EndAttempt();
    void BeginIteration();
    void EndIteration();
    /// Nothing.
    void BeginContactIteration();
    void EndContactIteration();

    /// Records one condition on the current step, with its arguments: all ints, then all doubles,
    /// then all strings (UTF-8), each as a record of its own. Counts below 1 mean none. Sets of
    /// elements and of nodes are accepted and dropped, their arrays never read. Throws
    /// KOVSimException, and records nothing, if there is no current step.
    void AddWarningError(int code, bool flag, int* ints, int nInts, double* doubles, int nDoubles,
                         char** strings, int nStrings, int* elementSets, int nElementSets,
                         int* nodeSets, int nNodeSets);

    /// Parts of AddWarningError: they append argument records to `vector`, in a transaction of the
    /// caller's.
    void AddConditionIntArgs(KOVSimVector& vector, int* values, int n);
    void AddConditionDoubleArgs(KOVSimVector& vector, double* values, int n);
    void AddConditionStringArgs(KOVSimVector& vector, char** values, int n);
    void AddConditionElSetArgs(KOVSimVector& vector, int* values, int n);
    void AddConditionNodeSetArgs(KOVSimVector& vector, int* values, int n);

  protected:
    KOVSimDatabase m_database;
    KOVSimPosition m_step;
    /// Room for the records of increments and below, which are not kept.
    KOVSimPosition m_increment;
    KOVSimPosition m_attemptRecord;
    KOVSimPosition m_iterationRecord;
    KOVSimPosition m_contactIteration;
    int m_attempt = 0;
    int m_iteration = 0;
    /// Prints a line for each rhythm call.
    bool m_trace = false;
    KOVObjDocument m_document;
};
