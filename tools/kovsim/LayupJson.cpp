#include "LayupJson.h"

#include <algorithm>

namespace kov::tool {
namespace {

using Variation = LayerNumber::Variation;
using Range = std::optional<std::pair<double, double>>;

constexpr std::size_t kPiece = 10000;  // numbers between two pieces of output

void AddName(Json& json, char const* key, std::string const& name) {
    json.Key(key);
    name.empty() ? json.Null() : json.Value(name);
}

void AddNumber(Json& json, std::string const& key, std::optional<double> const& number) {
    json.Key(key);
    number ? json.Value(*number) : json.Null();
}

void AddRange(Json& json, std::string const& key, Range const& range) {
    json.Key(key);
    if (!range) {
        json.Null();
        return;
    }
    json.OneLine().BeginArray().Value(range->first).Value(range->second).EndArray();
}

void AddNumber(TextOut& out, Json& json, std::string const& what, LayerNumber const& number,
               bool values) {
    constexpr char const* kVariations[] = {"none", "constant", "distributed"};
    json.Member(what + "Variation", kVariations[static_cast<int>(number.variation)]);
    AddNumber(json, what, number.value);
    AddRange(json, what + "Range", number.range);
    if (!values || number.variation != Variation::ByElement) return;
    json.Key(what + "Values").OneLine().BeginArray();
    std::size_t count = 0;
    for (double const value : number.values) {
        json.Value(value);
        if (++count % kPiece == 0) out << json.Take();
    }
    json.EndArray();
}

// Elements of one instance that follow each other, under one name; those without a label by their
// ordinals.
void AddLabels(TextOut& out, Json& json, Layup const& layup, MeshLabels const& labels) {
    json.Key("elementLabels").BeginArray();
    std::optional<int> open;
    for (std::size_t first = 0; first < layup.elements.size(); first += kPiece) {
        std::size_t const last = std::min(first + kPiece, layup.elements.size());
        std::vector<int> const piece(layup.elements.begin() + static_cast<std::ptrdiff_t>(first),
                                     layup.elements.begin() + static_cast<std::ptrdiff_t>(last));
        std::vector<Labelled> const names = labels.Look(piece);
        for (std::size_t i = 0; i < piece.size(); ++i) {
            Labelled const& name = names[i];
            if (open != name.instance) {
                if (open) json.EndArray().EndObject();
                json.OneLine().BeginObject().Key("instance");
                name.instance < 0
                    ? json.Null()
                    : json.Value(labels.Names()[static_cast<std::size_t>(name.instance)]);
                json.Key(name.instance < 0 ? "ordinals" : "labels").BeginArray();
                open = name.instance;
            }
            json.Value(name.instance < 0 ? piece[i] : name.label);
        }
        out << json.Take();
    }
    if (open) json.EndArray().EndObject();
    json.EndArray();
}

}  // namespace

void PrintLayup(TextOut& out, Json& json, Layup const& layup, MeshLabels const* labels) {
    bool const shell = layup.kind == Layup::Kind::Shell;
    json.BeginObject();
    AddName(json, "section", layup.section);
    json.Member("kind", shell ? "shell" : "solid").Member("composite", layup.composite);
    AddName(json, "layupName", layup.name);
    AddName(json, "orientation", layup.orientation);
    AddNumber(json, "offset", shell ? std::optional(layup.offset) : std::nullopt);
    json.Key("integration");
    shell ? json.Value(layup.gauss ? "gauss" : "simpson") : json.Null();
    json.Key("stackDirection");
    layup.stackDirection == 0   ? json.Null()
    : layup.stackDirection == 4 ? json.Value("orientation")
                                : json.Value(layup.stackDirection);
    json.Member("assignments", layup.assignments).Member("elements", layup.elementCount);
    if (layup.element) {
        json.Key("element").OneLine().BeginObject();
        json.Member("instance", layup.element->instance).Member("label", layup.element->label);
        AddName(json, "type", layup.element->type);
        json.EndObject();
    }
    AddNumber(json, "thickness", layup.Thickness());
    AddRange(json, "thicknessRange", layup.thicknessRange);
    json.Key("layers").BeginArray();
    int number = 0;
    for (Layer const& layer : layup.layers) {
        json.BeginObject().Member("layer", ++number);
        AddName(json, "ply", layer.ply);
        AddName(json, "material", layer.material);
        AddName(json, "orientation", layer.orientation);
        json.Key("sectionPoints");
        layer.sectionPoints ? json.Value(*layer.sectionPoints) : json.Null();
        AddNumber(out, json, "thickness", layer.thickness, labels != nullptr);
        AddNumber(out, json, "angle", layer.angle, labels != nullptr);
        json.EndObject();
        out << json.Take();
    }
    json.EndArray();
    if (labels != nullptr) AddLabels(out, json, layup, *labels);
    json.EndObject();
    out << json.Take();
}

}  // namespace kov::tool
