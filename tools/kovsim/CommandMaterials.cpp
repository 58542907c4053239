// kovsim materials MODEL.ksd [NAME]

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Columns.h"
#include "Commands.h"
#include "DocumentReader.h"
#include "Json.h"
#include "MaterialContent.h"
#include "MaterialUses.h"
#include "Names.h"
#include "Nearest.h"
#include "ObjectContent.h"
#include "TextOut.h"

namespace kov::tool {
namespace {

// So many sections are named; JSON has them all.
constexpr std::size_t kMostSections = 20;

struct Options {
    std::string document;
    std::string name;
    bool hasName = false;
    bool json = false;
};

std::string OrDash(std::string const& text) { return text.empty() ? "-" : text; }

std::string NumbersText(BehaviorContent const& behavior) {
    std::string text;
    for (auto const& [name, value] : behavior.numbers) {
        text += (text.empty() ? "" : ", ") + name + " " + NumberText(value);
    }
    return text;
}

std::string TemperatureText(BehaviorContent const& behavior) {
    if (!behavior.hasTemperature) return "";
    std::string const lowest = NumberText(behavior.lowest);
    return behavior.lowest == behavior.highest ? lowest
                                               : lowest + " to " + NumberText(behavior.highest);
}

using MaterialCounts = std::map<KOVSimDynamicID, int, ByIdentity>;

int UsesOf(MaterialCounts const& uses, MaterialContent const& material) {
    auto const found = uses.find(material.position.ID());
    return found == uses.end() ? 0 : found->second;
}

// ------------------------------------------------------------------------------------- text

void PrintList(TextOut& out, KOVObjDocument const& document,
               std::vector<std::string> const& names) {
    out << CountText(static_cast<long>(names.size()), "material") << "\n";
    if (names.empty()) return;
    Columns columns("lrllrlrl");
    columns.Row({"material", "sections", "behaviour", "type", "rows", "temperatures",
                 "field variables", ""});
    auto const uses = CountMaterialUses(document);
    for (std::string const& name : names) {
        MaterialContent const material = LookAtMaterial(document, name);
        std::string shown = NameText(name);
        std::string sections = std::to_string(UsesOf(uses, material));
        if (material.behaviors.empty()) columns.Row({shown, sections, "-", "-", "-", "-", "-", ""});
        for (BehaviorContent const& behavior : material.behaviors) {
            bool const table = behavior.table != nullptr;
            columns.Row(
                {std::exchange(shown, ""), std::exchange(sections, ""), NameText(behavior.name),
                 OrDash(behavior.type), table ? std::to_string(behavior.rows) : "-",
                 OrDash(TemperatureText(behavior)),
                 behavior.fieldVariables > 0 ? std::to_string(behavior.fieldVariables) : "-",
                 NumbersText(behavior)});
        }
    }
    out << columns.Text("  ");
}

// Rows with their columns to the right, each as wide as its longest number. The rows are read
// twice.
void PrintRows(TextOut& out, BehaviorContent const& behavior) {
    std::vector<std::string> const names = behavior.Columns();
    std::vector<std::size_t> widths;
    for (std::string const& name : names) widths.push_back(name.size());
    ForEachRow(behavior, [&widths](std::vector<double> const& row) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], NumberText(row[i]).size());
        }
    });
    auto const line = [&](auto const& text) {
        std::string all = "  ";
        for (std::size_t i = 0; i < names.size(); ++i) {
            std::string const field = text(i);
            all.append(2 + widths[i] - field.size(), ' ');
            all += field;
        }
        out << all << "\n";
    };
    line([&names](std::size_t i) { return names[i]; });
    ForEachRow(behavior, [&line](std::vector<double> const& row) {
        line([&row](std::size_t i) { return NumberText(row[i]); });
    });
}

void PrintMaterial(TextOut& out, MaterialContent const& material,
                   std::vector<std::string> const& sections) {
    out << "material " << NameText(material.name) << ": "
        << CountText(static_cast<long>(material.behaviors.size()), "behaviour") << ", "
        << (sections.empty() ? "no section"
                             : CountText(static_cast<long>(sections.size()), "section"))
        << "\n";
    std::size_t const shown = std::min(sections.size(), kMostSections);
    for (std::size_t i = 0; i < shown; ++i) {
        out << (i == 0 ? "  in " : ", ") << NameText(sections[i]);
    }
    if (shown < sections.size()) {
        out << " and " << std::to_string(sections.size() - shown) << " more";
    }
    if (shown > 0) out << "\n";
    for (BehaviorContent const& behavior : material.behaviors) {
        std::string title = NameText(behavior.name);
        if (!behavior.type.empty()) title += ", " + NameText(behavior.type);
        std::string const numbers = NumbersText(behavior);
        if (!numbers.empty()) title += ", " + numbers;
        out << "  " << title << "\n";
        if (behavior.table != nullptr) {
            PrintRows(out, behavior);
        } else if (behavior.kind == nullptr || !behavior.kind->tables.empty()) {
            out << "    no table of a known form\n";
        }
    }
}

