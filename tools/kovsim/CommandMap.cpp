// kovsim map A.ksd B.ksd [--set NAME]

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "DocumentReader.h"
#include "Json.h"
#include "LabelComparison.h"
#include "MappedMembers.h"
#include "NamedObjects.h"
#include "Names.h"
#include "Nearest.h"
#include "SetMapping.h"
#include "TextOut.h"

namespace kov::tool {
namespace {

struct Options {
    std::string a;
    std::string b;
    std::string set;
    std::string kind;
    bool hasSet = false;
    bool ordered = false;
    bool ordinals = false;
    bool json = false;
};

KOVObjLabelerType TypeOf(ObjectKind kind) {
    return kind == ObjectKind::Nodes ? KOVObjLabelerNodes : KOVObjLabelerElements;
}

// ------------------------------------------------------------------------------ both documents

void AddCounts(Json& json, LabelCounts const& counts) {
    json.Member("inA", counts.inA).Member("inB", counts.inB).Member("inBoth", counts.common);
}

void AddComparison(Json& json, char const* name, LabelComparison const& comparison) {
    json.Key(name).BeginObject();
    AddCounts(json, comparison.total);
    json.Member("withoutLabelInA", comparison.unlabelledA);
    json.Member("withoutLabelInB", comparison.unlabelledB);
    json.Key("instances").BeginArray();
    for (LabelComparison::Instance const& instance : comparison.instances) {
        json.OneLine().BeginObject().Member("name", instance.name);
        if (!instance.isInA) json.Member("only", "B");
        if (!instance.isInB) json.Member("only", "A");
        AddCounts(json, instance.counts);
        json.EndObject();
    }
    json.EndArray().EndObject();
}

std::string CountsLine(std::string const& name, std::string const& inA, std::string const& inB,
                       std::string const& common, std::string const& remark = "") {
    char numbers[160];
    std::snprintf(numbers, sizeof numbers, "%14s%14s%14s", inA.c_str(), inB.c_str(),
                  common.c_str());
    std::string line = name;
    line.append(name.size() < 22 ? 22 - name.size() : 1, ' ');
    return line + numbers + (remark.empty() ? "" : "  " + remark) + "\n";
}

std::string CountsLine(std::string const& name, LabelCounts const& counts,
                       std::string const& remark = "") {
    return CountsLine(name, std::to_string(counts.inA), std::to_string(counts.inB),
                      std::to_string(counts.common), remark);
}

std::string ComparisonText(char const* name, LabelComparison const& comparison) {
    std::string text = CountsLine(name, comparison.total);
    for (LabelComparison::Instance const& instance : comparison.instances) {
        text += CountsLine("  " + NameText(instance.name), instance.counts,
                           !instance.isInA   ? "only in B"
                           : !instance.isInB ? "only in A"
                                             : "");
    }
    if (comparison.unlabelledA > 0 || comparison.unlabelledB > 0) {
        text += CountsLine("  (no label)", {comparison.unlabelledA, comparison.unlabelledB, 0});
    }
    return text;
}

int Compare(Options const& options, KOVObjDocument const& a, KOVObjDocument const& b) {
    std::string const both = options.a + ", " + options.b;
    LabelComparison const nodes =
        WhileReading(both, [&] { return CompareLabels(a, b, KOVObjLabelerNodes); });
    LabelComparison const elements =
        WhileReading(both, [&] { return CompareLabels(a, b, KOVObjLabelerElements); });
    bool const same = nodes.Same() && elements.Same();
    if (options.json) {
        Json json;
        json.BeginObject().Member("a", options.a).Member("b", options.b).Member("same", same);
        AddComparison(json, "nodes", nodes);
        AddComparison(json, "elements", elements);
        Print(json.EndObject().Text());
    } else {
        Print("A " + options.a + "\nB " + options.b + "\n" +
              CountsLine("", "in A", "in B", "in both") + ComparisonText("nodes", nodes) +
              ComparisonText("elements", elements));
    }
    return same ? 0 : 1;
}

// ---------------------------------------------------------------------------------- one set

struct Asked {
    NamedObject object;
    KOVSimCSet set;
    MappedSet mapped;
};

std::vector<Asked> AskedSets(Options const& options, KOVObjDocument const& a,
                             KOVObjDocument const& b) {
    std::vector<ObjectKind> kinds;
    for (ObjectKind const kind : {ObjectKind::Nodes, ObjectKind::Elements}) {
        if (options.kind.empty() || options.kind == KindWord(kind)) kinds.push_back(kind);
    }
    std::vector<Asked> asked;
    std::vector<NamedObject> const objects =
        WhileReading(options.a, [&] { return FindObjects(a, options.set, kinds); });
    for (NamedObject const& object : objects) {
        Asked& each = asked.emplace_back();
        each.object = object;
        each.set = WhileReading(options.a, [&] {
            if (!KOVSimCSetID::CanBeConverted(object.position.ID())) {
                throw DocumentFault("'" + Shown(object.key) + "' is no set");
            }
            return KOVSimCSet(object.position);
        });
        each.mapped = WhileReading(options.a + ", " + options.b, [&] {
            return MapSet(a, b, TypeOf(object.kind), each.set.ID(), options.ordered);
        });
    }
    if (asked.empty()) {
        throw Failure(options.a + ": no " + (kinds.size() == 1 ? KindName(kinds[0]) : "set") +
                      " named '" + Shown(options.set) + "'" +
                      NearestHint(NearestKeys(a, options.set, kinds)));
    }
    return asked;
}

void PrintAsked(TextOut& out, Options const& options, KOVObjDocument const& a,
                KOVObjDocument const& b, Asked const& asked) {
    KOVObjLabelerType const type = TypeOf(asked.object.kind);
    out << KindName(asked.object.kind) << " " << NameText(asked.object.key) << ": "
        << asked.set.Size() << " in A, " << asked.mapped.inB.Size() << " of them in B\n";
    MeshLabels const labelsOfB(b, type);
    PrintSequence(out, "  ", labelsOfB, asked.mapped.inB);
    if (options.ordinals) PrintOrdinals(out, "  ordinals: ", asked.mapped.inB);
    if (asked.mapped.missing.IsEmpty()) return;
    out << "not in B\n";
    PrintSequence(out, "  ", MeshLabels(a, type), asked.mapped.missing);
}

void PrintAsked(TextOut& out, Json& json, Options const& options, KOVObjDocument const& a,
                KOVObjDocument const& b, Asked const& asked) {
    KOVObjLabelerType const type = TypeOf(asked.object.kind);
    json.BeginObject().Member("kind", KindWord(asked.object.kind));
    json.Member("name", asked.object.key).Member("size", asked.set.Size());
    json.Member("found", asked.mapped.inB.Size()).Key("members");
    PrintSequence(out, json, MeshLabels(b, type), asked.mapped.inB);
    if (options.ordinals) {
        json.Key("ordinals");
        PrintOrdinals(out, json, asked.mapped.inB);
    }
    json.Key("missing");
    PrintSequence(out, json, MeshLabels(a, type), asked.mapped.missing);
    json.EndObject();
}

int MapSets(Options const& options, KOVObjDocument const& a, KOVObjDocument const& b) {
    std::vector<Asked> const asked = AskedSets(options, a, b);
    bool const all = std::all_of(asked.begin(), asked.end(),
                                 [](Asked const& each) { return each.mapped.missing.IsEmpty(); });
    TextOut out;
    WhileReading(options.a + ", " + options.b, [&] {
        if (options.json) {
            Json json;
            json.BeginObject().Member("a", options.a).Member("b", options.b);
            json.Member("asked", options.set).Member("allFound", all).Key("sets").BeginArray();
            for (Asked const& each : asked) PrintAsked(out, json, options, a, b, each);
            json.EndArray().EndObject();
            out << json.Text();
        } else {
            for (Asked const& each : asked) PrintAsked(out, options, a, b, each);
        }
    });
    out.Flush();
    return all ? 0 : 1;
}

int Map(Options const& options) {
    KOVObjDocument const a = OpenForReading(options.a);
    KOVObjDocument const b = OpenForReading(options.b);
    return options.hasSet ? MapSets(options, a, b) : Compare(options, a, b);
}

}  // namespace

void AddMap(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "map", "Compare two documents by instance and label, or find a set of one in the other");
    command->add_option("A", options->a, "The document that has the set")->required();
    command->add_option("B", options->b, "The document to find it in")->required();
    CLI::Option* const set = command->add_option(
        "--set", options->set, "A node or element set of A, such as Set-1 or Part-1.Set-1");
    command->add_option("--kind", options->kind, "Look among the sets of one kind only")
        ->check(CLI::IsMember({"nodes", "elements"}))
        ->needs(set);
    command->add_flag("--ordered", options->ordered, "Keep the sequence of an ordered set")
        ->needs(set);
    command->add_flag("--ordinals", options->ordinals, "Show the ordinals in B as well")
        ->needs(set);
    command->add_flag("--json", options->json, "Print it as JSON");
    command->footer(
        "Exit status: 0 where all is in both (with --set: all members are in B), 1 where\n"
        "something is not, 2 where it could not be found out.");
    command->callback([options, set, &action] {
        options->hasSet = set->count() > 0;
        action = [options] { return Map(*options); };
    });
}

}  // namespace kov::tool
