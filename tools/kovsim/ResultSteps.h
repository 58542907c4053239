// ResultSteps: the steps of a document as results are added to it: their frames, and the times,
// frequencies and modes of these.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "ResultSource.h"

namespace kov::tool {

/// A frame that was made, and its step.
struct MadeFrame {
    KOVSimPosition step;
    KOVSimPosition frame;
};

class ResultSteps {
  public:
    explicit ResultSteps(KOVObjDocument const& document);

    /// True if the document has the frame already. Throws ResultFault if it has that increment with
    /// another value, and where the step cannot be what the file says.
    bool Has(ResultFrame const& frame);
    /// Appends a frame, and makes the step if it is not there; in a transaction.
    MadeFrame Append(ResultFrame const& frame);
    /// Notes a frame that was appended, once it is committed.
    void Keep(ResultFrame const& frame, MadeFrame const& made);
    /// The document's frame of that increment; Has was true for it.
    KOVSimPosition Frame(ResultFrame const& frame);

    int StepsMade() const { return m_made; }

  private:
    struct Known {
        double value;
        KOVSimPosition frame;
    };
    using Frames = std::map<int, Known>;  // by increment

    KOVSimPosition Step(int number) const;
    KOVSimPosition MakeStep(StepKind kind);
    Frames& FramesOf(int step);

    KOVObjDocument m_document;
    std::map<int, Frames> m_known;  ///< by number of the step
    int m_made = 0;                 ///< steps, over all transactions that were committed
    int m_making = 0;
};

}  // namespace kov::tool
