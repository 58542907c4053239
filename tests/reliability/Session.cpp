#include "reliability/Session.h"

#include "KOVSimDataRecord.h"

namespace reliability {

Session::Session(Scale const& scale) : m_scale(scale) {}

Session::~Session() {
    if (m_twinWriter) m_twin.Close();
}

State const& Session::At(int n) {
    if (m_state.n > n) m_state = State();
    while (m_state.n < n) m_state.Advance(m_scale);
    return m_state;
}

int Session::Stand(KOVObjDocument const& document) {
    KOVSimPosition const root = RootOf(document);
    int n = root.IsNull() ? 0 : -1;
    if (n < 0) root.GetDataRecord().GetInt(0, n);
    if (n < 0) throw Mismatch("the root record has no number of a transaction");
    return n;
}

int Session::Check(KOVObjDocument const& document) {
    int const n = Stand(document);
    // A damaged number would have the model grow without end.
    if (n > 1000000) throw Mismatch("the document stands at " + std::to_string(n));
    State const& state = At(n);
    CheckCounts(document, state);
    if (n == 0) return 0;
    CheckRecords(document, state);
    CheckLinks(document, state);
    CheckSets(document, state);
    CheckCoordinates(document, state);
    CheckConnectivity(document, state);
    CheckLabels(document, state);
    CheckRelations(document, state);
    return n;
}

Session::Counts Session::CountsOf(KOVObjDocument const& document) {
    KOVObjDocumentStatistics const all = document.Statistics();
    return {all.records,  all.collections, all.sets,  all.distributions, all.drawers,
            all.datasets, all.tables,      all.links, all.commits};
}

void Session::CheckCounts(KOVObjDocument const& document, State const& state) {
    static char const* const names[] = {"records",       "collections", "sets",
                                        "distributions", "drawers",     "datasets",
                                        "tables",        "links",       "commits"};
    if (!m_twinWriter) {
        m_twinWriter = std::make_unique<Session>(m_scale);
        m_twin = KOVObjDocument::CreateInMemory();
        m_counts.push_back(CountsOf(m_twin));
    }
    while (static_cast<int>(m_counts.size()) <= state.n) {
        m_twinWriter->Write(m_twin, static_cast<int>(m_counts.size()));
        m_counts.push_back(CountsOf(m_twin));
    }
    Counts const found = CountsOf(document);
    Counts const& expected = m_counts[static_cast<std::size_t>(state.n)];
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (found[i] == expected[i]) continue;
        throw Mismatch("at transaction " + std::to_string(state.n) + " there are " +
                       std::to_string(found[i]) + " " + names[i] + " and not " +
                       std::to_string(expected[i]));
    }
    if (found.back() != state.n + 1)
        throw Mismatch("the document counts " + std::to_string(found.back()) + " commits");
}

}  // namespace reliability
