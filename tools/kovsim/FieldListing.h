// FieldListing: steps, frames and fields of a document as `kovsim fields` shows them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "DocumentResults.h"
#include "FieldRanges.h"
#include "Json.h"
#include "MeshLabels.h"
#include "TextOut.h"

namespace kov::tool {

struct ListedField {
    FieldHead head;
    int frame = 0;   ///< its frame by number, from 1; 0 for none
    int frames = 0;  ///< how many frames of the step have such a field, where that was counted
};

/// The fields of one frame, or of the last frames that have them.
struct ListedPart {
    static constexpr int kLatest = -1;
    int frame = kLatest;  ///< number of the frame, from 1; 0 for what stands outside of frames
    std::vector<ListedField> fields;
};

struct ListedStep {
    std::size_t step = 0;  ///< place in the sequence
    std::vector<ListedPart> parts;
};

class FieldListing {
  public:
    FieldListing(KOVObjDocument const& document, DocumentResults& results)
        : m_document(document), m_results(results) {}

    void Print(std::vector<ListedStep> const& steps);
    void PrintJson(std::string const& path, std::vector<ListedStep> const& steps);

  private:
    // A field with its ranges.
    struct Shown {
        ListedField const* listed;
        FieldContent field;
        std::vector<FieldRange> ranges;
        std::vector<Labelled> lowest;  // where the ranges have their ends
        std::vector<Labelled> highest;
    };

    std::vector<Shown> LookAt(ListedPart const& part);
    void FindLabels(std::vector<Shown>& shown, FieldItems items);
    MeshLabels const& LabelsOf(FieldItems items);
    std::string Where(FieldItems items, FieldExtreme const& extreme, Labelled const& labelled);

    std::string StepText(std::size_t number) const;
    std::string FrameText(ResultStep const& step, int frame) const;
    void PrintPart(ListedPart const& part);
    void AddFrame(Json& json, ResultStep const& step, int frame) const;
    void AddField(Json& json, ResultStep const& step, Shown const& shown, bool latest);
    void AddExtreme(Json& json, char const* name, FieldItems items, FieldExtreme const& extreme,
                    Labelled const& labelled);

    KOVObjDocument m_document;
    DocumentResults& m_results;
    std::optional<MeshLabels> m_nodeLabels;
    std::optional<MeshLabels> m_elementLabels;
    TextOut m_out;
};

}  // namespace kov::tool
