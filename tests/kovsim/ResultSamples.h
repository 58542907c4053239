// Results that stand in memory, as a source of them gives them, and a look at what became of them
// in a document.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "DocumentReader.h"
#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"
#include "KOVObjMeshedField.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDrawer.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransaction.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "Names.h"
#include "ResultSource.h"

namespace kov::test {

struct SampleField {
    tool::ResultField field;
    std::vector<tool::ResultBlock> blocks;
};
struct SampleFrame {
    tool::ResultFrame frame;
    std::vector<SampleField> fields;
};

/// Gives frames that stand in memory; where `breakAt` is a frame's number, that frame ends with an
/// error behind its fields.
class SampleSource : public tool::ResultSource {
  public:
    explicit SampleSource(std::vector<SampleFrame> frames) : m_frames(std::move(frames)) {}

    int breakAt = -1;
    bool unfinished = false;

    bool NextFrame(tool::ResultFrame& frame) override {
        if (++m_frame >= static_cast<int>(m_frames.size())) return false;
        m_field = -1;
        frame = Frame().frame;
        return true;
    }
    bool NextField(tool::ResultField& field) override {
        if (++m_field >= static_cast<int>(Frame().fields.size())) {
            if (m_frame == breakAt && unfinished) throw tool::UnfinishedResults("s:9: cut");
            if (m_frame == breakAt) throw tool::Failure("s:9: broken");
            return false;
        }
        m_block = -1;
        field = Field().field;
        return true;
    }
    bool NextBlock(tool::ResultBlock& block) override {
        if (++m_block >= static_cast<int>(Field().blocks.size())) return false;
        block = Field().blocks[static_cast<std::size_t>(m_block)];
        return true;
    }
    std::string Where() const override { return "s:" + std::to_string(m_frame + 1); }
    std::vector<std::string> Notes() const override { return {"a note"}; }
    double Done() const override { return 0.5; }

  private:
    SampleFrame const& Frame() const { return m_frames[static_cast<std::size_t>(m_frame)]; }
    SampleField const& Field() const { return Frame().fields[static_cast<std::size_t>(m_field)]; }

    std::vector<SampleFrame> m_frames;
    int m_frame = -1;
    int m_field = -1;
    int m_block = -1;
};

inline SampleFrame Sample(int step, int increment, double value,
                          std::vector<SampleField> fields = {},
                          tool::StepKind kind = tool::StepKind::Static) {
    SampleFrame sample;
    sample.frame.step = step;
    sample.frame.increment = increment;
    sample.frame.value = value;
    sample.frame.totalTime = 10.0 + value;
    sample.frame.kind = kind;
    sample.fields = std::move(fields);
    return sample;
}

/// One block of a field at nodes.
inline SampleField AtNodes(std::string const& label, std::vector<std::string> components,
                           std::vector<int> labels, std::vector<double> values) {
    SampleField sample;
    sample.field = {label, tool::ResultPlace::Node, std::move(components)};
    tool::ResultBlock block;
    block.labels = std::move(labels);
    block.values = std::move(values);
    sample.blocks.push_back(std::move(block));
    return sample;
}

/// What a document has of a field, by component symbol, point number and ordinal.
using FieldValues = std::map<int, std::map<int, std::map<int, double>>>;

/// Looks at results through the identities of the document alone.
class ResultLook {
  public:
    explicit ResultLook(KOVObjDocument const& document) : m_document(document) {}

