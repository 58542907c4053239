#include "FieldListing.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Columns.h"
#include "FieldForm.h"
#include "MemberList.h"
#include "Names.h"
#include "ObjectContent.h"

namespace kov::tool {
namespace {

std::string OrDash(std::string const& text) { return text.empty() ? "-" : NameText(text); }

// Six digits are enough to look at; --json has all of them.
std::string Rounded(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value == 0.0 ? 0.0 : value);
    return text;
}

std::string KindOf(FieldContent const& field) {
    switch (FormOf(field).kind) {
        case FieldForm::Kind::Scalar:
            return "scalar";
        case FieldForm::Kind::Vector:
            return "vector";
        case FieldForm::Kind::SymmetricTensor:
            return "symmetric tensor";
        case FieldForm::Kind::Other:
            break;
    }
    return "other";
}

}  // namespace

// ------------------------------------------------------------------------------------ looking

MeshLabels const& FieldListing::LabelsOf(FieldItems items) {
    bool const nodes = items == FieldItems::Nodes;
    std::optional<MeshLabels>& labels = nodes ? m_nodeLabels : m_elementLabels;
    if (!labels) labels.emplace(m_document, nodes ? KOVObjLabelerNodes : KOVObjLabelerElements);
    return *labels;
}

// One look-up for all extremes of the part.
void FieldListing::FindLabels(std::vector<Shown>& shown, FieldItems items) {
    std::vector<int> ordinals;
    for (Shown const& each : shown) {
        if (each.field.items != items) continue;
        for (FieldRange const& range : each.ranges) {
            for (int const item : {range.lowest.item, range.highest.item}) {
                if (item >= 0) ordinals.push_back(item);
            }
        }
    }
    std::sort(ordinals.begin(), ordinals.end());
    ordinals.erase(std::unique(ordinals.begin(), ordinals.end()), ordinals.end());
    std::vector<Labelled> found;
    if (!ordinals.empty()) found = LabelsOf(items).Look(ordinals);
    auto const of = [&](int item) {
        if (item < 0) return Labelled{};
        auto const at = std::lower_bound(ordinals.begin(), ordinals.end(), item);
        return found[static_cast<std::size_t>(at - ordinals.begin())];
    };
    for (Shown& each : shown) {
        if (each.field.items != items) continue;
        for (FieldRange const& range : each.ranges) {
            each.lowest.push_back(of(range.lowest.item));
            each.highest.push_back(of(range.highest.item));
        }
    }
}

std::vector<FieldListing::Shown> FieldListing::LookAt(ListedPart const& part) {
    std::vector<Shown> shown;
    for (ListedField const& listed : part.fields) {
        Shown& each = shown.emplace_back();
        each.listed = &listed;
        each.field = m_results.Look(listed.head);
        each.ranges = RangesOf(each.field);
    }
    FindLabels(shown, FieldItems::Nodes);
    FindLabels(shown, FieldItems::Elements);
    for (Shown& each : shown) {
        each.lowest.resize(each.ranges.size());
        each.highest.resize(each.ranges.size());
    }
    return shown;
}

// --------------------------------------------------------------------------------------- text

std::string FieldListing::StepText(std::size_t number) const {
    ResultStep const& step = m_results.Steps()[number];
    std::string const type = *step.type.text != '\0' ? step.type.text : step.type.name;
    std::string text = "step " + std::to_string(number + 1) + " " + NameText(step.name) + ": ";
    if (!type.empty()) text += type + ", ";
    if (step.frames.empty()) return text + "no frames";
    text += CountText(static_cast<long>(step.frames.size()), "frame");
    double const first = DocumentResults::ReadFrame(step.frames.front()).value;
    double const last = DocumentResults::ReadFrame(step.frames.back()).value;
    text += std::string(", ") + FrameValueName(step.value) + " " + Rounded(first);
    return step.frames.size() == 1 ? text : text + " to " + Rounded(last);
}

