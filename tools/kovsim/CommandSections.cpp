// kovsim sections MODEL.ksd

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Columns.h"
#include "Commands.h"
#include "DocumentReader.h"
#include "Json.h"
#include "MemberList.h"
#include "MeshLabels.h"
#include "Names.h"
#include "ObjectContent.h"
#include "SectionCoverage.h"
#include "TextOut.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    bool json = false;
};

std::string Named(std::string const& name) { return name.empty() ? "-" : NameText(name); }

// What a section holds: layers, or its material.
std::string HoldsText(AssignmentCoverage const& assignment) {
    SectionContent const& content = assignment.content;
    if (content.composite || content.layers > 1) return CountText(content.layers, "layer");
    std::string const profile = content.profile.empty() ? "" : NameText(content.profile) + ", ";
    return profile + Named(assignment.material);
}

void PrintAssignments(TextOut& out, std::vector<AssignmentCoverage> const& assignments) {
    out << CountText(static_cast<long>(assignments.size()), "section assignment") << "\n";
    Columns columns("rllllrrl");
    columns.Row({"number", "section", "kind", "holds", "given to", "elements", "governs", ""});
    int number = 0;
    for (AssignmentCoverage const& each : assignments) {
        std::string lost;
        if (!each.lost.IsEmpty())
            lost = std::to_string(each.lost.Size()) + " governed by one before it";
        columns.Row({std::to_string(++number), Named(each.section), each.content.KindText(),
                     HoldsText(each), Named(each.elementSet), std::to_string(each.size),
                     std::to_string(each.governed.Size()), lost});
    }
    out << columns.Text("  ");
}

// The elements that need a section, or those that need none.
void PrintTyped(TextOut& out, MeshLabels const& labels, std::vector<TypedElements> const& all,
                bool needing, std::string const& title) {
    Columns columns("lrl");
    long count = 0;
    for (TypedElements const& each : all) {
        if (each.needsSection != needing) continue;
        count += each.elements.Size();
        columns.Row({each.type.empty() ? "without type" : NameText(each.type),
                     std::to_string(each.elements.Size()), FirstMembers(labels, each.elements)});
    }
    if (count > 0) out << CountText(count, "element") << title << "\n" << columns.Text("  ");
}

void PrintText(KOVObjDocument const& document, SectionCoverage const& coverage) {
    TextOut out;
    if (coverage.assignments.empty()) {
        out << "the model has no sections\n";
        return out.Flush();
    }
    MeshLabels const labels(document, KOVObjLabelerElements);
    PrintAssignments(out, coverage.assignments);
    PrintTyped(out, labels, coverage.uncovered, true, " in no section");
    PrintTyped(out, labels, coverage.uncovered, false, " in no section, which need none");
    PrintTyped(out, labels, coverage.inSeveral, true, " in more than one section");
    PrintTyped(out, labels, coverage.inSeveral, false,
               " in more than one section, which need none");
    if (coverage.IsComplete()) out << "each element that needs a section is in one\n";
    out.Flush();
}

void AddName(Json& json, char const* key, std::string const& name) {
    json.Key(key);
    name.empty() ? json.Null() : json.Value(name);
}

void PrintTyped(TextOut& out, Json& json, MeshLabels const& labels, char const* key,
                std::vector<TypedElements> const& all) {
    json.Key(key).BeginArray();
    for (TypedElements const& each : all) {
        json.BeginObject();
        AddName(json, "type", each.type);
        json.Member("needsSection", each.needsSection).Member("count", each.elements.Size());
        json.Key("members");
        PrintMembers(out, json, labels, each.elements);
        json.EndObject();
    }
    json.EndArray();
}

void PrintJson(Options const& options, KOVObjDocument const& document,
               SectionCoverage const& coverage) {
    MeshLabels const labels(document, KOVObjLabelerElements);
    TextOut out;
    Json json;
    json.BeginObject().Member("document", options.document);
    json.Member("complete", coverage.IsComplete()).Key("assignments").BeginArray();
    int number = 0;
    for (AssignmentCoverage const& each : coverage.assignments) {
        SectionContent const& content = each.content;
        json.OneLine().BeginObject().Member("number", ++number);
        AddName(json, "section", each.section);
        json.Member("kind", KindWord(content.kind)).Member("composite", content.composite);
        json.Member("layers", content.layers);
        AddName(json, "layupName", content.layup);
        AddName(json, "profile", content.profile);
        AddName(json, "material", each.material);
        AddName(json, "orientation", content.orientation);
        AddName(json, "elementSet", each.elementSet);
        json.Member("elements", each.size).Member("governed", each.governed.Size());
        json.Member("lost", each.lost.Size()).EndObject();
        out << json.Take();
    }
    json.EndArray();
    PrintTyped(out, json, labels, "withoutSection", coverage.uncovered);
    PrintTyped(out, json, labels, "inSeveralSections", coverage.inSeveral);
    json.EndObject();
    out << json.Text();
    out.Flush();
}

int ShowSections(Options const& options) {
    KOVObjDocument const document = OpenForReading(options.document);
    return WhileReading(options.document, [&] {
        SectionCoverage const coverage = ReadSectionCoverage(document);
        options.json ? PrintJson(options, document, coverage) : PrintText(document, coverage);
        return coverage.IsComplete() ? 0 : 1;
    });
}

}  // namespace

void AddSections(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "sections", "List the section assignments, and the elements without a section");
    command->add_option("MODEL", options->document, "The document")->required();
    command->add_flag("--json", options->json, "Print them as JSON");
    command->footer(
        "An element in several is governed by the first. Exit status: 0 each element that needs a "
        "section\nis in one, or there are no sections; 1 some are in none or in several; 2 could "
        "not be read.");
    command->callback(
        [options, &action] { action = [options] { return ShowSections(*options); }; });
}

}  // namespace kov::tool
