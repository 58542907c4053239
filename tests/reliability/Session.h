// Session: the scripted session that all harnesses of this folder share. Transaction number n
// writes content that follows from n alone: records with fields of each kind, links of all four
// kinds, named sets, coordinates and connectivity in growing drawers, overwrites of parts, labels,
// datasets, function tables, small and large blocks. The checker is given any document, finds at
// which n it stands, and compares everything that is there with what transactions 1..n wrote,
// counts of objects included, so that nothing of n+1 can be left either.
//
// Only the public headers are used. A Session is cheap to make; one process may hold any number.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "reliability/SessionPlan.h"

namespace reliability {

/// A document does not hold what was written: the one thing that no fault may lead to.
class Mismatch : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class Session {
  public:
    explicit Session(Scale const& scale);
    ~Session();

    /// Opens a transaction, writes transaction `n` of the session, and commits. The document has to
    /// stand at n - 1. Within the transaction parts of it are read back.
    void Write(KOVObjDocument const& document, int n);
    /// The same without the transaction, which is the caller's.
    void WriteOpen(KOVObjDocument const& document, int n);

    /// Answers at which n the document stands, after everything in it was compared. Throws Mismatch
    /// where it differs, and what the document itself throws.
    int Check(KOVObjDocument const& document);
    /// Only the number, compared with nothing.
    static int Stand(KOVObjDocument const& document);

    /// The state after transaction `n`.
    State const& At(int n);

  private:
    using Counts = std::vector<long long>;

    void CheckRecords(KOVObjDocument const& document, State const& state);
    void CheckLinks(KOVObjDocument const& document, State const& state);
    void CheckSets(KOVObjDocument const& document, State const& state);
    void CheckCoordinates(KOVObjDocument const& document, State const& state);
    void CheckConnectivity(KOVObjDocument const& document, State const& state);
    void CheckLabels(KOVObjDocument const& document, State const& state);
    void CheckRelations(KOVObjDocument const& document, State const& state);
    void CheckCounts(KOVObjDocument const& document, State const& state);
    static Counts CountsOf(KOVObjDocument const& document);

    Scale m_scale;
    State m_state;
    // A document in memory into which the same transactions are written: for the counts.
    std::unique_ptr<Session> m_twinWriter;
    KOVObjDocument m_twin;
    std::vector<Counts> m_counts;
};

/// The root record of the session, null before transaction 1.
KOVSimPosition RootOf(KOVObjDocument const& document);

/// Calls `make` and answers the text of the exception that it threw; "" if it threw none.
template <class F>
std::string TextThrown(F const& make) {
    try {
        make();
    } catch (KOVBasException const& e) {
        return *e.what() ? e.what() : "(an exception without a text)";
    }
    return {};
}

}  // namespace reliability
