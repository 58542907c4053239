// kovsim variable LABEL

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Columns.h"
#include "Commands.h"
#include "Json.h"
#include "KOVObjDocument.h"
#include "KOVSimPosition.h"
#include "KOVSrvFieldServices.h"
#include "Keywords.h"
#include "Names.h"
#include "Nearest.h"
#include "ResultVariables.h"
#include "SchemaTypes.h"
#include "VariableRows.h"

namespace kov::tool {
namespace {

constexpr std::size_t kLineLetters = 90;

struct Options {
    std::string label;
    bool json = false;
};

struct Component {
    int number;
    std::string name;
};

// What is known of a label.
struct Variable {
    std::string label;
    std::string field;
    std::vector<Component> components;  ///< none for a field as a whole; two for a shear term
    std::vector<SchemaType> grids;
    std::vector<std::string> fieldLabels;      ///< labels that stand for the whole field
    std::vector<std::string> componentLabels;  ///< labels of its components
};

bool IsLabel(std::string const& label) {
    return KOVSrvFieldServices::GetGridTypeFromVariableLabel(ToKOVString(label), false) != -1;
}

void AddOnce(std::vector<std::string>& texts, char const* text) {
    if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.emplace_back(text);
}

// The symbols stand at the positions of their numbers in every document.
Component NamedComponent(KOVObjDocument const& document, int number) {
    KOVSimCollectionID const symbols = document.GetComponentCollection().GetCollection();
    KOVSimPosition const symbol(document.GetRecord(symbols, number));
    return {number, Plain(symbol.GetSymbolName())};
}

Variable LookUp(std::string const& label) {
    Variable variable;
    variable.label = label;
    KOVString const text = ToKOVString(label);
    variable.field = Plain(KOVSrvFieldServices::GetFieldType(text));
    int const first = KOVSrvFieldServices::GetComponent(text, false);
    if (first != zdm_Component_NONE) {
        KOVObjDocument const document = KOVObjDocument::CreateInMemory();
        variable.components.push_back(NamedComponent(document, first));
        int const second = KOVSrvFieldServices::GetComponent(text, true);
        if (second != first) variable.components.push_back(NamedComponent(document, second));
    }
    ForEachVariableRow([&variable](KOVSrvVariableMapEntry const& row) {
        if (variable.field != row.fieldName) return;
        AddOnce(
            row.component == zdm_Component_NONE ? variable.fieldLabels : variable.componentLabels,
            row.label);
        if (variable.label != row.label) return;
        bool const known = std::any_of(variable.grids.begin(), variable.grids.end(),
                                       [&](auto const& g) { return g.type == row.gridType; });
        if (!known) variable.grids.push_back(FindSchemaType(row.gridType));
    });
    return variable;
}

// Labels of the field of that name, where a label was asked for.
std::vector<std::string> LabelsOfField(std::string const& field) {
    std::vector<std::string> labels;
    ForEachVariableRow([&](KOVSrvVariableMapEntry const& row) {
        if (field == row.fieldName && row.component == zdm_Component_NONE)
            AddOnce(labels, row.label);
    });
    if (!labels.empty()) return labels;
    ForEachVariableRow([&](KOVSrvVariableMapEntry const& row) {
        if (field == row.fieldName) AddOnce(labels, row.label);
    });
    return labels;
}

std::string Listed(std::vector<std::string> const& texts) {
    std::string all;
    for (std::string const& text : texts) all += (all.empty() ? "" : ", ") + text;
    return all;
}

// Texts in lines of some length, each of which is a row behind the title.
void AddList(Columns& columns, std::string title, std::vector<std::string> const& texts) {
    std::string line;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        std::string const next = texts[i] + (i + 1 < texts.size() ? "," : "");
        if (!line.empty() && line.size() + next.size() >= kLineLetters) {
            columns.Row({title, line});
            title.clear();
            line.clear();
        }
        line += (line.empty() ? "" : " ") + next;
    }
    columns.Row({title, line.empty() ? "none" : line});
}

std::string PlainText(Variable const& variable) {
    Columns columns("ll");
    columns.Row({"field", variable.field});
    std::string component = "the field as a whole";
    for (Component const& each : variable.components) {
        bool const first = &each == &variable.components.front();
        component = (first ? "" : component + " and ") + each.name + " (" +
                    std::to_string(each.number) + ")";
    }
    columns.Row({"component", component});
    Columns grids("ll");
    for (SchemaType const& grid : variable.grids) grids.Row({grid.name, GridText(grid)});
    std::string const lines = grids.Text();
    std::string title = "grids";
    for (std::size_t at = 0; at < lines.size();) {
        std::size_t const end = lines.find('\n', at);
        columns.Row({std::exchange(title, ""), lines.substr(at, end - at)});
        at = end + 1;
    }
    AddList(columns, "labels of the field", variable.fieldLabels);
    AddList(columns, "of its components", variable.componentLabels);
    return variable.label + "\n" + columns.Text("  ");
}

void AddTexts(Json& json, char const* key, std::vector<std::string> const& texts) {
    json.Key(key).OneLine().BeginArray();
    for (std::string const& text : texts) json.Value(text);
    json.EndArray();
}

std::string JsonText(Options const& options, Variable const& variable) {
    Json json;
    json.BeginObject().Member("asked", options.label).Member("label", variable.label);
    json.Member("field", variable.field);
    json.Key("components").BeginArray();
    for (Component const& each : variable.components) {
        json.OneLine().BeginObject().Member("symbol", each.name);
        json.Member("number", each.number).EndObject();
    }
    json.EndArray().Key("grids").BeginArray();
    for (SchemaType const& grid : variable.grids) {
        json.OneLine().BeginObject().Member("type", grid.name);
        json.Member("over", GridText(grid)).EndObject();
    }
    json.EndArray();
    AddTexts(json, "fieldLabels", variable.fieldLabels);
    AddTexts(json, "componentLabels", variable.componentLabels);
    json.EndObject();
    return json.Text();
}

int Unknown(Options const& options) {
    std::vector<std::string> const ofField = LabelsOfField(options.label);
    std::vector<std::string> const nearest =
        ofField.empty() ? NearestVariables(options.label) : std::vector<std::string>();
    if (options.json) {
        Json json;
        json.BeginObject().Member("asked", options.label).Key("label").Null().Key("field").Null();
        AddTexts(json, "labelsOfField", ofField);
        AddTexts(json, "nearest", nearest);
        json.EndObject();
        Print(json.Text());
    } else if (!ofField.empty()) {
        Print("no variable has the label '" + Shown(options.label) +
              "': it is a field, with the label" + (ofField.size() > 1 ? "s " : " ") +
              Listed(ofField) + "\n");
    } else {
        Print("no variable has the label '" + Shown(options.label) + "'" + NearestHint(nearest) +
              "\n");
    }
    return 1;
}

int Explain(Options const& options) {
    std::string label = options.label;
    if (!IsLabel(label)) label = UpperCase(label);
    if (!IsLabel(label)) return Unknown(options);
    Variable const variable = LookUp(label);
    if (options.json) {
        Print(JsonText(options, variable));
        return 0;
    }
    bool const asTyped = label == options.label;
    Print((asTyped ? "" : "'" + Shown(options.label) + "' is written " + label + "\n") +
          PlainText(variable));
    return 0;
}

}  // namespace

void AddVariable(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("variable", "Explain the label of a result variable");
    command->add_option("LABEL", options->label, "A label such as S11, U or 'AC YIELD'")
        ->required();
    command->add_flag("--json", options->json, "Print it as JSON");
    command->footer("Exit status: 1 for an unknown label; the nearest ones are shown.");
    command->callback([options, &action] { action = [options] { return Explain(*options); }; });
}

}  // namespace kov::tool