// ------------------------------------------------------------------------------------- JSON

void AddBehavior(TextOut& out, Json& json, BehaviorContent const& behavior, bool rows) {
    json.BeginObject().Member("name", behavior.name).Key("type");
    behavior.type.empty() ? json.Null() : json.Value(behavior.type);
    json.Key("parameters").OneLine().BeginObject();
    for (auto const& [name, value] : behavior.numbers) json.Member(name, value);
    json.EndObject();
    json.Key("columns").OneLine().BeginArray();
    for (std::string const& name : behavior.Columns()) json.Value(name);
    json.EndArray().Member("rowCount", behavior.rows).Key("temperatureRange");
    if (behavior.hasTemperature) {
        json.OneLine().BeginArray().Value(behavior.lowest).Value(behavior.highest).EndArray();
    } else {
        json.Null();
    }
    json.Member("fieldVariables", behavior.fieldVariables);
    if (rows) {
        json.Key("rows").BeginArray();
        ForEachRow(behavior, [&](std::vector<double> const& row) {
            json.OneLine().BeginArray();
            for (double const value : row) json.Value(value);
            json.EndArray();
            out << json.Take();
        });
        json.EndArray();
    }
    json.EndObject();
}

void AddSections(Json& json, std::vector<std::string> const& sections) {
    json.Member("sectionCount", static_cast<long>(sections.size())).Key("sections").BeginArray();
    for (std::string const& section : sections) json.Value(section);
    json.EndArray();
}

void PrintJson(TextOut& out, Options const& options, KOVObjDocument const& document,
               std::vector<std::string> const& names) {
    MaterialCounts const uses = options.hasName ? MaterialCounts() : CountMaterialUses(document);
    Json json;
    json.BeginObject().Member("document", options.document).Key("materials").BeginArray();
    for (std::string const& name : names) {
        MaterialContent const material = LookAtMaterial(document, name);
        json.BeginObject().Member("name", name);
        if (options.hasName) {
            AddSections(json, SectionsOfMaterial(document, material.position));
        } else {
            json.Member("sectionCount", UsesOf(uses, material));
        }
        json.Key("behaviors").BeginArray();
        for (BehaviorContent const& behavior : material.behaviors) {
            AddBehavior(out, json, behavior, options.hasName);
        }
        json.EndArray().EndObject();
        out << json.Take();
    }
    json.EndArray().EndObject();
    out << json.Text();
}

// ---------------------------------------------------------------------------------- command

// Names differ whatever their case, as far as decks made them.
std::string FindName(std::string const& wanted, std::vector<std::string> const& names) {
    if (std::find(names.begin(), names.end(), wanted) != names.end()) return wanted;
    std::string found;
    int count = 0;
    for (std::string const& name : names) {
        if (LowerCase(name) != LowerCase(wanted)) continue;
        found = name;
        ++count;
    }
    if (count == 1) return found;
    throw DocumentFault("no material named '" + Shown(wanted) + "'" +
                        NearestHint(NearestNames(wanted, names)));
}

int Materials(Options const& options) {
    KOVObjDocument const document = OpenForReading(options.document);
    WhileReading(options.document, [&] {
        std::vector<std::string> names = MaterialNames(document);
        if (options.hasName) names = {FindName(options.name, names)};
        TextOut out;
        if (options.json) {
            PrintJson(out, options, document, names);
        } else if (options.hasName) {
            MaterialContent const material = LookAtMaterial(document, names[0]);
            PrintMaterial(out, material, SectionsOfMaterial(document, material.position));
        } else {
            PrintList(out, document, names);
        }
        out.Flush();
    });
    return 0;
}

}  // namespace

void AddMaterials(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("materials", "List the materials, or show the tables of one of them");
    command->add_option("MODEL", options->document, "The document")->required();
    CLI::Option const* const name = command->add_option("NAME", options->name, "A material");
    command->add_flag("--json", options->json, "Print it as JSON");
    command->footer("Exit status: 2 for an unknown name; the nearest ones are shown.");
    command->callback([options, name, &action] {
        options->hasName = name->count() > 0;
        action = [options] { return Materials(*options); };
    });
}

}  // namespace kov::tool
