// ResultWriter: brings what a source of results gives into an open document, frame by frame, each
// in a transaction of its own, so that readers see each frame as soon as it is there, and whole.
// docs/documents.md, "Steps and results", tells what stands where.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "KOVObjDocument.h"
#include "ResultFields.h"
#include "ResultLabels.h"
#include "ResultSource.h"
#include "ResultSteps.h"

namespace kov::tool {

struct ResultOptions {
    std::optional<std::string> instance;  ///< whose labels the files name; none: the only one
    bool skipUnknown = false;             ///< leaves rows out whose labels the model does not have
    bool growing = false;                 ///< a file that ends within a frame is no error
    std::function<void(double done)> progress;
};

/// What was written of one variable of the files.
struct ResultVariable {
    std::string label;  ///< as the files have it
    ResultPlace place = ResultPlace::Node;
    std::vector<ResultTarget> targets;
    int fields = 0;         ///< in how many frames
    long long values = 0;   ///< numbers
    long long skipped = 0;  ///< rows whose labels the model does not have
    std::vector<int> firstSkipped;
};

struct ResultSummary {
    int framesAdded = 0;
    int framesThere = 0;  ///< that the document had already
    int stepsMade = 0;
    std::vector<ResultVariable> variables;  ///< in the order in which they came
    std::vector<std::string> notes;         ///< of the sources
};

class ResultWriter {
  public:
    /// Throws DocumentFault for a document without a mesh, and for labels that are not clear.
    ResultWriter(KOVObjDocument const& document, ResultOptions options);

    /// Adds all frames that the document does not have. Whatever it throws, the document holds
    /// whole frames only, those of Summary().framesAdded among them.
    void Add(ResultSource& source);

    ResultSummary const& Summary() const { return m_summary; }

  private:
    using Variables = std::vector<ResultVariable>;

    bool HasFrame(ResultSource const& source, ResultFrame const& frame);
    void NotePassedOver(ResultSource& source, KOVSimPosition const& frame);
    void AddFrame(ResultSource& source, ResultFrame const& frame);
    void AddField(ResultSource& source, MadeFrame const& made, ResultField const& field,
                  Variables& variables);
    ResultLabels& LabelsOf(ResultPlace place);
    void Count(Variables const& variables);

    KOVObjDocument m_document;
    ResultOptions m_options;
    std::string m_instance;
    std::unique_ptr<ResultLabels> m_nodes;
    std::unique_ptr<ResultLabels> m_elements;
    ResultSteps m_steps;
    std::map<std::string, int> m_passedOver;  ///< by label: frames that are there without it
    ResultSummary m_summary;
};

}  // namespace kov::tool