std::string FieldListing::FrameText(ResultStep const& step, int frame) const {
    if (frame == 0) return "outside of frames";
    FrameHead const head = DocumentResults::ReadFrame(step.Frame(frame));
    std::string text = "frame " + std::to_string(frame) + ": increment " +
                       std::to_string(head.increment) + ", " + FrameValueName(step.value) + " " +
                       Rounded(head.value);
    if (step.value == FrameValue::Time) text += ", total time " + Rounded(head.totalTime);
    if (!head.text.empty()) text += ", " + NameText(head.text);
    return text;
}

std::string FieldListing::Where(FieldItems items, FieldExtreme const& extreme,
                                Labelled const& labelled) {
    if (extreme.item < 0) return "";
    std::string text;
    if (labelled.instance < 0) {
        text = "(no label) " + std::to_string(extreme.item);
    } else {
        MeshLabels const& labels = LabelsOf(items);
        bool const plain = labels.Names().size() == 1 && labels.Names()[0].empty();
        if (!plain) text = InstanceText(labels, labelled.instance) + ": ";
        text += std::to_string(labelled.label);
    }
    if (extreme.point > 0) text += " point " + std::to_string(extreme.point);
    return text;
}

void FieldListing::PrintPart(ListedPart const& part) {
    bool const latest = part.frame == ListedPart::kLatest;
    std::vector<Shown> const shown = LookAt(part);
    if (shown.empty()) {
        if (!latest) m_out << "    no fields\n";
        return;
    }
    bool hasNaN = false;
    for (Shown const& each : shown) {
        for (FieldRange const& range : each.ranges) hasNaN = hasNaN || range.nans > 0;
    }
    std::vector<std::string> head = {"variable", "field", "on", "rows"};
    std::string sides = "lllr";
    if (latest) {
        head.insert(head.end(), {"frames", "frame"});
        sides += "rr";
    }
    std::size_t const left = head.size();
    head.insert(head.end(), {"component", "minimum", "at", "maximum", "at"});
    sides += "lrlrl";
    if (hasNaN) {
        head.emplace_back("no number");
        sides += "r";
    }
    Columns columns(sides);
    columns.Row(head);
    for (Shown const& each : shown) {
        std::vector<std::string> row = {OrDash(each.field.head.label), OrDash(each.field.head.name),
                                        each.field.head.grid < 0 ? "-" : GridShown(each.field.grid),
                                        std::to_string(each.field.rows)};
        if (latest) {
            bool const none = each.listed->frame == 0;
            row.push_back(none ? "-" : std::to_string(each.listed->frames));
            row.push_back(none ? "none" : std::to_string(each.listed->frame));
        }
        if (each.ranges.empty()) {
            row.push_back(each.field.fault.empty() ? "no values" : each.field.fault);
            columns.Row(row);
        }
        for (std::size_t i = 0; i < each.ranges.size(); ++i) {
            FieldRange const& range = each.ranges[i];
            bool const any = range.lowest.item >= 0;
            row.push_back(range.derived ? "(" + range.label + ")" : NameText(range.label));
            row.push_back(any ? Rounded(range.lowest.value) : "-");
            row.push_back(Where(each.field.items, range.lowest, each.lowest[i]));
            row.push_back(any ? Rounded(range.highest.value) : "-");
            row.push_back(Where(each.field.items, range.highest, each.highest[i]));
            if (hasNaN) row.push_back(range.nans > 0 ? std::to_string(range.nans) : "");
            columns.Row(row);
            row.assign(left, "");
        }
    }
    m_out << columns.Text(latest ? "  " : "    ");
}

void FieldListing::Print(std::vector<ListedStep> const& steps) {
    if (steps.empty()) m_out << "no steps\n";
    for (ListedStep const& step : steps) {
        m_out << StepText(step.step) << "\n";
        for (ListedPart const& part : step.parts) {
            if (part.frame != ListedPart::kLatest) {
                m_out << "  " << FrameText(m_results.Steps()[step.step], part.frame) << "\n";
            }
            PrintPart(part);
        }
    }
    m_out.Flush();
}

// --------------------------------------------------------------------------------------- JSON