    std::vector<KOVSimPosition> Steps() const {
        return All(m_document.GetModel().GetVector(schema::Model_stepSequence()));
    }
    static std::vector<KOVSimPosition> Frames(KOVSimPosition const& step) {
        return All(step.GetVector(schema::Task_frames()));
    }
    static int Increment(KOVSimPosition const& frame) {
        int increment = -1;
        frame.GetDataRecord().GetInt(0, increment);
        return increment;
    }
    static double Real(KOVSimPosition const& frame, int field) {
        double value = -1.0;
        frame.GetDataRecord().GetDouble(field, value);
        return value;
    }
    static std::string TypeName(KOVSimPosition const& field) {
        return tool::Plain(field.GetPosition(schema::Field_fieldType())
                               .Name(schema::zdm_FieldTypeLib_fieldTypes()));
    }
    static int Algebraic(KOVSimPosition const& field) {
        int type = -1;
        field.GetPosition(schema::Field_fieldType()).GetDataRecord().GetSymb(0, type);
        return type;
    }
    /// The field of that name in a frame; null if there is none.
    static KOVSimPosition Field(KOVSimPosition const& frame, std::string const& name) {
        for (KOVSimSetiterator at = frame.GetSet(schema::Frame_fields()).Begin(); at.NotDone();
             ++at) {
            if (TypeName(*at) == name) return *at;
        }
        return {};
    }
    static int Drawers(KOVSimPosition const& field) {
        int drawers = 0;
        for (KOVSimSetiterator at = field.GetSet(schema::Field_serialFields()).Begin();
             at.NotDone(); ++at) {
            drawers += (*at).GetSet(schema::SerialField_drawers()).Size();
        }
        return drawers;
    }
    static FieldValues Values(KOVSimPosition const& field) {
        FieldValues values;
        for (KOVSimSetiterator at = field.GetSet(schema::Field_serialFields()).Begin();
             at.NotDone(); ++at) {
            int point = -1;
            (*at).GetDataRecord().GetInt(0, point);
            for (KOVSimSetiterator drawer = (*at).GetSet(schema::SerialField_drawers()).Begin();
                 drawer.NotDone(); ++drawer) {
                Read(KOVSimDrawer(*drawer), point, values);
            }
        }
        return values;
    }
    /// The numbers of a distribution over one dimension.
    static std::vector<double> Numbers(KOVSimPosition const& position) {
        std::vector<double> all;
        KOVSimDistribution const distribution(position.GetDistribution());
        KOVSimArray<KOVSimDrawerID, KOVSimArrayCopyClassPolicy<KOVSimDrawerID>> drawers;
        distribution.DrawerIDArray(drawers);
        for (KOVSimDrawerID const& id : drawers) {
            KOVSimCSet const set = distribution.DrawerDescription(id).compartment.CSet(0);
            std::vector<double> numbers(static_cast<std::size_t>(set.Size()));
            KOVSimTransfer read(distribution);
            read.SetRead().SetBufferPadding(false).SetDrawer(id).SetDim(0, set).CheckView();
            read.SetBuffer(0, static_cast<void*>(numbers.data()), numbers.size() * sizeof(double));
            read.ExecRead().RelinquishBuffers();
            all.insert(all.end(), numbers.begin(), numbers.end());
        }
        return all;
    }

  private:
    static std::vector<KOVSimPosition> All(KOVSimVector const& vector) {
        std::vector<KOVSimPosition> all;
        for (KOVSimVectoriterator at = vector.Begin(); at.NotDone(); ++at) all.push_back(*at);
        return all;
    }
    static void Read(KOVSimDrawer const& drawer, int point, FieldValues& values) {
        KOVSimCSet const rows = drawer.Description()->compartment.CSet(0);
        KOVSimCSet const columns = drawer.Description()->compartment.CSet(1);
        std::vector<int> ordinals(static_cast<std::size_t>(rows.Size()));
        std::vector<int> symbols(static_cast<std::size_t>(columns.Size()));
        rows.Members(ordinals.data());
        columns.Members(symbols.data());
        std::vector<double> numbers(ordinals.size() * symbols.size());
        KOVSimTransfer read{KOVSimDistribution(drawer.DistributionID())};
        read.SetRead().SetBufferPadding(false).SetDrawer(drawer.ID());
        read.SetDim(0, rows).SetDim(1, columns).CheckView();
        read.SetBuffer(0, static_cast<void*>(numbers.data()), numbers.size() * sizeof(double));
        read.ExecRead().RelinquishBuffers();
        std::size_t at = 0;
        for (int const ordinal : ordinals) {
            for (int const symbol : symbols) values[symbol][point][ordinal] = numbers[at++];
        }
    }

    KOVObjDocument m_document;
};

/// Gives a document `labels.size()` nodes with these labels, by ordinal, in one instance; in a
/// transaction.
inline void LabelNodes(KOVObjDocument const& document, std::string const& instance,
                       std::vector<int> const& labels, int first = 0) {
    KOVObjMesh const mesh(document.GetMesh());
    KOVSimCollection nodes(mesh.GetNodeCollection().GetCollection());
    int const count = static_cast<int>(labels.size());
    if (nodes.Space() < first + count) nodes.ExtendSpace(first + count);
    KOVBasVector<int> numbers(count);
    KOVBasVector<int> ordinals(count);
    for (int i = 0; i < count; ++i) {
        numbers[i] = labels[static_cast<std::size_t>(i)];
        ordinals[i] = first + i;
    }
    KOVObjLabeler labeler(document, KOVObjLabelerNodes);
    labeler.SetInstance(tool::ToKOVString(instance), numbers, ordinals);
}

}  // namespace kov::test
