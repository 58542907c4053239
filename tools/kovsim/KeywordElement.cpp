// *ELEMENT, TYPE=type, ELSET=name
//   label, node, node, ...
//
// A line that ends with a comma, or that holds 16 fields, goes on in the next one. The nodes may be
// defined further on. On assembly level a node of an instance is named as `instance.label`.

#include "DataFields.h"
#include "Keywords.h"
#include "Names.h"
#include "References.h"

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

constexpr int kMostNodes = 32;
constexpr int kFullLine = 16;
constexpr long kBreath = 1 << 16;

std::string Count(int count, char const* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

[[noreturn]] void FailCount(DeckReader const& reader, int line, ElementType const& type, int label,
                            int count) {
    reader.FailAt(line, "element " + std::to_string(label) + " has " +
                            (count > type.nodes ? "more than " : "") +
                            Count(count > type.nodes ? type.nodes : count, "node") + "; expected " +
                            Count(type.nodes, "node") + " for type " + std::string(type.name));
}

// The nodes of one element: labels, or below 0 the place of a name, as -1 - place.
struct NodeNames {
    int labels[kMostNodes];
    std::vector<ScopedName> names;
};

// A field that is no number: the name of an instance's node, where these may stand.
int ReadNodeName(Translation& translation, DeckReader const& reader, FieldScanner& fields,
                 NodeNames& nodes) {
    fields.Again();
    int label = 0;
    Result const result = fields.ReadInt(label);
    bool const named = result == Result::Wrong && translation.NamesInstances();
    ScopedName name;
    if (!named || !name.Read(fields) || name.dots.empty()) {
        FailLabel(reader, fields, result, "a node label", "LABEL, NODE, NODE, ...");
    }
    nodes.names.push_back(std::move(name));
    return -static_cast<int>(nodes.names.size());
}

// Reads the nodes of one element, over as many lines as they take.
void ReadNodeLabels(Translation& translation, DeckReader& reader, FieldScanner fields,
                    ElementType const& type, int label, NodeNames& nodes) {
    nodes.names.clear();
    int count = 0;
    int onLine = 1;
    bool comma = fields.HadComma();
    for (;;) {
        int const line = reader.LineNumber();
        while (!fields.AtEnd()) {
            if (count == type.nodes) FailCount(reader, line, type, label, count + 1);
            int node = 0;
            if (fields.ReadInt(node) != Result::Value || node < 1) [[unlikely]] {
                node = ReadNodeName(translation, reader, fields, nodes);
            }
            nodes.labels[count++] = node;
            comma = fields.HadComma();
            ++onLine;
        }
        if (count == type.nodes) return;
        if ((!comma && onLine < kFullLine) || !reader.NextData())
            FailCount(reader, line, type, label, count);
        fields = FieldScanner(reader.Line(), reader.LineEnd());
        onLine = 0;
        comma = false;
    }
}

ScopedName const& NameOf(NodeNames const& nodes, int i) {
    return nodes.names[static_cast<std::size_t>(-1 - nodes.labels[i])];
}

// The place of the first node that is not defined; -1 if all are.
int FindNodes(Translation& translation, LabelTable const& labels, int count, NodeNames const& nodes,
              int* ordinals) {
    int unknown = -1;
    for (int i = count; i-- > 0;) {
        ordinals[i] = labels.Find(nodes.labels[i]);
        if (ordinals[i] != LabelTable::None) [[likely]]
            continue;
        if (nodes.labels[i] < 0) {
            ordinals[i] = FindScopedLabel(translation.AllScopes(), translation.Current(),
                                          kNodeEntity, NameOf(nodes, i));
        }
        if (ordinals[i] == LabelTable::None) unknown = i;
    }
    return unknown;
}

[[noreturn]] void FailNode(Translation& translation, DeckReader const& reader, int line, int label,
                           NodeNames const& nodes, int unknown) {
    std::string const element = "element " + std::to_string(label);
    Scope& scope = translation.Current();
    if (nodes.labels[unknown] >= 0) {
        reader.FailAt(line, UnknownLabel(scope, kNodeEntity, element, nodes.labels[unknown]));
    }
    reader.FailAt(
        line, element + ": " + UnknownNode(translation.AllScopes(), scope, NameOf(nodes, unknown)));
}

// The second pass over a block: all labels of elements are known.
void ReadDeferredElements(Translation& translation, DeckReader& reader, ElementType const& type) {
    ModelWriter& model = translation.Model();
    TypeElements& elements = model.Elements(type);
    LabelTable const& nodeLabels = translation.Current().nodeLabels;
    NodeNames nodes;
    int ordinals[kMostNodes];
    for (long lines = 1; reader.NextData(); ++lines) {
        int const line = reader.LineNumber();
        FieldScanner fields(reader.Line(), reader.LineEnd());
        int const label = ReadLabel(reader, fields, "an element label", "LABEL, NODE, NODE, ...");
        ReadNodeLabels(translation, reader, fields, type, label, nodes);
        int const unknown = FindNodes(translation, nodeLabels, type.nodes, nodes, ordinals);
        if (unknown >= 0) FailNode(translation, reader, line, label, nodes, unknown);
        int const ordinal = translation.Current().elementLabels.Find(label);
        if (ordinal == LabelTable::None) {
            reader.FailAt(line, "the file has changed while it was read; expected the same lines");
        }
        model.SetNodes(elements, ordinal, ordinals);
        if (lines % kBreath == 0) translation.Breathe(reader);
    }
}

}  // namespace