void FieldListing::AddFrame(Json& json, ResultStep const& step, int frame) const {
    json.Key("frame");
    if (frame == 0) {
        json.Null();
        return;
    }
    FrameHead const head = DocumentResults::ReadFrame(step.Frame(frame));
    json.OneLine().BeginObject().Member("number", frame).Member("increment", head.increment);
    json.Member("value", head.value).Member("totalTime", head.totalTime);
    json.Member("text", head.text).EndObject();
}

void FieldListing::AddExtreme(Json& json, char const* name, FieldItems items,
                              FieldExtreme const& extreme, Labelled const& labelled) {
    json.Key(name);
    if (extreme.item < 0) {
        json.Null();
        return;
    }
    json.BeginObject().Member("value", extreme.value).Key("instance");
    if (labelled.instance < 0) {
        json.Null().Key("label").Null();
    } else {
        json.Value(LabelsOf(items).Names()[static_cast<std::size_t>(labelled.instance)]);
        json.Member("label", labelled.label);
    }
    json.Member("ordinal", extreme.item).Key("point");
    extreme.point > 0 ? json.Value(extreme.point) : json.Null();
    json.EndObject();
}

void FieldListing::AddField(Json& json, ResultStep const& step, Shown const& shown, bool latest) {
    FieldContent const& field = shown.field;
    json.BeginObject().Member("name", field.head.name).Member("label", field.head.label);
    json.Member("grid", field.grid.name);
    json.Key("algebraicType");
    field.algebraicType < 0 ? json.Null() : json.Value(field.algebraicType);
    json.Member("kind", KindOf(field));
    if (latest) {
        json.Member("frames", shown.listed->frames);
        AddFrame(json, step, shown.listed->frame);
    }
    json.Member("rows", static_cast<long>(field.rows)).Member("points", field.points);
    if (!field.fault.empty()) json.Member("fault", field.fault);
    json.Key("components").BeginArray();
    for (std::size_t i = 0; i < shown.ranges.size(); ++i) {
        FieldRange const& range = shown.ranges[i];
        json.OneLine().BeginObject().Member("label", range.label).Key("symbol");
        range.derived ? json.Null() : json.Value(range.symbol);
        json.Member("derived", range.derived);
        AddExtreme(json, "minimum", field.items, range.lowest, shown.lowest[i]);
        AddExtreme(json, "maximum", field.items, range.highest, shown.highest[i]);
        json.Member("nan", static_cast<long>(range.nans)).EndObject();
    }
    json.EndArray().EndObject();
}

void FieldListing::PrintJson(std::string const& path, std::vector<ListedStep> const& steps) {
    Json json;
    json.BeginObject().Member("document", path).Key("steps").BeginArray();
    for (ListedStep const& listed : steps) {
        ResultStep const& step = m_results.Steps()[listed.step];
        json.BeginObject().Member("number", static_cast<long>(listed.step) + 1);
        json.Member("name", step.name).Member("type", step.type.name);
        json.Member("frames", static_cast<long>(step.frames.size()));
        json.Member("value", FrameValueName(step.value));
        for (auto const& [key, first] : {std::pair("first", true), std::pair("last", false)}) {
            json.Key(key);
            if (step.frames.empty()) {
                json.Null();
            } else {
                KOVSimPosition const& frame = first ? step.frames.front() : step.frames.back();
                json.Value(DocumentResults::ReadFrame(frame).value);
            }
        }
        json.Key("listed").BeginArray();
        for (ListedPart const& part : listed.parts) {
            bool const latest = part.frame == ListedPart::kLatest;
            json.BeginObject();
            if (!latest) AddFrame(json, step, part.frame);
            json.Key("fields").BeginArray();
            for (Shown const& shown : LookAt(part)) {
                AddField(json, step, shown, latest);
                m_out << json.Take();
            }
            json.EndArray().EndObject();
        }
        json.EndArray().EndObject();
    }
    json.EndArray().EndObject();
    m_out << json.Text();
    m_out.Flush();
}

}  // namespace kov::tool
