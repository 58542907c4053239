#include "ResultWriter.h"

#include <algorithm>
#include <set>

#include "Interrupt.h"
#include "KOVObjMeshedField.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransaction.h"
#include "Names.h"

namespace kov::tool {
namespace {

bool IsSame(ResultVariable const& a, std::string const& label, ResultPlace place) {
    return a.label == label && a.place == place;
}

// Two variables of a file may be the same field of a document.
void RefuseTwice(std::vector<ResultTarget> const& targets,
                 std::vector<ResultVariable> const& variables) {
    for (ResultVariable const& variable : variables) {
        for (ResultTarget const& a : variable.targets) {
            for (ResultTarget const& b : targets) {
                if (a.name != b.name || a.grid != b.grid) continue;
                throw ResultFault("field type '" + Shown(a.name) +
                                  "' comes twice in a frame, as '" + Shown(variable.label) +
                                  "' too");
            }
        }
    }
}

[[noreturn]] void FailUnknown(ResultField const& field, UnknownLabels const& unknown) {
    bool const nodes = field.place == ResultPlace::Node;
    std::string text = unknown.where + ": " + std::to_string(unknown.count) + " of " +
                       std::to_string(unknown.rows) + (nodes ? " nodes" : " elements") +
                       " of field '" + Shown(field.label) + "' are not in the model:";
    for (std::size_t i = 0; i < unknown.first.size(); ++i) {
        text += (i == 0 ? " " : ", ") + std::to_string(unknown.first[i]);
    }
    if (unknown.count > static_cast<long>(unknown.first.size())) text += " and others";
    throw Failure(text + "; expected labels of the model, or --skip-unknown");
}

}  // namespace

ResultWriter::ResultWriter(KOVObjDocument const& document, ResultOptions options)
    : m_document(document), m_options(std::move(options)), m_steps(document) {
    KOVObjMesh const mesh(document.GetMesh());
    if (document.GetModel().IsNull() || SpaceAt(mesh.GetNodeCollection()) == 0) {
        throw DocumentFault("it has no mesh that results could belong to");
    }
    m_instance = ResultInstance(document, m_options.instance);
}

ResultLabels& ResultWriter::LabelsOf(ResultPlace place) {
    bool const nodes = place == ResultPlace::Node;
    std::unique_ptr<ResultLabels>& labels = nodes ? m_nodes : m_elements;
    if (labels == nullptr) {
        labels = std::make_unique<ResultLabels>(
            m_document, nodes ? KOVObjLabelerNodes : KOVObjLabelerElements, m_instance);
    }
    return *labels;
}

void ResultWriter::Add(ResultSource& source) {
    auto const keepNotes = [&] {
        for (std::string const& note : source.Notes()) m_summary.notes.push_back(note);
        for (auto const& [label, frames] : m_passedOver) {
            m_summary.notes.push_back("field '" + Shown(label) + "' was not added to " +
                                      std::to_string(frames) +
                                      (frames == 1 ? " frame that was" : " frames that were") +
                                      " there already without it");
        }
        m_passedOver.clear();
    };
    ResultFrame frame;
    try {
        while (source.NextFrame(frame)) {
            ThrowIfInterrupted();
            if (m_options.progress) m_options.progress(source.Done());
            if (HasFrame(source, frame)) {
                ++m_summary.framesThere;
                NotePassedOver(source, m_steps.Frame(frame));
            } else {
                AddFrame(source, frame);
            }
        }
    } catch (UnfinishedResults const& end) {
        if (!m_options.growing) throw;
        m_summary.notes.emplace_back(end.what());
    }
    keepNotes();
}

bool ResultWriter::HasFrame(ResultSource const& source, ResultFrame const& frame) {
    try {
        return m_steps.Has(frame);
    } catch (ResultFault const& fault) {
        throw Failure(source.Where() + ": " + fault.what());
    }
}

// A frame that is there gets nothing more; whoever adds fields that it lacks has to know.
void ResultWriter::NotePassedOver(ResultSource& source, KOVSimPosition const& frame) {
    std::set<std::pair<std::string, int>> there;
    KOVSimSet const fields = frame.GetSet(schema::Frame_fields());
    for (KOVSimSetiterator field = fields.Begin(); field.NotDone(); ++field) {
        KOVSimPosition const type = (*field).GetPosition(schema::Field_fieldType());
        there.emplace(Plain(type.Name(schema::zdm_FieldTypeLib_fieldTypes())),
                      KOVObjMeshedField(*field).GetGridType());
    }
    auto const isThere = [&](ResultTarget const& target) {
        return there.contains({target.name, target.grid});
    };
    std::set<std::string> lacking;
    ResultField field;
    while (source.NextField(field)) {
        bool all = false;
        try {
            std::vector<ResultTarget> const targets = TargetsOf(field);
            all = std::all_of(targets.begin(), targets.end(), isThere);
        } catch (ResultFault const&) {  // no frame has such a field
        }
        if (!all) lacking.insert(field.label);
    }
    for (std::string const& label : lacking) ++m_passedOver[label];
}

void ResultWriter::AddFrame(ResultSource& source, ResultFrame const& frame) {
    Variables variables;
    KOVSimTransaction transaction(m_document.ContextID());
    MadeFrame const made = m_steps.Append(frame);
    ResultField field;
    while (source.NextField(field)) AddField(source, made, field, variables);
    ThrowIfInterrupted();
    transaction.Commit();
    m_steps.Keep(frame, made);
    ++m_summary.framesAdded;
    m_summary.stepsMade = m_steps.StepsMade();
    Count(variables);
}

void ResultWriter::AddField(ResultSource& source, MadeFrame const& made, ResultField const& field,
                            Variables& variables) {
    std::string const where = source.Where();
    ResultVariable& variable = variables.emplace_back();
    variable.label = field.label;
    variable.place = field.place;
    variable.fields = 1;
    try {
        ResultFieldWriter writer(m_document, made, field, LabelsOf(field.place));
        RefuseTwice(writer.Targets(), variables);
        ResultBlock block;
        while (source.NextBlock(block)) {
            writer.Add(block, where);
            if (m_options.progress) m_options.progress(source.Done());
        }
        UnknownLabels const& unknown = writer.Unknown();
        if (unknown.count > 0 && !m_options.skipUnknown) FailUnknown(field, unknown);
        writer.Finish();
        variable.targets = writer.Targets();
        variable.values = writer.Rows() * static_cast<long long>(field.components.size());
        variable.skipped = unknown.count;
        variable.firstSkipped = unknown.first;
    } catch (ResultFault const& fault) {
        throw Failure(where + ": " + fault.what());
    }
}

void ResultWriter::Count(Variables const& variables) {
    for (ResultVariable const& added : variables) {
        auto const at = std::find_if(
            m_summary.variables.begin(), m_summary.variables.end(),
            [&](ResultVariable const& v) { return IsSame(v, added.label, added.place); });
        if (at == m_summary.variables.end()) {
            m_summary.variables.push_back(added);
            continue;
        }
        at->fields += added.fields;
        at->values += added.values;
        at->skipped += added.skipped;
        if (at->firstSkipped.empty()) at->firstSkipped = added.firstSkipped;
    }
}

}  // namespace kov::tool