void ReadElements(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"type", "elset"});
    std::string const typeName = parameters.Required("type");
    ElementType const* const found = FindElementType(typeName);
    if (found == nullptr) {
        reader.FailAt(line.line, "element type '" + Shown(typeName) +
                                     "' is not known; expected a type such as C3D8R, S4R or B31");
    }
    ElementType const& type = *found;
    NamedSet* const set = parameters.Has("elset")
                              ? &translation.MakeSet(kElementEntity, parameters.Value("elset"),
                                                     false, reader, line.line)
                              : nullptr;

    ModelWriter& model = translation.Model();
    LabelTable& labels = translation.Current().elementLabels;
    LabelTable const& nodeLabels = translation.Current().nodeLabels;
    TypeElements& elements = model.Elements(type);
    int const first = model.ElementCount();
    model.BeginElements(type);
    translation.Blocks().Begin(first, type,
                               translation.Sections().files.At(reader.Path(), line.line));
    bool deferred = false;
    NodeNames nodes;
    int ordinals[kMostNodes];
    for (long lines = 1; reader.NextData(); ++lines) {
        DeckPlace const place = reader.Place();
        FieldScanner fields(reader.Line(), reader.LineEnd());
        int const label = ReadLabel(reader, fields, "an element label", "LABEL, NODE, NODE, ...");
        if (!labels.Insert(label, model.ElementCount())) {
            reader.Fail(ShownLabel(translation.Current(), kElementEntity, label) +
                        " is defined a second time; expected each label once");
        }
        ReadNodeLabels(translation, reader, fields, type, label, nodes);
        int const ordinal = model.NewElement();
        if (!deferred) {
            if (FindNodes(translation, nodeLabels, type.nodes, nodes, ordinals) < 0) {
                model.SetNodes(elements, ordinal, ordinals);
            } else {
                deferred = true;
                translation.DeferElements(reader, place,
                                          [&type](Translation& again, DeckReader& from) {
                                              ReadDeferredElements(again, from, type);
                                          });
            }
        }
        if (lines % kBreath == 0) translation.Breathe(reader);
    }
    int const count = model.ElementCount() - first;
    if (count > 0) translation.AddElements(set, first, count, 1);
}

}  // namespace kov::tool
