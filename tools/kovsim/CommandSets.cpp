// kovsim sets MODEL.ksd [NAME]

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "DocumentReader.h"
#include "InstanceList.h"
#include "Json.h"
#include "MeshLabels.h"
#include "NamedObjects.h"
#include "Names.h"
#include "Nearest.h"
#include "ObjectContent.h"
#include "ObjectPrinter.h"
#include "Table.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::string name;
    std::string kind;
    bool hasName = false;
    bool json = false;

    std::vector<ObjectKind> Kinds() const {
        std::vector<ObjectKind> kinds;
        for (ObjectKind const each : kObjectKinds) {
            if (kind.empty() || kind == KindWord(each)) kinds.push_back(each);
        }
        return kinds;
    }
};

// ---------------------------------------------------------------------------------- the list

char const* ListKey(ObjectKind kind, bool internal) {
    switch (kind) {
        case ObjectKind::Nodes:
            return internal ? "internalNodeSets" : "nodeSets";
        case ObjectKind::Elements:
            return internal ? "internalElementSets" : "elementSets";
        case ObjectKind::Surface:
            return "surfaces";
        case ObjectKind::Orientation:
            return "orientations";
    }
    return "";
}

void AddToTable(Table& table, KOVObjDocument const& document, NamedObject const& object) {
    std::string const name = "  " + NameText(object.key);
    if (IsSetKind(object.kind)) {
        if (IsSet(object)) {
            table.Line(name, KOVSimCSet(object.position).Size());
        } else {
            table.Line(name, std::string("no set"));
        }
    } else if (object.kind == ObjectKind::Surface) {
        table.Line(name, SizeText(ReadSurface(document, object.position)));
    } else {
        table.Line(name, SystemText(ReadOrientation(object.position)));
    }
}

void AddSizes(Json& json, SurfaceContent const& surface) {
    json.Member("faces", surface.Faces()).Member("edges", surface.Edges());
    json.Member("elements", surface.elements.Size()).Member("nodes", surface.nodes.Size());
}

void AddToJson(Json& json, KOVObjDocument const& document, NamedObject const& object) {
    json.OneLine().BeginObject().Member("name", object.key);
    if (IsSetKind(object.kind)) {
        json.Key("size");
        IsSet(object) ? json.Value(KOVSimCSet(object.position).Size()) : json.Null();
    } else if (object.kind == ObjectKind::Surface) {
        AddSizes(json, ReadSurface(document, object.position));
    } else {
        AddSystem(json, ReadOrientation(object.position));
    }
    json.EndObject();
}

void PrintList(Options const& options, KOVObjDocument const& document) {
    MeshLabels const nodes(document, KOVObjLabelerNodes);
    MeshLabels const elements(document, KOVObjLabelerElements);
    std::vector<InstanceEntry> const instances = ListInstances(document, nodes, elements);
    Table table;
    Json json;
    json.BeginObject().Member("document", options.document);
    table.Line("document", options.document);
    if (options.kind.empty()) {
        json.Key("instances").BeginArray();
        table.Line("instances", static_cast<long>(instances.size()));
        for (InstanceEntry const& instance : instances) {
            json.OneLine().BeginObject().Member("name", instance.name);
            json.Member("part", instance.part).Member("nodes", instance.nodes);
            json.Member("elements", instance.elements).EndObject();
            table.Line("  " + NameText(instance.name), InstanceText(instance));
        }
        json.EndArray();
    }
    for (ObjectKind const kind : options.Kinds()) {
        for (bool const internal : {false, true}) {
            std::vector<NamedObject> const objects = AllObjects(document, kind, internal);
            if (internal && !IsSetKind(kind)) continue;
            json.Key(ListKey(kind, internal)).BeginArray();
            if (!internal || !objects.empty())
                table.Line(ListTitle(kind, internal), static_cast<long>(objects.size()));
            for (NamedObject const& object : objects) {
                options.json ? AddToJson(json, document, object)
                             : AddToTable(table, document, object);
            }
            json.EndArray();
        }
    }
    json.EndObject();
    Print(options.json ? json.Text() : table.Text());
}

// --------------------------------------------------------------------------------- one object

void PrintObjects(Options const& options, KOVObjDocument const& document) {
    std::vector<ObjectKind> const kinds = options.Kinds();
    std::vector<NamedObject> const objects = FindObjects(document, options.name, kinds);
    if (objects.empty()) {
        throw DocumentFault(std::string("no ") + (kinds.size() == 1 ? KindName(kinds[0]) : "set") +
                            " named '" + Shown(options.name) + "'" +
                            NearestHint(NearestKeys(document, options.name, kinds)));
    }
    ObjectPrinter printer(document);
    if (options.json) {
        Json json;
        json.BeginObject().Member("document", options.document).Member("asked", options.name);
        json.Key("objects").BeginArray();
        for (NamedObject const& object : objects) printer.Print(json, object);
        json.EndArray().EndObject();
        printer.Out() << json.Text();
    } else {
        for (NamedObject const& object : objects) printer.Print(object);
    }
    printer.Out().Flush();
}

int Sets(Options const& options) {
    KOVObjDocument const document = OpenForReading(options.document);
    WhileReading(options.document, [&] {
        options.hasName ? PrintObjects(options, document) : PrintList(options, document);
    });
    return 0;
}

}  // namespace

void AddSets(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("sets", "List the sets, surfaces and orientations, or show one of them");
    command->add_option("MODEL", options->document, "The document")->required();
    CLI::Option const* const name = command->add_option(
        "NAME", options->name,
        "A set, surface or orientation: Part-1.Set-1, \"My Part\".Top, Set-1, or a name of the "
        "list");
    command->add_option("--kind", options->kind, "Of one kind only")
        ->check(CLI::IsMember({"nodes", "elements", "surface", "orientation"}));
    command->add_flag("--json", options->json, "Print it as JSON");
    command->footer(
        "Members are shown as INSTANCE: LABELS; the instance of a model without instances is \"\"."
        "\nA name that fits several kinds shows all of them. Exit status: 2 for an unknown name.");
    command->callback([options, name, &action] {
        options->hasName = name->count() > 0;
        action = [options] { return Sets(*options); };
    });
}

}  // namespace kov::tool
