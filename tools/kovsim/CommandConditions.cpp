// kovsim conditions MODEL.ksd [KIND]

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Columns.h"
#include "Commands.h"
#include "ConditionContent.h"
#include "DocumentReader.h"
#include "Json.h"
#include "MemberList.h"
#include "MeshLabels.h"
#include "Names.h"
#include "Nearest.h"
#include "ObjectContent.h"
#include "TextOut.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::string kind;
    bool hasKind = false;
    bool json = false;
};

using Conditions = std::vector<ConditionContent>;

std::string KindOf(ConditionContent const& condition) {
    return ConditionText(*condition.kind, condition.number);
}

std::string Word(ConditionContent const& condition) {
    return condition.kind->ofElements ? "element" : "node";
}

std::string Listed(std::vector<double> const& values) {
    std::string text;
    for (double const value : values) text += (text.empty() ? "" : ", ") + NumberText(value);
    return text;
}

std::string RangesText(ConditionContent const& condition) {
    std::string text;
    for (auto const& [least, greatest] : ConditionRanges(condition)) {
        text += (text.empty() ? "" : ", ") + NumberText(least);
        if (least != greatest) text += " to " + NumberText(greatest);
    }
    return text.empty() ? "-" : text;
}

// Labels of nodes and of elements, each read where it is asked for first.
class Labels {
  public:
    explicit Labels(KOVObjDocument const& document) : m_document(document) {}

    MeshLabels const& Of(ConditionContent const& condition) {
        bool const elements = condition.kind->ofElements;
        std::optional<MeshLabels>& labels = elements ? m_elements : m_nodes;
        if (!labels) {
            labels.emplace(m_document, elements ? KOVObjLabelerElements : KOVObjLabelerNodes);
        }
        return *labels;
    }

  private:
    KOVObjDocument m_document;
    std::optional<MeshLabels> m_nodes;
    std::optional<MeshLabels> m_elements;
};

// Calls f(labels, who, values) for each member of a condition that is not uniform.
template <class F>
void ForMembers(ConditionContent const& condition, MeshLabels const& labels, F&& f) {
    std::vector<int> ordinals;
    std::vector<double> row;
    ForConditionRows(condition, [&](KOVSimCSet const& block, std::vector<double> const& values) {
        ordinals.resize(static_cast<std::size_t>(block.Size()));
        block.Members(ordinals.data());
        std::vector<Labelled> const known = labels.Look(ordinals);
        auto at = values.begin();
        for (std::size_t i = 0; i < known.size(); ++i, at += condition.columns) {
            row.assign(at, at + condition.columns);
            Labelled const who = known[i].instance < 0 ? Labelled{-1, ordinals[i]} : known[i];
            f(who, row);
        }
    });
}

// ------------------------------------------------------------------------------------- text

void PrintList(TextOut& out, Conditions const& conditions) {
    out << CountText(static_cast<long>(conditions.size()), "initial condition") << "\n";
    if (conditions.empty()) return;
    Columns columns("llrl");
    columns.Row({"condition", "given to", "members", "values"});
    for (ConditionContent const& condition : conditions) {
        std::string const word = Word(condition);
        columns.Row({KindOf(condition),
                     condition.set.empty() ? word + "s" : word + " set " + NameText(condition.set),
                     std::to_string(condition.region.Size()), RangesText(condition)});
    }
    out << columns.Text("  ");
}

void PrintValues(TextOut& out, Conditions const& conditions, Labels& labels) {
    for (ConditionContent const& condition : conditions) {
        std::string const word = Word(condition);
        out << KindOf(condition) << " of ";
        if (!condition.set.empty()) out << word << " set " << NameText(condition.set) << ", ";
        out << CountText(condition.region.Size(), word);
        if (condition.uniform) {
            out << ": " << Listed(condition.values) << "\n";
            if (condition.set.empty()) {
                PrintMembers(out, "  ", labels.Of(condition), condition.region);
            }
            continue;
        }
        out << "\n";
        MeshLabels const& known = labels.Of(condition);
        ForMembers(condition, known, [&](Labelled who, std::vector<double> const& values) {
            out << "  " << InstanceText(known, who.instance) << " " << std::to_string(who.label)
                << ": " << Listed(values) << "\n";
        });
    }
}

