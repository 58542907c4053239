// ResultSource: what a file of results gives, whatever its format: steps with frames, frames with
// fields, fields with blocks of rows. A source reads ahead by one block and no more, so that a
// frame never stands in memory as a whole.
//
//     while (source.NextFrame(frame))
//         while (source.NextField(field))
//             while (source.NextBlock(block)) ...
//
// What a format has and a document has no place for is told by Notes().
#pragma once

#include <string>
#include <vector>

#include "Failure.h"

namespace kov::tool {

enum class StepKind {
    Unknown,
    Static,
    Dynamic,
    Frequency,
    Buckle,
    HeatTransfer,
    Coupled,
    SteadyState  ///< response at frequencies
};

struct ResultFrame {
    int step = 1;  ///< number of the step, from 1, as the solver counts
    StepKind kind = StepKind::Unknown;
    int increment = 0;       ///< number of the increment or the mode within the step
    double value = 0.0;      ///< time within the step, frequency, or load factor
    double totalTime = 0.0;  ///< from the start of the analysis
    std::string text;        ///< the solver's remark; empty for none
};

enum class ResultPlace { Node, Element, IntegrationPoint };

struct ResultField {
    std::string label;  ///< label of the whole variable as users speak of it, such as U or S
    ResultPlace place = ResultPlace::Node;
    /// Label of each column of a block, such as U1, U2, U3 or S11, S22, ...; the label itself for a
    /// scalar.
    std::vector<std::string> components;
};

/// Rows of one field. All rows of a block have the same count of integration points.
struct ResultBlock {
    std::vector<int> labels;     ///< user labels of the nodes or elements; each once in a field
    int points = 1;              ///< integration points of each element; 1 elsewhere
    std::vector<double> values;  ///< (labels, points, components), row-major
};

/// The file ends in the middle of a frame, as one does that a solver still writes.
class UnfinishedResults : public Failure {
  public:
    using Failure::Failure;
};

class ResultSource {
  public:
    ResultSource() = default;
    virtual ~ResultSource() = default;
    ResultSource(ResultSource const&) = delete;
    ResultSource& operator=(ResultSource const&) = delete;

    /// The next frame; false behind the last one. Passes over what is left of the frame at hand.
    /// Each throws Failure that names the file and the place.
    virtual bool NextFrame(ResultFrame& frame) = 0;
    /// The next field of the frame; false behind the last one.
    virtual bool NextField(ResultField& field) = 0;
    /// The next rows of the field; false behind the last ones.
    virtual bool NextBlock(ResultBlock& block) = 0;

    /// Where the file is read, for the start of messages, such as "job.frd:31"; the file without a
    /// place where its format has no lines.
    virtual std::string Where() const { return "the results"; }
    /// What was passed over so far, a line each.
    virtual std::vector<std::string> Notes() const = 0;
    /// How much of the file has been read, between 0 and 1.
    virtual double Done() const = 0;
};

}  // namespace kov::tool