// ------------------------------------------------------------------------------------- JSON

void AddNumbers(Json& json, std::vector<double> const& values) {
    json.BeginArray();
    for (double const value : values) json.Value(value);
    json.EndArray();
}

void AddRows(TextOut& out, Json& json, ConditionContent const& condition,
             MeshLabels const& labels) {
    json.Key("rows").BeginArray();
    ForMembers(condition, labels, [&](Labelled who, std::vector<double> const& values) {
        json.OneLine().BeginObject().Key("instance");
        who.instance < 0 ? json.Null()
                         : json.Value(labels.Names()[static_cast<std::size_t>(who.instance)]);
        json.Member("label", who.label).Key("values");
        AddNumbers(json, values);
        json.EndObject();
        out << json.Take();
    });
    json.EndArray();
}

void PrintJson(TextOut& out, Options const& options, Conditions const& conditions, Labels& labels) {
    Json json;
    json.BeginObject().Member("document", options.document).Key("conditions").BeginArray();
    for (ConditionContent const& condition : conditions) {
        json.BeginObject().Member("kind", condition.kind->type).Key("number");
        condition.number > 0 ? json.Value(condition.number) : json.Null();
        json.Member("of", Word(condition)).Key("set");
        condition.set.empty() ? json.Null() : json.Value(condition.set);
        json.Member("members", condition.region.Size()).Member("columns", condition.columns);
        json.Key("values").OneLine();
        if (condition.uniform) {
            AddNumbers(json, condition.values);
        } else {
            json.Null();
        }
        json.Key("ranges").OneLine().BeginArray();
        for (auto const& [least, greatest] : ConditionRanges(condition)) {
            json.BeginArray().Value(least).Value(greatest).EndArray();
        }
        json.EndArray();
        if (options.hasKind) {
            json.Key("labels");
            PrintMembers(out, json, labels.Of(condition), condition.region);
            if (!condition.uniform) AddRows(out, json, condition, labels.Of(condition));
        }
        json.EndObject();
        out << json.Take();
    }
    json.EndArray().EndObject();
    out << json.Text();
}

// ---------------------------------------------------------------------------------- command

std::string Joined(std::string_view text) {
    std::string joined = LowerCase(text);
    std::erase(joined, ' ');
    return joined;
}

// The conditions of a kind, whatever their numbers, or of a kind and number.
Conditions Choose(Conditions const& all, std::string const& kind) {
    Conditions chosen;
    NearestSearch search(kind);
    for (ConditionContent const& condition : all) {
        search.Look(condition.kind->type);
        bool const fits = Joined(kind) == Joined(condition.kind->type) ||
                          Joined(kind) == Joined(KindOf(condition));
        if (fits) chosen.push_back(condition);
    }
    if (!chosen.empty()) return chosen;
    throw DocumentFault("no initial condition '" + Shown(kind) + "'" + NearestHint(search.Names()));
}

int ShowConditions(Options const& options) {
    KOVObjDocument const document = OpenForReading(options.document);
    WhileReading(options.document, [&] {
        Conditions conditions = InitialConditions(document);
        if (options.hasKind) conditions = Choose(conditions, options.kind);
        Labels labels(document);
        TextOut out;
        if (options.json) {
            PrintJson(out, options, conditions, labels);
        } else if (options.hasKind) {
            PrintValues(out, conditions, labels);
        } else {
            PrintList(out, conditions);
        }
        out.Flush();
    });
    return 0;
}

}  // namespace

void AddConditions(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "conditions", "List the initial conditions, or show the values of one kind");
    command->add_option("MODEL", options->document, "The document")->required();
    CLI::Option const* const kind =
        command->add_option("KIND", options->kind, "A kind, such as TEMPERATURE or 'VELOCITY 1'");
    command->add_flag("--json", options->json, "Print it as JSON");
    command->footer("Exit status: 2 for a kind that is not there; the nearest ones are shown.");
    command->callback([options, kind, &action] {
        options->hasKind = kind->count() > 0;
        action = [options] { return ShowConditions(*options); };
    });
}

}  // namespace kov::tool
